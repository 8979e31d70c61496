#include "default/point_files/placing.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "default/frame/lanes.h"

namespace tarvo::skarnvisor {

namespace {

constexpr std::array<int, PcdColors::count> attributeIds = {0, 2, 4, 6, 7, 8, 9, 10, 22};

// Whole lanes are worked on: what lies behind the last point must be a number.
template <typename Array>
void closeTail(Array &values, std::size_t count) {
  std::fill(values.begin() + static_cast<std::ptrdiff_t>(count),
            values.begin() + static_cast<std::ptrdiff_t>((count + lanes::width - 1) / lanes::width * lanes::width), 0);
}

}  // namespace

int PcdColors::attributeOf(int mode) {
  return mode >= 0 && mode < count ? attributeIds[static_cast<std::size_t>(mode)] : attributeCount;
}

Placing::Placing(const PlacingSettings &settings)
    : m_settings(settings), m_filters(!settings.filter.filtersNothing()) {}

void Placing::judge(const lidar::SDKPointInfo *points, std::size_t count, std::uint8_t *hidden,
                    std::uint8_t *filtered) const {
  if (m_filters)
    m_settings.filter.filterRun(points, count, filtered);
  else
    std::fill_n(filtered, count, std::uint8_t{0});
  for (std::size_t i = 0; i < count; ++i) {
    const lidar::SDKPointInfo &point = points[i];
    const bool placed = std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
    const bool shown = placed && point.channel <= drawnRings && m_settings.ringShown[point.channel];
    hidden[i] = static_cast<std::uint8_t>(!shown);
    if (!m_settings.filter.highlight) hidden[i] |= filtered[i];
  }
}

void Placing::placeRun(lidar::SDKPointInfo *points, Vertex *vertices, std::size_t count) const {
  std::array<std::uint8_t, runLength> hidden, filtered;
  std::array<float, runLength> x, y, z, low, high;
  std::array<std::uint32_t, runLength> words;
  judge(points, count, hidden.data(), filtered.data());
  for (std::size_t i = 0; i < count; ++i) {
    x[i] = points[i].x;
    y[i] = points[i].y;
    z[i] = points[i].z;
  }
  const std::span<const lidar::SDKPointInfo> run(points, count);
  attributeValues(m_settings.colors.attributes, PcdColors::attributeOf(m_settings.colors.mode), run, low);
  attributeValues(m_settings.colors.attributes, PcdColors::attributeOf(m_settings.colors.splitMode), run, high);
  for (auto *values : {&x, &y, &z, &low, &high}) closeTail(*values, count);

  std::array<Vertex, runLength> packed;
  for (std::size_t i = 0; i < count; i += lanes::width) {
    lanes::halfWords(&low[i], &high[i], &words[i]);
    lanes::packVertices(&x[i], &y[i], &z[i], &words[i], &packed[i]);
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (hidden[i] != 0)
      vertices[i].color = hiddenMark;
    else
      vertices[i] = packed[i];
  }
  for (std::size_t i = 0; m_settings.selection && i < count; ++i) {
    if (hidden[i] != 0 || !m_settings.selection->holds(x[i], y[i], z[i])) continue;
    points[i].selected = 1;
    vertices[i].color = highlightMark;
  }
  // What a highlighting filter rejects stays in view.
  for (std::size_t i = 0; m_filters && i < count; ++i)
    if (filtered[i] != 0 && hidden[i] == 0) vertices[i].color = highlightMark;
}

}  // namespace tarvo::skarnvisor
