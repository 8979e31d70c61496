#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "contracts/runtime/point_fields.h"
#include "default/frame/rgb_scale.h"

namespace tarvo::skarnvisor {

/// From the raw area of a point to the area that is shown: a plain value. Stays on from the first limit
/// that the user sets.
struct AreaRemap {
  float areaMin = 0.0F;
  float areaMax = 65535.0F;
  float areaRange = 65535.0F;
  float areaRemapFullScale = 65535.0F;  ///< top of the result
  bool areaRemapEnabled = false;

  /// Refuses a value not below `areaMax`; any other is stored and switches the remap on.
  LimitChange setMin(float value) {
    if (!(value < areaMax)) {
      return LimitChange::Refused;
    }
    areaMin = value;
    areaRange = areaMax - value;
    areaRemapEnabled = true;
    return LimitChange::Stored;
  }

  /// Refuses a value not above `areaMin`; any other is stored and switches the remap on.
  LimitChange setMax(float value) {
    if (!(value > areaMin)) {
      return LimitChange::Refused;
    }
    areaMax = value;
    areaRange = value - areaMin;
    areaRemapEnabled = true;
    return LimitChange::Stored;
  }

  [[nodiscard]] std::uint16_t remapped(std::uint16_t raw) const noexcept {
    const float scaled = (static_cast<float>(raw) - areaMin) / areaRange * areaRemapFullScale;
    return static_cast<std::uint16_t>(std::max(0.0F, std::min(areaRemapFullScale, scaled)));
  }

  /// Writes the area of a point from its raw area; `alternate` says which layout the point has.
  void apply(lidar::SDKPointInfo &point, bool alternate) const noexcept {
    namespace fields = lidar::fields;
    if (alternate) {
      fields::areaAlternate.set(point, static_cast<std::uint8_t>(remapped(fields::rawAreaAlternate.get(point))));
    } else {
      fields::area.set(point, remapped(fields::rawArea.get(point)));
    }
  }

  friend bool operator==(const AreaRemap &, const AreaRemap &) = default;
};

/// Which positions of the frame store area cuts hide. The counters belong to the caller.
struct AreaMaskView {
  static constexpr std::uint32_t active = 1U << 0;           ///< the area filter is on
  static constexpr std::uint32_t nothingToRevoke = 1U << 1;  ///< no cut since the last undo
  static constexpr std::uint32_t reversed = 1U << 2;         ///< what no cut holds is hidden

  std::uint32_t areaFlags = nothingToRevoke;
  std::span<const std::int32_t> counters;  ///< cuts that hold a position, per frame-store position

  [[nodiscard]] bool isActive() const noexcept { return (areaFlags & active) != 0 && !counters.empty(); }

  /// A position beyond the counters is not masked.
  [[nodiscard]] bool isMasked(std::size_t position) const noexcept {
    if ((areaFlags & active) == 0 || position >= counters.size()) {
      return false;
    }
    return (areaFlags & reversed) != 0 ? counters[position] == 0 : counters[position] > 0;
  }
};

}  // namespace tarvo::skarnvisor
