#pragma once

#include <algorithm>
#include <cmath>

#include "contracts/runtime/decoder_filter_settings.h"
#include "contracts/runtime/smoothing_config.h"
#include "runtime/filters/frame_grid.h"

namespace tarvo::lidar {

/// The settings of a configuration and its last value. What is no finite number counts as 0.
inline SmoothingSettings smoothingSettings(const SmoothingConfig &config, float last) {
  const auto a = [&config](std::size_t i) { return finiteOr(config.floats0[i], 0.0F); };
  const auto b = [&config](std::size_t i) { return finiteOr(config.floats8[i], 0.0F); };
  return {a(0),
          a(1),
          a(2),
          a(3),
          a(4),
          a(5),
          a(6),
          config.int7,
          b(0),
          b(1),
          b(2),
          config.ints11[0],
          config.ints11[1],
          finiteOr(last, 0.0F)};
}

/// Draws the range of a point to the mean of the neighbours that belong to the same surface. Works on one return at a
/// time; removes nothing.
class SmoothingFilter {
 public:
  explicit SmoothingFilter(const SmoothingSettings &settings)
      : settings_(settings),
        columnReach_(std::clamp(settings.columnReach, 0, 16)),
        channelReach_(std::clamp(settings.channelReach, 0, 4)),
        strength_(std::clamp(settings.strength, 0.0F, 1.0F)),
        shift_(std::max(settings.greatestShiftMetres, 0.0F)) {}

  [[nodiscard]] int passes() const { return std::clamp(settings_.passes, 1, 8); }

  /// The new range of a return, metres. The points still hold the ranges of before the first pass.
  [[nodiscard]] float smoothed(const FrameGrid &grid, int column, int echo, int channel) const {
    const float range = grid.range(column, echo, channel);
    const SDKPointInfo &point = grid.point(column, echo, channel);
    if (!concerns(point)) return range;
    const float tolerance = settings_.toleranceMetres + settings_.toleranceOfRange * range;
    float weight = std::max(settings_.centreWeight, 0.0F);
    float sum = weight * range;
    for (int c = column - columnReach_; c <= column + columnReach_; ++c)
      for (int h = channel - channelReach_; h <= channel + channelReach_; ++h) {
        const float neighbour = grid.range(c, echo, h);
        if (neighbour <= 0.0F || std::abs(neighbour - range) > tolerance || (c == column && h == channel)) continue;
        sum += neighbour;
        weight += 1.0F;
      }
    if (!(weight > 0.0F)) return range;
    const float drawn = range + strength_ * (sum / weight - range);
    return std::clamp(drawn, point.distance - shift_, point.distance + shift_);
  }

 private:
  [[nodiscard]] bool concerns(const SDKPointInfo &point) const {
    const auto inside = [](float value, float least, float greatest) { return value >= least && value <= greatest; };
    return inside(point.distance, settings_.leastRangeMetres, settings_.greatestRangeMetres) &&
           inside(point.intensity, settings_.leastIntensity, settings_.greatestIntensity) &&
           inside(point.elevationCalib, settings_.leastElevationDeg, settings_.greatestElevationDeg);
  }

  SmoothingSettings settings_;
  int columnReach_;
  int channelReach_;
  float strength_;
  float shift_;
};

}  // namespace tarvo::lidar
