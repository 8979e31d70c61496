#pragma once

#include "runtime/filters/frame_grid.h"
#include "runtime/filters/offline_filter.h"

namespace tarvo::lidar {

/// The second kind of offline filter: a point must be off the line along its channel and off the line through the
/// channels above and below. Keeps poles and wires, and every point of the first and last channel.
class Vd8OfflineFilter {
 public:
  [[nodiscard]] bool takes(const FrameGrid &grid, int column, int echo, int channel) const {
    const float range = grid.range(column, echo, channel);
    return isOffLine(range, grid.range(column - 1, echo, channel), grid.range(column + 1, echo, channel)) &&
           isOffLine(range, grid.range(column, echo, channel - 1), grid.range(column, echo, channel + 1));
  }
};

}  // namespace tarvo::lidar
