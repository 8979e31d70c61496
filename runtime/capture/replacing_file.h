#pragma once

#include <span>
#include <string>
#include <vector>

#include "runtime/capture/capture_file.h"

namespace tarvo::lidar {

/// A file that takes the place of another one, or appears, only when all of it is written: until `commit` the bytes go
/// to a file of a passing name beside it, which the destructor removes. One thread.
class ReplacingFile {
 public:
  ReplacingFile() = default;
  ~ReplacingFile();
  ReplacingFile(const ReplacingFile &) = delete;
  ReplacingFile &operator=(const ReplacingFile &) = delete;

  /// Each is false after a failure, which `error` tells in one sentence; nothing is done any more then.
  bool open(const std::string &path);
  bool append(std::span<const std::uint8_t> bytes);
  /// Appends bytes [begin, end) of a capture.
  bool appendFrom(const CaptureFile &file, std::uint64_t begin, std::uint64_t end);
  /// Forgets what was appended.
  bool clear();
  bool commit();
  [[nodiscard]] const std::string &error() const { return error_; }

 private:
  bool flush();
  bool fail(int reason);
  bool writeOut(std::span<const std::uint8_t> bytes);

  std::string path_;
  std::string passing_;
  std::string error_;
  int descriptor_ = -1;
  std::vector<std::uint8_t> held_;
};

}  // namespace tarvo::lidar
