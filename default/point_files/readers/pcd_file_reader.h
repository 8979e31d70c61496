#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "default/point_files/readers/input_file.h"
#include "default/point_files/readers/pcd_header.h"
#include "default/point_files/readers/pcd_point.h"

namespace tarvo::skarnvisor {

/// Reads one PCD file at a time, in any of the three data kinds, on all cores where the file is large. Its diagnostics
/// go to standard output. What a header claims never sizes an allocation: the bytes of the file do.
class PcdFileReader {
 public:
  /// `path` in the local code page. True when points may be taken, also after a warning; false after a printed error,
  /// with no points. Throws std::runtime_error for a file that can't be opened or whose record layout makes no sense.
  bool read(const std::string &path);

  /// The points of the last read, in the file's order.
  [[nodiscard]] const PcdPoints &points() const { return m_points; }
  [[nodiscard]] const PcdHeader &header() const { return m_header; }
  [[nodiscard]] bool hasField(std::string_view name) const;

 private:
  bool readAscii(const InputFile &file, std::uint64_t dataStart);
  bool readBinary(const InputFile &file, std::uint64_t dataStart);
  bool readCompressed(const InputFile &file, std::uint64_t dataStart);

  PcdHeader m_header;
  PcdPoints m_points;
  // Room for a compressed section, used again from file to file.
  RawVector<std::uint8_t> m_packed;
  RawVector<std::uint8_t> m_columns;  ///< what it expands to: all values of the first field, then of the second ...
};

}  // namespace tarvo::skarnvisor
