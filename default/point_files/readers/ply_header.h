#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "default/point_files/readers/input_file.h"
#include "default/point_files/readers/scalar_types.h"

namespace tarvo::skarnvisor {

enum class PlyFormat { ascii, littleEndian, bigEndian };

struct PlyProperty {
  std::string name;
  ScalarType type = ScalarType::none;        ///< of the number, or of a list's entries
  ScalarType lengthType = ScalarType::none;  ///< of a list's length; `none` for a single number
  [[nodiscard]] bool isList() const { return lengthType != ScalarType::none; }
};

struct PlyElement {
  std::string name;
  std::uint64_t count = 0;  ///< as the header claims it
  std::vector<PlyProperty> properties;
  [[nodiscard]] bool hasList() const;
  /// Bytes of one binary record without lists.
  [[nodiscard]] std::uint64_t recordBytes() const;
};

struct PlyHeader {
  PlyFormat format = PlyFormat::ascii;
  std::vector<PlyElement> elements;
  std::uint64_t dataStart = 0;  ///< first byte behind "end_header"
};

/// Throws std::runtime_error, text starting "PLY parser: ", with the line and what was expected.
[[nodiscard]] PlyHeader readPlyHeader(const InputFile &file);

}  // namespace tarvo::skarnvisor
