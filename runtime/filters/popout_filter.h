#pragma once

#include <algorithm>
#include <cmath>

#include "contracts/runtime/decoder_filter_settings.h"
#include "runtime/filters/frame_grid.h"

namespace tarvo::lidar {

/// Finds points that pop out of their surroundings: no return of the neighbouring columns, in the point's channel or
/// the two beside it, lies at its range.
class PopoutFilter {
 public:
  explicit PopoutFilter(const PopoutSettings &settings)
      : window_(std::clamp(settings.window, 1, widest)),
        tolerance_(finiteOr(settings.toleranceMetres, PopoutSettings().toleranceMetres)),
        toleranceOfRange_(finiteOr(settings.toleranceOfRange, PopoutSettings().toleranceOfRange)),
        greatestRange_(finiteOr(settings.greatestRangeMetres, 0.0F)) {}

  [[nodiscard]] bool takes(const FrameGrid &grid, int column, int echo, int channel) const {
    const float range = grid.range(column, echo, channel);
    if (greatestRange_ > 0.0F && range > greatestRange_) return false;
    const float tolerance = tolerance_ + toleranceOfRange_ * range;
    for (int c = column - window_; c <= column + window_; ++c)
      for (int other = 0; c != column && other < grid.echoes; ++other)
        for (int h = channel - 1; h <= channel + 1; ++h) {
          const float neighbour = grid.range(c, other, h);
          if (neighbour > 0.0F && std::abs(neighbour - range) <= tolerance) return false;
        }
    return true;
  }

 private:
  static constexpr int widest = 16;
  int window_;
  float tolerance_;
  float toleranceOfRange_;
  float greatestRange_;
};

}  // namespace tarvo::lidar
