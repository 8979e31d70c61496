#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tarvo::skarnvisor {

/// A file opened for reading at any position, from any number of threads at once.
class InputFile {
 public:
  /// `path` in the local code page. A folder or a file that can't be opened leaves the object closed.
  explicit InputFile(const std::string &path);
  ~InputFile();
  InputFile(const InputFile &) = delete;
  InputFile &operator=(const InputFile &) = delete;

  [[nodiscard]] bool isOpen() const { return m_descriptor >= 0; }
  /// Bytes in the file when it was opened.
  [[nodiscard]] std::uint64_t size() const { return m_size; }
  /// Reads up to `length` bytes at `offset`; the result is what the file gave, less than `length` at its end or on an
  /// error.
  std::size_t readAt(std::uint64_t offset, char *target, std::size_t length) const;

 private:
  int m_descriptor = -1;
  std::uint64_t m_size = 0;
};

}  // namespace tarvo::skarnvisor
