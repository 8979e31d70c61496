#include "default/frame/color_table.h"

#include <algorithm>

#include "default/frame/half_float.h"

namespace tarvo::skarnvisor {

namespace {

constexpr std::array<int, 12> idsAtStart{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 22};

}  // namespace

ColorTable::ColorTable() : m_activeCount(static_cast<int>(idsAtStart.size())) {
  std::ranges::copy(idsAtStart, m_activeIds.begin());
}

std::vector<std::string> ColorTable::titles() const {
  std::vector<std::string> titles;
  titles.reserve(static_cast<std::size_t>(m_activeCount));
  for (int mode = 0; mode < m_activeCount; ++mode) {
    titles.emplace_back(attributeTitle(attributeOf(mode)));
  }
  return titles;
}

int ColorTable::attributeOf(int mode) const noexcept {
  return mode >= 0 && mode < m_activeCount ? m_activeIds[static_cast<std::size_t>(mode)] : attributeCount;
}

bool ColorTable::addColorMode(std::string_view title) {
  const auto id = attributeIdOf(title);
  if (m_activeCount == attributeCount || !id) {
    return false;
  }
  m_activeIds[static_cast<std::size_t>(m_activeCount)] = *id;
  ++m_activeCount;
  return true;
}

bool ColorTable::selectColorMode(std::string_view title) {
  const auto end = m_activeIds.begin() + m_activeCount;
  const auto found = std::find_if(m_activeIds.begin(), end, [title](int id) { return attributeTitle(id) == title; });
  const auto mode = static_cast<int>(found - m_activeIds.begin());
  if (found == end || mode == colorMode) {
    return false;
  }
  colorMode = mode;
  return true;
}

std::uint32_t ColorTable::attributeColor(const lidar::SDKPointInfo &point) const noexcept {
  const float split = attributeValue(attributes, attributeOf(colorModeSplitWindow), point);
  return halfFromFloat(split) << 16 | halfFromFloat(currentValue(point));
}

}  // namespace tarvo::skarnvisor
