#pragma once

#include "contracts/runtime/decoder_filter_settings.h"
#include "runtime/filters/frame_grid.h"

namespace tarvo::lidar {

/// Finds lonely points: fewer than the least number of returns of the two columns on either side lie within the radius,
/// which grows with the range as points spread. The distance is that in space.
class NoiseFilter {
 public:
  explicit NoiseFilter(const NoiseSettings &settings) : settings_(settings) {
    settings_.radiusMetres = finiteOr(settings.radiusMetres, NoiseSettings().radiusMetres);
    settings_.radiusOfRange = finiteOr(settings.radiusOfRange, NoiseSettings().radiusOfRange);
  }

  [[nodiscard]] bool takes(const FrameGrid &grid, int column, int echo, int channel) const {
    const SDKPointInfo &point = grid.point(column, echo, channel);
    const float radius = settings_.radiusMetres + settings_.radiusOfRange * grid.range(column, echo, channel);
    const int beside = settings_.mode == 0 ? 0 : 1;
    int near = 0;
    for (int c = column - columnReach; c <= column + columnReach; ++c)
      for (int other = 0; other < grid.echoes; ++other)
        for (int h = channel - beside; h <= channel + beside; ++h) {
          const bool itself = c == column && other == echo && h == channel;
          if (itself || grid.range(c, other, h) <= 0.0F) continue;
          if (isNear(point, grid.point(c, other, h), radius) && ++near >= settings_.leastNeighbours) return false;
        }
    return near < settings_.leastNeighbours;
  }

 private:
  static constexpr int columnReach = 2;

  static bool isNear(const SDKPointInfo &a, const SDKPointInfo &b, float radius) {
    const float x = a.x - b.x;
    const float y = a.y - b.y;
    const float z = a.z - b.z;
    return x * x + y * y + z * z <= radius * radius;
  }

  NoiseSettings settings_;
};

}  // namespace tarvo::lidar
