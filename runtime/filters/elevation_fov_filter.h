#pragma once

#include <algorithm>

#include "runtime/filters/frame_grid.h"

namespace tarvo::lidar {

/// Finds points whose calibrated elevation lies outside the field of view that the lidar reports, by more than half the
/// spacing of its channels, so that a correction does not push the outermost channels out. A lidar that reports no
/// field of view keeps all its points.
class ElevationFovFilter {
 public:
  explicit ElevationFovFilter(const FrameGrid &grid)
      : known_(grid.elevationMaxDeg > grid.elevationMinDeg),
        margin_((grid.elevationMaxDeg - grid.elevationMinDeg) / static_cast<float>(std::max(grid.channels - 1, 1)) /
                2.0F) {}

  [[nodiscard]] bool takes(const FrameGrid &grid, int column, int echo, int channel) const {
    const float elevation = grid.point(column, echo, channel).elevationCalib;
    return known_ && (elevation < grid.elevationMinDeg - margin_ || elevation > grid.elevationMaxDeg + margin_);
  }

 private:
  bool known_;
  float margin_;  ///< degrees
};

}  // namespace tarvo::lidar
