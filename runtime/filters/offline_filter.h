#pragma once

#include <cmath>

#include "runtime/filters/frame_grid.h"

namespace tarvo::lidar {

/// Whether a range lies off the line through its two neighbours: it fits neither of them nor the middle between them.
/// False when one of them has no return (0). Metres.
inline bool isOffLine(float range, float before, float after) {
  constexpr float tolerance = 0.3F;
  constexpr float toleranceOfRange = 0.02F;
  if (before <= 0.0F || after <= 0.0F) return false;
  const auto off = [range](float other) { return std::abs(range - other) > tolerance + toleranceOfRange * range; };
  return off(before) && off(after) && off((before + after) / 2.0F);
}

/// Finds points off the scan line: those that stand out between the columns before and behind, in their own channel.
/// Takes thin upright things, such as wires and poles one column wide, for such points too.
class OfflineFilter {
 public:
  [[nodiscard]] bool takes(const FrameGrid &grid, int column, int echo, int channel) const {
    return isOffLine(grid.range(column, echo, channel), grid.range(column - 1, echo, channel),
                     grid.range(column + 1, echo, channel));
  }
};

}  // namespace tarvo::lidar
