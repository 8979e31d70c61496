#include "default/models/filter_snapshot.h"

#include "contracts/runtime/point_fields.h"

#include <algorithm>

namespace tarvo::skarnvisor {

namespace {

using tarvo::lidar::SDKPointInfo;
namespace fields = tarvo::lidar::fields;

// Sets the flag of each point whose value lies outside the limits. Low above high is a range that wraps
// around, as azimuths across 0 do. A value that is no number is not outside.
template <auto Field, typename Limit>
void markOutside(const SDKPointInfo *points, std::size_t count, Limit low, Limit high, std::uint8_t *flags) {
  if (low > high) {
    for (std::size_t i = 0; i < count; ++i) {
      const auto value = static_cast<Limit>(Field.get(points[i]));
      flags[i] |= static_cast<std::uint8_t>((value < low) & (value > high));
    }
    return;
  }
  for (std::size_t i = 0; i < count; ++i) {
    const auto value = static_cast<Limit>(Field.get(points[i]));
    flags[i] |= static_cast<std::uint8_t>((value < low) | (value > high));
  }
}

// Clears the flag of each point whose value lies inside the limits. Equal limits hold nothing here.
template <auto Field, typename Limit>
void clearInside(const SDKPointInfo *points, std::size_t count, Limit low, Limit high, std::uint8_t *flags) {
  if (low == high) return;
  const bool wraps = low > high;
  for (std::size_t i = 0; i < count; ++i) {
    const auto value = static_cast<Limit>(Field.get(points[i]));
    const bool inside = wraps ? (value >= low) | (value <= high) : (value >= low) & (value <= high);
    flags[i] &= static_cast<std::uint8_t>(!inside);
  }
}

template <typename Limit>
struct SlotRow {
  using Test = void (*)(const SDKPointInfo *, std::size_t, Limit, Limit, std::uint8_t *);
  Test markOutside;
  Test clearInside;
  Limit low;
  Limit high;
  bool offered;
};

template <auto Field, typename Limit>
constexpr SlotRow<Limit> row(Limit low, Limit high, bool offered) {
  return {&markOutside<Field, Limit>, &clearInside<Field, Limit>, low, high, offered};
}

constexpr std::array<SlotRow<float>, FilterSnapshot::floatSlots> floatSlotRows{{
    row<fields::azimuthCalib>(-360.0F, 360.0F, true),
    row<fields::elevationCalib>(-360.0F, 360.0F, true),
    row<fields::distance>(0.0F, 1000.0F, true),
    row<fields::x>(-1000.0F, 1000.0F, true),
    row<fields::y>(-1000.0F, 1000.0F, true),
    row<fields::z>(-1000.0F, 1000.0F, true),
}};

// The high limit of a bit slot is the weight of the bit, so that its default admits both values.
constexpr std::array<SlotRow<int>, FilterSnapshot::intSlots> intSlotRows{{
    row<fields::intensity>(0, 255, true),
    row<fields::confidence>(0, 255, false),
    row<fields::weightFactor>(0, 255, false),
    row<fields::aziState>(0, 255, false),
    row<fields::turnIndex>(0, 255, false),
    row<fields::pointId>(0, 65536, false),
    row<fields::confidence0>(0, 1, false),
    row<fields::confidence1>(0, 2, false),
    row<fields::confidence2>(0, 4, false),
    row<fields::confidence3>(0, 8, false),
    row<fields::confidence4567>(0, 16, false),
    row<fields::confidence01234>(0, 32, false),
    row<fields::confidence5>(0, 32, false),
    row<fields::confidence6>(0, 64, false),
    row<fields::confidence7>(0, 128, false),
    row<fields::areaAlternate>(0, 255, false),
    row<fields::stepId>(0, 1, false),
    row<fields::spadId>(0, 1, false),
}};

}  // namespace

std::array<bool, FilterSnapshot::slots> FilterSnapshot::offeredAtStart() {
  std::array<bool, slots> offered{};
  for (std::size_t slot = 0; slot < floatSlots; ++slot) offered[slot] = floatSlotRows[slot].offered;
  for (std::size_t slot = 0; slot < intSlots; ++slot) offered[floatSlots + slot] = intSlotRows[slot].offered;
  return offered;
}

std::array<float, FilterSnapshot::floatSlots * 2> FilterSnapshot::floatLimitsAtStart() {
  std::array<float, floatSlots * 2> limits{};
  for (std::size_t slot = 0; slot < floatSlots; ++slot) {
    limits[2 * slot] = floatSlotRows[slot].low;
    limits[2 * slot + 1] = floatSlotRows[slot].high;
  }
  return limits;
}

std::array<int, FilterSnapshot::intSlots * 2> FilterSnapshot::intLimitsAtStart() {
  std::array<int, intSlots * 2> limits{};
  for (std::size_t slot = 0; slot < intSlots; ++slot) {
    limits[2 * slot] = intSlotRows[slot].low;
    limits[2 * slot + 1] = intSlotRows[slot].high;
  }
  return limits;
}

bool FilterSnapshot::filtersNothing() const {
  return !enabled || (mode == 0 && std::ranges::none_of(offered, [](bool flag) { return flag; }));
}

bool FilterSnapshot::isFiltered(const SDKPointInfo &point) const {
  std::uint8_t filtered = 0;
  filterRun(&point, 1, &filtered);
  return filtered != 0;
}

void FilterSnapshot::filterRun(const SDKPointInfo *points, std::size_t count, std::uint8_t *filtered) const {
  const bool allMustMatch = mode == 0;
  std::fill_n(filtered, count, static_cast<std::uint8_t>(enabled && !allMustMatch));
  if (!enabled || (!allMustMatch && mode != 1)) return;
  for (std::size_t slot = 0; slot < floatSlots; ++slot) {
    if (!offered[slot]) continue;
    const auto &row = floatSlotRows[slot];
    const auto test = allMustMatch ? row.markOutside : row.clearInside;
    test(points, count, floatLimits[2 * slot], floatLimits[2 * slot + 1], filtered);
  }
  for (std::size_t slot = 0; slot < intSlots; ++slot) {
    if (!offered[floatSlots + slot]) continue;
    const auto &row = intSlotRows[slot];
    const auto test = allMustMatch ? row.markOutside : row.clearInside;
    test(points, count, intLimits[2 * slot], intLimits[2 * slot + 1], filtered);
  }
}

}  // namespace tarvo::skarnvisor
