#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include "contracts/runtime/point_info.h"

namespace tarvo::skarnvisor {

/// One range of a filter file; both ends belong to it. A range with `min` above `max` holds nothing.
struct FilterRange {
  float min;
  float max;
  bool hide;  ///< true hides a point in the range, false highlights it
};

enum class RangeOutcome : std::uint8_t { None = 0, Hide = 1, Highlight = 2 };

/// The ranges of a loaded filter file, by id of the file's attributes. Filled once and then only read,
/// by any thread.
struct FilterRanges {
  std::map<int, std::vector<FilterRange>> byAttribute;

  /// What the first range that holds the point says: ids ascending, ranges of an id in file order.
  [[nodiscard]] RangeOutcome outcomeOf(const lidar::SDKPointInfo &point) const noexcept;

  /// Id of a file attribute, its name compared byte for byte.
  [[nodiscard]] static std::optional<int> attributeIdOf(std::string_view name) noexcept;

  /// Value that the ranges of an attribute are held against. The id is one that `attributeIdOf` gave.
  [[nodiscard]] static float valueOf(int id, const lidar::SDKPointInfo &point) noexcept;
};

}  // namespace tarvo::skarnvisor
