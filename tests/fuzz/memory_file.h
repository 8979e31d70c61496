#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <string>

namespace tarvo::skarnvisor::fuzz {

/// A file that lives in memory, with a path for readers that take one.
class MemoryFile {
 public:
  MemoryFile(const std::uint8_t *data, std::size_t size) : m_descriptor(::memfd_create("fuzz", MFD_CLOEXEC)) {
    std::size_t done = 0;
    while (done < size) {
      const ssize_t written = ::write(m_descriptor, data + done, size - done);
      if (written <= 0) break;
      done += static_cast<std::size_t>(written);
    }
  }
  ~MemoryFile() { ::close(m_descriptor); }
  MemoryFile(const MemoryFile &) = delete;
  MemoryFile &operator=(const MemoryFile &) = delete;
  [[nodiscard]] std::string path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

 private:
  int m_descriptor;
};

/// The readers' diagnostics would drown the fuzzer's own lines.
inline void silenceReaders() {
  if (std::freopen("/dev/null", "w", stdout) == nullptr) std::perror("stdout");
  std::cerr.rdbuf(nullptr);
}

}  // namespace tarvo::skarnvisor::fuzz
