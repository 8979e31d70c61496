#include "default/frame/point_pass.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "contracts/runtime/point_fields.h"
#include "default/frame/stream_copy.h"
#include "default/frame/vertex_run.h"

namespace tarvo::skarnvisor {

using lidar::SDKPointInfo;
namespace fields = lidar::fields;

/// A run of points and what the steps know of them so far.
struct PointPass::Run : VertexRun<pointRunLength> {
  SDKPointInfo *points;
  Vertex *vertices;
  std::size_t firstIndex;  ///< index in the frame of point 0
  std::size_t firstPosition;
  bool marksAny = false;  ///< `marked` is filled
  std::array<std::uint8_t, pointRunLength> marked;

  Run(const PointPassTarget &target, std::size_t begin, std::size_t length)
      : VertexRun(length),
        points(target.points + begin),
        vertices(target.vertices + begin),
        firstIndex(begin),
        firstPosition(target.firstPosition + begin) {}

  [[nodiscard]] std::span<const SDKPointInfo> span() const { return {points, count}; }

  /// Hides the points that `test(point, i)` names, among those that are not hidden yet.
  template <typename Test>
  void hideWhere(Test &&test) {
    for (std::size_t i = 0; i < count; ++i) {
      if (hidden[i] == 0 && test(points[i], i)) {
        hidden[i] = 1;
      }
    }
  }

  void startMarks() {
    if (!marksAny) {
      marksAny = true;
      std::fill_n(marked.begin(), count, std::uint8_t{0});
    }
  }
};

void colorWords(const PointPassSettings &settings, std::span<const SDKPointInfo> points,
                std::span<std::uint32_t> words) {
  if (settings.useRgbMode) {
    rgbWords(settings.rgbScale, points, words);
    return;
  }
  if (settings.familyColors) {
    settings.familyColors(points, words.first(points.size()));
    return;
  }
  const ColorTable &colors = settings.colors;
  std::array<float, pointRunLength> low;
  std::array<float, pointRunLength> high;
  attributeValues(colors.attributes, colors.attributeOf(colors.colorMode), points, low);
  attributeValues(colors.attributes, colors.attributeOf(colors.colorModeSplitWindow), points, high);
  std::size_t i = 0;
  for (; i + lanes::width <= points.size(); i += lanes::width) {
    lanes::halfWords(&low[i], &high[i], &words[i]);
  }
  for (; i < points.size(); ++i) {
    words[i] = halfFromFloat(high[i]) << 16 | halfFromFloat(low[i]);
  }
}

PointPass::PointPass(PointPassSettings settings)
    : m_settings(std::move(settings)),
      m_remakesPosition(m_settings.remakeEnabled && !m_settings.remakeKeepsPosition),
      m_filters(!m_settings.filter.filtersNothing()),
      m_ranges(m_settings.filter.enabled && m_settings.fileRanges && !m_settings.fileRanges->byAttribute.empty()) {}

bool PointPass::operator()(const PointPassTarget &target, std::size_t begin, std::size_t end) const {
  bool anyShown = false;
  for (; begin < end; begin += pointRunLength) {
    anyShown |= processRun(target, begin, std::min(pointRunLength, end - begin));
  }
  endStream();
  return anyShown;
}

bool PointPass::processRun(const PointPassTarget &target, std::size_t begin, std::size_t count) const {
  Run run(target, begin, count);
  placePoints(run);
  if (m_settings.areaRemap.areaRemapEnabled) {
    const bool alternate = m_settings.colors.attributes.nbqPointLayout;
    std::for_each_n(run.points, count, [&](SDKPointInfo &point) { m_settings.areaRemap.apply(point, alternate); });
  }
  hideByPoint(run);
  applyFilter(run);
  colorWords(m_settings, run.span(), run.words);
  run.write(run.vertices);
  if (m_settings.selection) {
    select(run);
  }
  if (m_settings.pointSeenHook) {
    for (std::size_t i = 0; i < count; ++i) {
      if (run.hidden[i] == 0) {
        m_settings.pointSeenHook(run.points[i], static_cast<int>(begin + i));
      }
    }
  }
  if (target.store != nullptr) {
    if (target.count >= streamedPoints) {
      streamPoints(run.points, target.store + begin, count);
    } else {
      std::memcpy(target.store + begin, run.points, count * sizeof(SDKPointInfo));
    }
  }
  highlight(run);
  if (target.canvas != nullptr) {
    Vertex *canvas = target.canvas + begin;
    for (std::size_t i = 0; i < count; ++i) {
      canvas[i] = run.hidden[i] != 0 ? Vertex{canvas[i].low, canvas[i].high, hiddenMark} : run.vertices[i];
    }
  }
  return anyShown({run.vertices, count});
}

void PointPass::placePoints(Run &run) const {
  if (!m_remakesPosition) {
    run.placeAt(run.points);
    return;
  }
  const RemakeFold fold = m_settings.remake;
  auto cell = fold.cellOf(run.firstIndex);
  for (std::size_t i = 0; i < run.count; ++i) {
    run.x[i] = 0.0F;
    run.y[i] = fold.yOf(cell);
    run.z[i] = fold.zOf(cell);
    cell = fold.next(cell);
  }
}

void PointPass::hideByPoint(Run &run) const {
  run.hideEmptySlots(run.points);
  if (m_settings.remakeEnabled) {
    for (std::size_t i = 0; i < run.count; ++i) {
      run.hidden[i] |= static_cast<std::uint8_t>(run.points[i].distance <= 0.0F);
    }
  }
  if (m_settings.pointHook) {
    run.hideWhere([&](SDKPointInfo &point, std::size_t) { return m_settings.pointHook(point); });
  }
  if (m_settings.areaMask.isActive()) {
    run.hideWhere([&](SDKPointInfo &, std::size_t i) { return m_settings.areaMask.isMasked(run.firstPosition + i); });
  }
  if (m_settings.selectedEcho != 0) {
    run.hideWhere([&](SDKPointInfo &point, std::size_t) { return fields::echo.get(point) != m_settings.selectedEcho; });
  }
  if (m_settings.dirtyMask) {
    const auto &shown = *m_settings.dirtyMask;
    run.hideWhere([&](SDKPointInfo &point, std::size_t) { return !shown[fields::dirtyDegree.get(point)]; });
  }
}

void PointPass::applyFilter(Run &run) const {
  if (m_filters) {
    std::array<std::uint8_t, pointRunLength> filtered;
    m_settings.filter.filterRun(run.points, run.count, filtered.data());
    if (m_settings.filter.highlight) {
      run.marksAny = true;
      std::copy_n(filtered.begin(), run.count, run.marked.begin());
    } else {
      for (std::size_t i = 0; i < run.count; ++i) {
        run.hidden[i] |= filtered[i];
      }
    }
  }
  if (m_ranges) {
    run.startMarks();
    run.hideWhere([&](SDKPointInfo &point, std::size_t i) {
      const RangeOutcome outcome = m_settings.fileRanges->outcomeOf(point);
      run.marked[i] |= static_cast<std::uint8_t>(outcome == RangeOutcome::Highlight);
      return outcome == RangeOutcome::Hide;
    });
  }
}

void PointPass::select(Run &run) const {
  std::array<std::uint8_t, pointRunLength> inside;
  m_settings.selection->holdsEach(run.x, run.y, run.z, inside);
  for (std::size_t i = 0; i < run.count; ++i) {
    if (run.hidden[i] == 0 && inside[i] != 0) {
      run.vertices[i].color = highlightMark;
      run.points[i].selected = 1;
    }
  }
}

void PointPass::highlight(Run &run) const {
  if (m_settings.popoutHighlight) {
    run.startMarks();
    for (std::size_t i = 0; i < run.count; ++i) {
      run.marked[i] |= static_cast<std::uint8_t>(run.points[i].confidence == 255);
    }
  }
  if (run.marksAny) {
    for (std::size_t i = 0; i < run.count; ++i) {
      if (run.hidden[i] == 0 && run.marked[i] != 0) {
        run.vertices[i].color = highlightMark;
      }
    }
  }
}

}  // namespace tarvo::skarnvisor
