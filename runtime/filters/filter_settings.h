#pragma once

#include <mutex>

#include "runtime/filters/noise_filter.h"
#include "runtime/filters/popout_filter.h"
#include "runtime/filters/smoothing_filter.h"

namespace tarvo::lidar {

/// Which filters are on, and how they are set.
struct FilterSettings {
  bool popout = false;
  bool popoutHighlight = false;  ///< pop-out points are marked in place of removed
  PopoutSettings popoutSettings{};
  bool offline = false;
  bool vd8Offline = false;
  bool smoothing = false;
  SmoothingSettings smoothingSettings{};
  bool noise = false;
  NoiseSettings noiseSettings{};
};

/// The filter settings of one runtime. Any thread; a decode takes one snapshot() and uses it to its end.
class FilterControls {
 public:
  template <class Change>
  void change(Change &&change) {
    const std::lock_guard lock(mutex_);
    change(settings_);
  }
  [[nodiscard]] FilterSettings snapshot() const {
    const std::lock_guard lock(mutex_);
    return settings_;
  }

 private:
  mutable std::mutex mutex_;  // guards settings_
  FilterSettings settings_;
};

}  // namespace tarvo::lidar
