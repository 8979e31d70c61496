#include "default/point_files/readers/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace tarvo::skarnvisor {

InputFile::InputFile(const std::string &path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return;
  struct stat status {};
  if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
    ::close(descriptor);
    return;
  }
  m_descriptor = descriptor;
  m_size = static_cast<std::uint64_t>(status.st_size);
}

InputFile::~InputFile() {
  if (m_descriptor >= 0) ::close(m_descriptor);
}

std::size_t InputFile::readAt(std::uint64_t offset, char *target, std::size_t length) const {
  std::size_t done = 0;
  while (done < length) {
    const ssize_t got = ::pread(m_descriptor, target + done, length - done, static_cast<off_t>(offset + done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

}  // namespace tarvo::skarnvisor
