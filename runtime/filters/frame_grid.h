#pragma once

#include <cmath>
#include <cstddef>

#include "contracts/runtime/point_info.h"

namespace tarvo::lidar {

/// Settings come from outside, as any float.
inline float finiteOr(float value, float otherwise) { return std::isfinite(value) ? value : otherwise; }

/// One decoded frame as the filters see it: slots column by column, then return, then channel. All indices from 0.
struct FrameGrid {
  SDKPointInfo *points = nullptr;
  const float *ranges = nullptr;  ///< metres, one a slot in the points' order; 0: no return, or removed
  int columns = 0;                ///< firing positions
  int echoes = 1;
  int channels = 0;
  float elevationMinDeg = 0.0F;  ///< the lidar's field of view; both 0: unknown
  float elevationMaxDeg = 0.0F;

  [[nodiscard]] std::size_t slots() const {
    return static_cast<std::size_t>(columns) * static_cast<std::size_t>(echoes) * static_cast<std::size_t>(channels);
  }
  [[nodiscard]] std::size_t slot(int column, int echo, int channel) const {
    return (static_cast<std::size_t>(column) * static_cast<std::size_t>(echoes) + static_cast<std::size_t>(echo)) *
               static_cast<std::size_t>(channels) +
           static_cast<std::size_t>(channel);
  }
  /// 0 outside the frame; the first and the last column are no neighbours.
  [[nodiscard]] float range(int column, int echo, int channel) const {
    const bool inside = column >= 0 && column < columns && channel >= 0 && channel < channels;
    return inside ? ranges[slot(column, echo, channel)] : 0.0F;
  }
  [[nodiscard]] const SDKPointInfo &point(int column, int echo, int channel) const {
    return points[slot(column, echo, channel)];
  }
};

}  // namespace tarvo::lidar
