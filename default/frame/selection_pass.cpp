#include "default/frame/selection_pass.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "default/frame/parallel_runs.h"

namespace tarvo::skarnvisor {

using lidar::SDKPointInfo;

namespace {

/// Points that a thread takes at once; each such part lists its rows on its own.
constexpr std::size_t partLength = 4096;
static_assert(partLength % pointRunLength == 0);

template <typename T>
using PerPoint = std::array<T, pointRunLength>;

/// Which points of a run lie in the frustum.
void holdsEach(const Frustum &frustum, const SDKPointInfo *points, std::size_t count, PerPoint<std::uint8_t> &inside) {
  PerPoint<float> x{};
  PerPoint<float> y{};
  PerPoint<float> z{};
  for (std::size_t i = 0; i < count; ++i) {
    x[i] = points[i].x;
    y[i] = points[i].y;
    z[i] = points[i].z;
  }
  frustum.holdsEach(x, y, z, inside);
}

/// Writing only what changes keeps a refresh without news from rewriting every stored point.
void setSelected(SDKPointInfo &point, std::uint8_t selected) {
  if (point.selected != selected) point.selected = selected;
}

}  // namespace

SelectionPass::SelectionPass(PointPassSettings settings, MarkTest marks, bool listsAll)
    : m_settings(std::move(settings)), m_marks(marks), m_listsAll(listsAll) {}

std::size_t SelectionPass::operator()(tf::Executor &executor, const StoredPoints &stored, std::uint32_t *rows) const {
  std::vector<std::size_t> listed(stored.count / partLength + 1, 0);
  parallelRuns(executor, stored.count, partLength, [&](std::size_t begin, std::size_t end) {
    std::uint32_t *const partRows = rows + begin;
    std::size_t count = 0;
    for (std::size_t run = begin; run < end; run += pointRunLength)
      count += processRun(stored, run, std::min(pointRunLength, end - run), partRows + count);
    listed[begin / partLength] = count;
  });
  std::size_t count = 0;
  for (std::size_t part = 0; part < listed.size(); ++part) {
    std::memmove(rows + count, rows + part * partLength, listed[part] * sizeof(std::uint32_t));
    count += listed[part];
  }
  return count;
}

std::size_t SelectionPass::processRun(const StoredPoints &stored, std::size_t begin, std::size_t count,
                                      std::uint32_t *rows) const {
  SDKPointInfo *const points = stored.points + begin;
  Vertex *const vertices = stored.vertices + begin;
  const auto firstPosition = static_cast<std::uint32_t>(stored.firstPosition + begin);
  const bool selecting = m_settings.selection.has_value();
  PerPoint<std::uint8_t> inside{};
  if (selecting) holdsEach(*m_settings.selection, points, count, inside);

  PerPoint<std::uint32_t> words;
  bool hasWords = false;
  const auto colorAgain = [&](std::size_t i) {
    if (!std::exchange(hasWords, true)) colorWords(m_settings, {points, count}, words);
    return words[i];
  };
  std::size_t listed = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint32_t word = vertices[i].color;
    if (m_marks.hidden(word)) continue;
    if (inside[i] != 0)
      vertices[i].color = highlightMark;
    else if (selecting && m_marks.highlighted(word))
      vertices[i].color = colorAgain(i);
    if (inside[i] != 0 || m_listsAll) {
      setSelected(points[i], 1);
      rows[listed++] = firstPosition + static_cast<std::uint32_t>(i);
    } else if (selecting) {
      setSelected(points[i], 0);
    }
  }
  return listed;
}

void countInside(tf::Executor &executor, const Frustum &frustum, std::span<const SDKPointInfo> points,
                 std::span<std::int32_t> counters, int step) {
  parallelRuns(executor, std::min(points.size(), counters.size()), partLength, [&](std::size_t begin, std::size_t end) {
    PerPoint<std::uint8_t> inside;
    for (; begin < end; begin += pointRunLength) {
      const std::size_t count = std::min(pointRunLength, end - begin);
      holdsEach(frustum, points.data() + begin, count, inside);
      for (std::size_t i = 0; i < count; ++i) {
        std::int32_t &counter = counters[begin + i];
        if (inside[i] != 0 && (step > 0 || counter != 0)) counter += step;
      }
    }
  });
}

}  // namespace tarvo::skarnvisor
