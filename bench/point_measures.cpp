// Filter and selection while a frame is parsed, and the passes over the points that are held already.

#include <algorithm>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "bench/measure.h"
#include "bench/sweep.h"
#include "contracts/host/executor.h"
#include "default/pipeline/default_sdk_frame_render_buffer.h"

namespace tarvo::skarnvisor::bench {

using lidar::SDKPointInfo;

namespace {

constexpr std::size_t distanceLow = 4;  ///< limits of the distance in the filter's list
constexpr std::size_t canvasPoints = 40'000;
constexpr float halfOfTheRanges = 105.0F;

/// A filter with the slots that every lidar offers, which half of the points pass.
FilterSnapshot halfFilter() {
  FilterSnapshot filter;
  filter.enabled = true;
  filter.floatLimits[distanceLow + 1] = halfOfTheRanges;
  return filter;
}

/// A box around the lidar that holds a part of the points.
QMatrix4x4 box() {
  QMatrix4x4 matrix;
  matrix.scale(1.0F / 60.0F);
  return matrix;
}

PointPassSettings filtered() {
  PointPassSettings settings;
  settings.filter = halfFilter();
  return settings;
}

PointPassSettings selected() {
  PointPassSettings settings;
  settings.selection.emplace();
  std::copy_n(box().constData(), settings.selection->matrix.size(), settings.selection->matrix.begin());
  return settings;
}

/// A render buffer that holds points, and arrays of the same size for the floor.
struct HeldPoints {
  DefaultSDKFrameRenderBuffer buffer;
  std::vector<SDKPointInfo> points;
  std::vector<Vertex> vertices{points.size(), hiddenVertex};

  explicit HeldPoints(std::size_t count) : points(sweep(count)) {}

  void filterHalf() {
    const FilterSnapshot filter = halfFilter();
    QVariantList floats;
    QVariantList ints;
    for (const float limit : filter.floatLimits) floats << limit;
    for (const int limit : filter.intLimits) ints << limit;
    buffer.filterModel().setFilter(true, floats, ints);
  }
  void writePlainly() { packOnly(global_executor(), points, vertices); }
};

std::shared_ptr<HeldPoints> heldFrame() {
  auto held = std::make_shared<HeldPoints>(pointCount);
  FramePicture &picture = held->buffer.picture();
  const std::lock_guard lock(picture.frameMutex);
  picture.vertices.assign(pointCount, hiddenVertex);
  picture.frameStore.shape(1, pointCount);
  std::ranges::copy(held->points, picture.frameStore.from(0).begin());
  picture.primitiveCount = static_cast<int>(pointCount);
  return held;
}

std::shared_ptr<HeldPoints> heldStack() {
  auto held = std::make_shared<HeldPoints>(CanvasRing::size * canvasPoints);
  FramePicture &picture = held->buffer.picture();
  CanvasRing &ring = held->buffer.ring();
  picture.takeStackLocked(*FramePicture::makeStack(CanvasRing::size, canvasPoints));
  ring.canvasPointCapacity = ring.canvasBufferSize = static_cast<int>(canvasPoints);
  ring.canvasCount = CanvasRing::size;
  const std::lock_guard lock(picture.frameMutex);
  for (std::size_t canvas = 0; canvas < CanvasRing::size; ++canvas) {
    ring.canvasFill[canvas] = static_cast<int>(canvasPoints);
    std::ranges::copy(std::span(held->points).subspan(canvas * canvasPoints, canvasPoints),
                      picture.frameStore.from(canvas * canvasPoints).begin());
  }
  return held;
}

Bodies refilterSingle() {
  const auto held = heldFrame();
  held->filterHalf();
  return {[held] { held->buffer.filterSinglePoints(); }, [held] { held->writePlainly(); }};
}

Bodies refilterStack() {
  const auto held = heldStack();
  held->filterHalf();
  return {[held] { held->buffer.filterMultiPoints(); }, [held] { held->writePlainly(); }};
}

/// All points are listed: the empty slots of the sweep are coloured as well.
Bodies refreshSelection() {
  const auto held = heldFrame();
  for (Vertex &vertex : held->buffer.picture().vertices) vertex.color = 0x34003400U;
  SpreadSheetModel &table = held->buffer.spreadSheetModel();
  table.setAllDisplayed(true);
  table.setSort(static_cast<int>(table.columnNames().indexOf("Dist(m)")), 1);
  const auto distances = std::make_shared<std::vector<float>>(held->points.size());
  std::ranges::transform(held->points, distances->begin(), &SDKPointInfo::distance);
  return {[held] { held->buffer.refreshSelection(); },
          [distances] {
            std::vector<float> keys = *distances;
            std::ranges::sort(keys);
          }};
}

}  // namespace

void addPointMeasures(std::vector<Measure> &measures) {
  measures.push_back(parseMeasure("parse_frame_filtered", filtered()));
  measures.push_back(parseMeasure("parse_frame_selected", selected()));
  measures.push_back({"refilter_single", "1,000,000 points of 88 bytes, 12-byte vertices: 100 MB", refilterSingle});
  measures.push_back({"refilter_stack_30_canvases",
                      "30 canvases of 40,000 points of 88 bytes, 12-byte vertices: 120 MB", refilterStack});
  measures.push_back(
      {"refresh_selection", "1,000,000 rows sorted by distance; floor: std::sort of the distances", refreshSelection});
}

}  // namespace tarvo::skarnvisor::bench
