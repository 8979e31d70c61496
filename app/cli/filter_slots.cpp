#include "app/cli/filter_slots.h"

#include <QString>

namespace tarvo::skarnvisor::app {
namespace {

QString plain(QString name) { return name.remove('-').remove('_').toLower(); }

}  // namespace

const std::array<FilterSlotRow, filterSlotCount> filterSlots{{
    {"azimuth", "azi", "azimuthCalibFilterFlag", -360, 360},
    {"elevation", "ele", "elevationCalibFilterFlag", -360, 360},
    {"distance", "dist", "distanceFilterFlag", 0, 1000},
    {"x", nullptr, "xFilterFlag", -1000, 1000},
    {"y", nullptr, "yFilterFlag", -1000, 1000},
    {"z", "height", "zFilterFlag", -1000, 1000},
    {"intensity", "reflectivity", "intensityFilterFlag", 0, 255},
    {"confidence", nullptr, "confidenceFilterFlag", 0, 255},
    {"weight-factor", "weight", "weightFactorFilterFlag", 0, 255},
    {"angle-state", nullptr, "angleStateFilterFlag", 0, 255},
    {"turn-index", "turn", "turnIndexFilterFlag", 0, 255},
    {"point-id", nullptr, "pointIdFilterFlag", 0, 65536},
    {"confidence0", nullptr, "confidence0FilterFlag", 0, 1},
    {"confidence1", nullptr, "confidence1FilterFlag", 0, 2},
    {"confidence2", nullptr, "confidence2FilterFlag", 0, 4},
    {"confidence3", nullptr, "confidence3FilterFlag", 0, 8},
    {"confidence4567", nullptr, "confidence4567FilterFlag", 0, 16},
    {"confidence01234", nullptr, "confidence01234FilterFlag", 0, 32},
    {"confidence5", nullptr, "confidence5FilterFlag", 0, 32},
    {"confidence6", nullptr, "confidence6FilterFlag", 0, 64},
    {"confidence7", nullptr, "confidence7FilterFlag", 0, 128},
    {"area", nullptr, "nbqVtAreaFilterFlag", 0, 255},
    {"step-id", nullptr, "nbqVtStepIdFilterFlag", 0, 1},
    {"spad-id", nullptr, "nbqVtSpadIdFilterFlag", 0, 1},
}};

std::optional<std::size_t> findFilterSlot(const QString &name) {
  const QString wanted = plain(name);
  for (std::size_t slot = 0; slot < filterSlots.size(); ++slot) {
    const FilterSlotRow &row = filterSlots[slot];
    const bool named = wanted == plain(QString::fromLatin1(row.name));
    if (named || (row.alias != nullptr && wanted == QLatin1String(row.alias))) return slot;
  }
  return std::nullopt;
}

QStringList filterSlotNames() {
  QStringList names;
  for (const FilterSlotRow &row : filterSlots) names.append(QString::fromLatin1(row.name));
  return names;
}

}  // namespace tarvo::skarnvisor::app
