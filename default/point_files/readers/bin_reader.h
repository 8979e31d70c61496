#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "default/point_files/readers/raw_vector.h"

namespace tarvo::skarnvisor {

/// One record of a BIN file. A 16-byte record carries no confidence, which is then 0.
struct BinPoint {
  float x, y, z;
  std::uint16_t intensity, confidence, ring;
};

/// The bytes of a BIN file behind its count, and how they divide.
struct BinFrame {
  RawVector<char> bytes;
  std::uint32_t count = 0;
  std::size_t recordBytes = 18;  ///< 18, or 16 without confidence

  /// `index` below `count`.
  [[nodiscard]] BinPoint point(std::uint32_t index) const;
};

enum class BinResult {
  read,       ///< `frame` holds the file
  notOpened,  ///< no such file, or no right to read it: no points, no message
  wrongSize,  ///< the size fits neither record width; printed to standard error
};

/// Reads a BIN file (little-endian u32 count, then records) in one read into `frame`, whose buffer is used again.
/// `path` in the local code page.
[[nodiscard]] BinResult readBin(const std::string &path, BinFrame &frame);

}  // namespace tarvo::skarnvisor
