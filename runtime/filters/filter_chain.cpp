#include "runtime/filters/filter_chain.h"

#include <algorithm>

#include "runtime/filters/distance_filter.h"
#include "runtime/filters/elevation_fov_filter.h"
#include "runtime/filters/offline_filter.h"
#include "runtime/filters/vd8_offline_filter.h"

namespace tarvo::lidar {

namespace {

/// Views highlight the points of this confidence.
constexpr std::uint16_t popoutConfidence = 255;

void remove(SDKPointInfo &point, float &range) {
  point.channel = 0;
  point.distance = point.x = point.y = point.z = 0.0F;
  range = 0.0F;
}

void mark(SDKPointInfo &point, float &) { point.confidence = popoutConfidence; }

/// Runs `visit(column, echo, channel, slot)` for every return of the columns.
template <class Visit>
void forReturns(const FrameGrid &grid, int first, int end, Visit &&visit) {
  for (int column = first; column < end; ++column)
    for (int echo = 0; echo < grid.echoes; ++echo) {
      std::size_t slot = grid.slot(column, echo, 0);
      for (int channel = 0; channel < grid.channels; ++channel, ++slot)
        if (grid.ranges[slot] > 0.0F) visit(column, echo, channel, slot);
    }
}

}  // namespace

void FilterChain::select(const FilterSettings &settings, const FrameDecodeParam &params) {
  settings_ = settings;
  distanceThreshold_ = params.vd2DistanceThreshold;
  elevationFov_ = params.elevationFovFilter;
  empty_ = !(settings.popout || settings.offline || settings.vd8Offline || settings.smoothing || settings.noise ||
             elevationFov_ || distanceThreshold_ > 0.0F);
}

void FilterChain::apply(FrameGrid grid, const Share &share) {
  if (empty_ || grid.slots() == 0) return;
  ranges_.resize(grid.slots());
  grid.ranges = ranges_.data();
  share(grid.columns, [&](int first, int end) {
    for (std::size_t slot = grid.slot(first, 0, 0); slot < grid.slot(end, 0, 0); ++slot)
      ranges_[slot] = grid.points[slot].channel != 0 ? grid.points[slot].distance : 0.0F;
  });
  if (elevationFov_) sweep(grid, share, ElevationFovFilter(grid), remove);
  if (distanceThreshold_ > 0.0F) sweep(grid, share, DistanceFilter(distanceThreshold_), remove);
  if (settings_.noise) sweep(grid, share, NoiseFilter(settings_.noiseSettings), remove);
  if (settings_.offline) sweep(grid, share, OfflineFilter(), remove);
  if (settings_.vd8Offline) sweep(grid, share, Vd8OfflineFilter(), remove);
  if (settings_.popout)
    sweep(grid, share, PopoutFilter(settings_.popoutSettings), settings_.popoutHighlight ? mark : remove);
  if (settings_.smoothing) smooth(grid, share);
}

/// Looks at all points before it changes any, so that the order of the points plays no part.
template <class Filter>
void FilterChain::sweep(const FrameGrid &grid, const Share &share, const Filter &filter, Act act) {
  taken_.assign(grid.slots(), 0);
  share(grid.columns, [&](int first, int end) {
    forReturns(grid, first, end, [&](int column, int echo, int channel, std::size_t slot) {
      taken_[slot] = filter.takes(grid, column, echo, channel);
    });
  });
  share(grid.columns, [&](int first, int end) {
    for (std::size_t slot = grid.slot(first, 0, 0); slot < grid.slot(end, 0, 0); ++slot)
      if (taken_[slot] != 0) act(grid.points[slot], ranges_[slot]);
  });
}

void FilterChain::smooth(const FrameGrid &grid, const Share &share) {
  const SmoothingFilter filter(settings_.smoothingSettings);
  for (int pass = 0; pass < filter.passes(); ++pass) {
    smoothed_ = ranges_;
    share(grid.columns, [&](int first, int end) {
      forReturns(grid, first, end, [&](int column, int echo, int channel, std::size_t slot) {
        smoothed_[slot] = filter.smoothed(grid, column, echo, channel);
      });
    });
    std::copy(smoothed_.begin(), smoothed_.end(), ranges_.begin());
  }
  share(grid.columns, [&](int first, int end) {
    forReturns(grid, first, end, [&](int, int, int, std::size_t slot) {
      SDKPointInfo &point = grid.points[slot];
      const float scale = ranges_[slot] / point.distance;
      point.x *= scale;
      point.y *= scale;
      point.z *= scale;
      point.distance = ranges_[slot];
    });
  });
}

}  // namespace tarvo::lidar
