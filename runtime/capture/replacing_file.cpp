#include "runtime/capture/replacing_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

namespace tarvo::lidar {

namespace {

constexpr std::size_t holdBytes = 1u << 20;
constexpr mode_t fileMode = 0644;

}  // namespace

ReplacingFile::~ReplacingFile() {
  if (descriptor_ < 0) return;
  ::close(descriptor_);
  ::unlink(passing_.c_str());
}

bool ReplacingFile::open(const std::string &path) {
  path_ = path;
  passing_ = path + ".XXXXXX";
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
    error_ = "The file \"" + path_ + "\" cannot be written: there is something of that name that is no file.";
    return false;
  }
  descriptor_ = ::mkostemp(passing_.data(), O_CLOEXEC);
  if (descriptor_ < 0) return fail(errno);
  ::fchmod(descriptor_, fileMode);
  return true;
}

bool ReplacingFile::fail(int reason) {
  error_ = "The file \"" + path_ + "\" cannot be written: " +
           (reason == ENOSPC || reason == EDQUOT ? std::string("the disk is full") : std::strerror(reason)) + ".";
  return false;
}

bool ReplacingFile::append(std::span<const std::uint8_t> bytes) {
  if (!error_.empty()) return false;
  if (held_.size() + bytes.size() > holdBytes && !flush()) return false;
  if (bytes.size() > holdBytes) return writeOut(bytes);
  held_.insert(held_.end(), bytes.begin(), bytes.end());
  return true;
}

bool ReplacingFile::appendFrom(const CaptureFile &file, std::uint64_t begin, std::uint64_t end) {
  if (!flush()) return false;
  held_.resize(holdBytes);
  bool good = true;
  while (good && begin < end) {
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(holdBytes, end - begin));
    const std::size_t got = file.read(begin, {held_.data(), wanted});
    if (got != wanted) {
      error_ = "The capture has become shorter while \"" + path_ + "\" was written.";
      good = false;
    } else {
      good = writeOut({held_.data(), got});
    }
    begin += got;
  }
  held_.clear();
  return good;
}

bool ReplacingFile::flush() {
  const bool good = error_.empty() && writeOut(held_);
  held_.clear();
  return good;
}

bool ReplacingFile::writeOut(std::span<const std::uint8_t> bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t count = ::write(descriptor_, bytes.data() + done, bytes.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return fail(errno);
    done += static_cast<std::size_t>(count);
  }
  return true;
}

bool ReplacingFile::clear() {
  held_.clear();
  if (!error_.empty()) return false;
  return (::ftruncate(descriptor_, 0) == 0 && ::lseek(descriptor_, 0, SEEK_SET) == 0) || fail(errno);
}

bool ReplacingFile::commit() {
  if (!flush()) return false;
  // Closing tells what a full disk kept back.
  if (::close(std::exchange(descriptor_, -1)) != 0 || ::rename(passing_.c_str(), path_.c_str()) != 0) {
    fail(errno);
    ::unlink(passing_.c_str());
    return false;
  }
  return true;
}

}  // namespace tarvo::lidar
