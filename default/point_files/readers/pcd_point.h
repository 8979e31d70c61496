#pragma once

#include <cstdint>

#include "default/point_files/readers/raw_vector.h"

namespace tarvo::skarnvisor {

/// One point of a PCD file; what the file doesn't carry is 0. x, y, z in the file's unit, metres as a rule.
struct PcdPoint {
  float x, y, z;
  std::uint16_t ring;
  float intensity, confidence;
  std::uint16_t rowId;
};

using PcdPoints = RawVector<PcdPoint>;

}  // namespace tarvo::skarnvisor
