#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "default/point_files/readers/input_file.h"

namespace tarvo::skarnvisor {

enum class PcdDataKind { ascii = 0, binary = 1, binary_compressed = 2 };

/// The header of a PCD file, version .7. The lists hold what the file says; nothing makes them equally long.
struct PcdHeader {
  std::string version;
  std::vector<std::string> fields;
  std::vector<int> sizes;  ///< bytes of one element
  std::vector<std::string> types;
  std::vector<int> counts;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::vector<float> viewpoint;
  std::uint32_t points = 0;
  PcdDataKind data_kind = PcdDataKind::ascii;
  std::uint32_t compressed_size = 0;
  std::uint32_t uncompressed_size = 0;
};

/// Reads the header from the file's start into `header` and puts the position of the first data byte, or the file's
/// size where no DATA line stands, into `dataStart`. Prints a warning where width x height is not the point count.
/// Never fails.
bool readPcdHeader(const InputFile &file, PcdHeader &header, std::uint64_t &dataStart);

}  // namespace tarvo::skarnvisor
