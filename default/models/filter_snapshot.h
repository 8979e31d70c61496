#pragma once

#include "contracts/runtime/point_info.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace tarvo::skarnvisor {

/// The state of a point filter at one moment, as plain values: what a pass over a frame works with.
/// Limits are (low, high) pairs in slot order; `offered` holds the six float slots first, then the
/// integer slots.
struct FilterSnapshot {
  static constexpr std::size_t floatSlots = 6;
  static constexpr std::size_t intSlots = 18;
  static constexpr std::size_t slots = floatSlots + intSlots;

  bool enabled = false;
  int mode = 0;            ///< 0: all slots must hold the point, 1: any may; others filter everything
  bool highlight = false;  ///< filtered points stay and are marked
  std::array<bool, slots> offered = offeredAtStart();
  std::array<float, floatSlots * 2> floatLimits = floatLimitsAtStart();
  std::array<int, intSlots * 2> intLimits = intLimitsAtStart();

  /// True when the filter rejects the point. Allocates nothing; any thread.
  bool isFiltered(const tarvo::lidar::SDKPointInfo &point) const;

  /// Writes 1 to `filtered[i]` for each rejected one of `count` points, else 0. Each slot is one loop
  /// over the run, so a run that fits the first-level cache costs far less a point than `isFiltered`.
  void filterRun(const tarvo::lidar::SDKPointInfo *points, std::size_t count, std::uint8_t *filtered) const;

  /// True when the filter rejects no point whatever it holds, so that a caller may leave the test out.
  bool filtersNothing() const;

  static std::array<bool, slots> offeredAtStart();
  static std::array<float, floatSlots * 2> floatLimitsAtStart();
  static std::array<int, intSlots * 2> intLimitsAtStart();
};

}  // namespace tarvo::skarnvisor
