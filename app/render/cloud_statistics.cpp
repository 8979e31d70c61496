#include "app/render/cloud_statistics.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace tarvo::skarnvisor::app {
namespace {

constexpr std::size_t sampleCount = 20000;

/// Odd, so that it meets every channel of a lidar that has a power of two of them.
std::size_t sampleStep(const VertexCloud &cloud) { return (cloud.size() / sampleCount) | 1U; }

float quantile(std::vector<float> &values, double share) {
  const auto index = static_cast<std::size_t>(share * static_cast<double>(values.size() - 1));
  const auto place = values.begin() + static_cast<std::ptrdiff_t>(index);
  std::nth_element(values.begin(), place, values.end());
  return *place;
}

}  // namespace

PointCounts countPoints(const QByteArray &vertices) {
  PointCounts counts;
  const std::size_t count = static_cast<std::size_t>(vertices.size()) / vertexStride;
  const char *word = vertices.constData() + (vertexStride - sizeof(std::uint32_t));
  for (std::size_t i = 0; i < count; ++i, word += vertexStride) {
    std::uint32_t value;
    std::memcpy(&value, word, sizeof value);
    counts.hidden += value == hiddenWord ? 1 : 0;
    counts.highlighted += value == highlightWord ? 1 : 0;
  }
  counts.shown = count - counts.hidden;
  return counts;
}

PointCounts countPoints(const VertexCloud &cloud) {
  PointCounts sum;
  for (const QByteArray &vertices : cloud.canvases()) {
    const PointCounts counts = countPoints(vertices);
    sum.shown += counts.shown;
    sum.hidden += counts.hidden;
    sum.highlighted += counts.highlighted;
  }
  return sum;
}

SceneExtent sceneExtent(const VertexCloud &cloud, const QMatrix4x4 &placement) {
  std::vector<float> reaches;
  std::vector<float> heights;
  cloud.forEachShown(sampleStep(cloud), [&](const VertexPoint &point) {
    // A sensor reports a point without a return at its own place.
    if (point.x == 0 && point.y == 0 && point.z == 0) return;
    const QVector3D place = placement.map(QVector3D(point.x, point.y, point.z));
    reaches.push_back(std::hypot(place.x(), place.y()));
    heights.push_back(place.z());
  });
  SceneExtent extent;
  if (reaches.empty()) return extent;
  extent.radius = std::clamp(quantile(reaches, 0.93), 1.0F, 400.0F);
  extent.ground = quantile(heights, 0.1);
  extent.ceiling = quantile(heights, 0.98);
  return extent;
}

ValueRange stretchedRange(const VertexCloud &cloud, WordKind kind) {
  if (kind == WordKind::Rgb) return {};
  std::vector<float> values;
  cloud.forEachShown(sampleStep(cloud), [&](const VertexPoint &point) {
    if (point.word == highlightWord) return;
    const float value =
        halfToFloat(static_cast<std::uint16_t>(kind == WordKind::HighHalf ? point.word >> 16 : point.word));
    if (std::isfinite(value)) values.push_back(value);
  });
  if (values.empty()) return {};
  ValueRange range{quantile(values, 0.01), quantile(values, 0.99)};
  // A constant attribute sits in the middle of a small span.
  constexpr float leastSpan = 1.0F / 512;
  if (range.high - range.low < leastSpan) {
    const float middle = (range.high + range.low) / 2;
    range = {middle - leastSpan / 2, middle + leastSpan / 2};
  }
  return range;
}

}  // namespace tarvo::skarnvisor::app
