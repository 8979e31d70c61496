#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "contracts/runtime/point_info.h"

namespace tarvo::skarnvisor {

/// What the value of an attribute depends on beside the point. Constant for a frame.
struct AttributeSettings {
  int channelCount = 128;                ///< channels of the lidar
  std::uint16_t attributeMask = 0xffff;  ///< ANDed with integer values
  bool nbqPointLayout = false;           ///< alternate reading of the family bytes
  bool diffByThree = false;              ///< scale of the distance differences in that layout

  friend bool operator==(const AttributeSettings &, const AttributeSettings &) = default;
};

/// Number of attributes; ids run from 0.
inline constexpr int attributeCount = 44;

/// Title of an attribute, empty for an id that is none.
[[nodiscard]] std::string_view attributeTitle(int id) noexcept;

/// Id of the attribute with this title, compared byte for byte.
[[nodiscard]] std::optional<int> attributeIdOf(std::string_view title) noexcept;

/// Colour value of a point, from 0 to 1 as far as the attribute's range allows. An id that is none gives
/// the intensity / 256 without the mask. Any thread.
[[nodiscard]] float attributeValue(const AttributeSettings &settings, int id,
                                   const lidar::SDKPointInfo &point) noexcept;

/// Colour values of a run of points: `values[i]` for `points[i]`; `values` is at least as long as
/// `points`. The attribute is chosen once for the run.
void attributeValues(const AttributeSettings &settings, int id, std::span<const lidar::SDKPointInfo> points,
                     std::span<float> values) noexcept;

}  // namespace tarvo::skarnvisor
