#pragma once

#include "runtime/filters/frame_grid.h"

namespace tarvo::lidar {

/// Finds returns nearer than a threshold, such as those of the lidar's own window and of its mount. 0 or less: none.
class DistanceFilter {
 public:
  explicit DistanceFilter(float thresholdMetres) : threshold_(thresholdMetres) {}

  [[nodiscard]] bool takes(const FrameGrid &grid, int column, int echo, int channel) const {
    return grid.range(column, echo, channel) < threshold_;
  }

 private:
  float threshold_;
};

}  // namespace tarvo::lidar
