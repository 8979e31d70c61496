#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "default/frame/attribute_catalogue.h"

namespace tarvo::skarnvisor {

/// The colour modes that a lidar offers and the two that are chosen: a plain value. A mode is an index
/// into the active list, not an attribute id.
class ColorTable {
 public:
  /// The twelve modes that every lidar has, intensity and distance chosen.
  ColorTable();

  int colorMode = 6;             ///< index into the active list
  int colorModeSplitWindow = 7;  ///< the same for the second view of a split window
  AttributeSettings attributes;

  /// Titles of the active list, in order.
  [[nodiscard]] std::vector<std::string> titles() const;
  [[nodiscard]] int activeCount() const noexcept { return m_activeCount; }

  /// Attribute id of a mode; `attributeCount` when the mode is outside the active list, which gives
  /// the plain intensity.
  [[nodiscard]] int attributeOf(int mode) const noexcept;

  /// Appends the attribute of this title. False, with nothing changed, when the list is full or no
  /// attribute has the title. A title may be appended twice.
  bool addColorMode(std::string_view title);

  /// Chooses the first active mode of this title. True when `colorMode` has changed.
  bool selectColorMode(std::string_view title);

  /// Value of a point in the current colour mode.
  [[nodiscard]] float currentValue(const lidar::SDKPointInfo &point) const noexcept {
    return attributeValue(attributes, attributeOf(colorMode), point);
  }

  /// The point's two half floats: the split window's mode in the high half, the main mode in the low.
  [[nodiscard]] std::uint32_t attributeColor(const lidar::SDKPointInfo &point) const noexcept;

 private:
  int m_activeCount = 0;
  std::array<int, attributeCount> m_activeIds{};
};

}  // namespace tarvo::skarnvisor
