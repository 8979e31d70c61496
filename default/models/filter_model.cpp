#include "default/models/filter_model.h"

#include "contracts/host/log.h"

#include <QVariant>
#include <QVariantList>

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

SKARN_LOG_SOURCE("default/filter_model");

namespace tarvo::skarnvisor {

namespace {

/// A number of a list as an integer: 0 for what is none, the nearest limit for what is too large. An empty field of a
/// panel arrives as a number that is none.
int integerOf(const QVariant &number) {
  const double value = number.toDouble();
  if (std::isnan(value)) return 0;
  constexpr double lowest = std::numeric_limits<int>::min();
  constexpr double highest = std::numeric_limits<int>::max();
  return static_cast<int>(std::lround(std::clamp(value, lowest, highest)));
}

/// Replaces `limits` by the numbers of `list`; false, and nothing changed, at another length.
template <typename Limits>
bool takeLimits(const QVariantList &list, Limits &limits) {
  if (static_cast<std::size_t>(list.size()) != limits.size()) return false;
  for (std::size_t i = 0; i < limits.size(); ++i) {
    const QVariant &number = list.at(static_cast<int>(i));
    if constexpr (std::is_same_v<typename Limits::value_type, float>)
      limits[i] = number.toFloat();
    else
      limits[i] = integerOf(number);
  }
  return true;
}

}  // namespace

FilterModel::FilterModel(QObject *parent) : QObject(parent) {}

void FilterModel::setOffered(FilterSlot slot, bool offered) {
  m_state.update([&](FilterSnapshot &state) { state.offered[static_cast<std::size_t>(slot)] = offered; });
}

void FilterModel::setFilterMode(int mode) {
  m_state.update([&](FilterSnapshot &state) { state.mode = mode; });
}

void FilterModel::setHighlight(bool flag) {
  m_state.update([&](FilterSnapshot &state) { state.highlight = flag; });
  Q_EMIT highlightChanged();
}

void FilterModel::setFilter(bool flag, QVariant fLimits, QVariant iLimits) {
  bool floatsFit = true;
  bool intsFit = true;
  m_state.update([&](FilterSnapshot &state) {
    state.enabled = flag;
    floatsFit = takeLimits(fLimits.toList(), state.floatLimits);
    intsFit = !floatsFit || takeLimits(iLimits.toList(), state.intLimits);
  });
  if (!floatsFit)
    SKARN_LOG(LogLevel::Internal, "ERROR: setFilter size mismatch (float_limits_)");
  else if (!intsFit)
    SKARN_LOG(LogLevel::Internal, "ERROR: setFilter size mismatch (int_limits_)");
}

void FilterModel::reset() {
  m_state.update([](FilterSnapshot &state) {
    state.enabled = false;
    state.floatLimits = FilterSnapshot::floatLimitsAtStart();
    state.intLimits = FilterSnapshot::intLimitsAtStart();
  });
}

}  // namespace tarvo::skarnvisor
