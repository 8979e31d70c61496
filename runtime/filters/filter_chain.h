#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "contracts/runtime/frame_decode_param.h"
#include "runtime/filters/filter_settings.h"
#include "runtime/filters/frame_grid.h"

namespace tarvo::lidar {

/// The decoder's own filters, one after the other on a decoded frame: elevation field of view, distance threshold,
/// noise, both offline filters, pop-out, smoothing. Each sees what those before it have left. A removed point becomes a
/// shot without a return: channel 0, distance and position 0, its angles kept. One thread at a time.
class FilterChain {
 public:
  /// Runs work(first, end) over ranges that make up columns [0, columns), on as many threads as it likes; returns when
  /// all are done.
  using Share = std::function<void(int columns, const std::function<void(int first, int end)> &work)>;

  /// Which filters the next frames go through. Once a decode.
  void select(const FilterSettings &settings, const FrameDecodeParam &params);
  /// True: every filter is off, and there is nothing to apply.
  [[nodiscard]] bool isEmpty() const { return empty_; }
  /// Filters one frame in place. `grid.ranges` need not be set.
  void apply(FrameGrid grid, const Share &share);

 private:
  using Act = void (*)(SDKPointInfo &point, float &range);

  template <class Filter>
  void sweep(const FrameGrid &grid, const Share &share, const Filter &filter, Act act);
  void smooth(const FrameGrid &grid, const Share &share);

  FilterSettings settings_;
  float distanceThreshold_ = 0.0F;
  bool elevationFov_ = false;
  bool empty_ = true;
  std::vector<float> ranges_;
  std::vector<float> smoothed_;
  std::vector<std::uint8_t> taken_;
};

}  // namespace tarvo::lidar
