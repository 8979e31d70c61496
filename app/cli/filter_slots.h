#pragma once

#include <QStringList>
#include <array>
#include <cstddef>
#include <optional>

namespace tarvo::skarnvisor::app {

/// A slot of the point filter: how users name it, the property that says whether the lidar offers it, and the limits
/// that it starts with.
struct FilterSlotRow {
  const char *name;
  const char *alias;  ///< another name, or null
  const char *flag;
  double low;
  double high;
};

inline constexpr std::size_t floatSlotCount = 6;  ///< the first ones; the others hold whole numbers
inline constexpr std::size_t filterSlotCount = 24;

/// In the order in which the filter takes their limits.
extern const std::array<FilterSlotRow, filterSlotCount> filterSlots;

/// Upper or lower case, hyphens and underscores make no difference.
std::optional<std::size_t> findFilterSlot(const QString &name);
QStringList filterSlotNames();

}  // namespace tarvo::skarnvisor::app
