#include "default/frame/frame_loops.h"

#include <algorithm>
#include <atomic>

#include "default/frame/half_float.h"
#include "default/frame/parallel_runs.h"
#include "default/frame/vertex_run.h"

namespace tarvo::skarnvisor {

using lidar::SDKPointInfo;

namespace {

/// Points that a thread takes at once.
constexpr std::size_t pointChunk = 128;
constexpr std::size_t fastPathChunk = 256;

bool keepsAttributeWord(std::uint32_t word) {
  const float low = floatFromHalf(static_cast<std::uint16_t>(word));
  return low < 0.0F || low > 1.0F;
}

void recolorRun(const PointPassSettings &colors, std::span<const SDKPointInfo> points, std::span<Vertex> vertices) {
  std::array<std::uint32_t, pointRunLength> words;
  colorWords(colors, points, words);
  for (std::size_t i = 0; i < points.size(); ++i) {
    std::uint32_t &word = vertices[i].color;
    const bool keeps = colors.useRgbMode ? word == hiddenMark || word == highlightMark : keepsAttributeWord(word);
    word = keeps ? word : words[i];
  }
}

/// One run of the fast path. True when a vertex of it is not hidden.
bool fillRun(const RgbScale &scale, const PointHook &pointHook, std::span<const SDKPointInfo> points,
             std::span<Vertex> vertices) {
  VertexRun<pointRunLength> run(points.size());
  run.hideEmptySlots(points.data());
  if (pointHook) {
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (run.hidden[i] == 0) {
        SDKPointInfo copy = points[i];
        run.hidden[i] = static_cast<std::uint8_t>(pointHook(copy));
      }
    }
  }
  run.placeAt(points.data());
  rgbWordsFast(scale, points, run.words);
  run.write(vertices.data());
  return anyShown(vertices);
}

}  // namespace

bool runPointPass(tf::Executor &executor, const PointPass &pass, const PointPassTarget &target) {
  std::atomic<bool> shown{false};
  parallelRuns(executor, target.count, pointChunk, [&](std::size_t begin, std::size_t end) {
    if (pass(target, begin, end) && !shown.load(std::memory_order_relaxed)) {
      shown.store(true, std::memory_order_relaxed);
    }
  });
  return shown;
}

void recolor(tf::Executor &executor, const PointPassSettings &colors, std::span<const SDKPointInfo> points,
             std::span<Vertex> vertices) {
  const std::size_t count = std::min(points.size(), vertices.size());
  parallelRuns(executor, count, pointChunk, [&](std::size_t begin, std::size_t end) {
    for (; begin < end; begin += pointRunLength) {
      const std::size_t length = std::min(pointRunLength, end - begin);
      recolorRun(colors, points.subspan(begin, length), vertices.subspan(begin, length));
    }
  });
}

bool fillVertices(tf::Executor &executor, const RgbScale &scale, const PointHook &pointHook,
                  std::span<const SDKPointInfo> points, std::span<Vertex> vertices) {
  std::atomic<bool> shown{false};
  parallelRuns(executor, points.size(), fastPathChunk, [&](std::size_t begin, std::size_t end) {
    bool shownHere = false;
    for (; begin < end; begin += pointRunLength) {
      const auto run = points.subspan(begin, std::min(pointRunLength, end - begin));
      shownHere |= fillRun(scale, pointHook, run, vertices.subspan(begin, run.size()));
    }
    if (shownHere && !shown.load(std::memory_order_relaxed)) {
      shown.store(true, std::memory_order_relaxed);
    }
  });
  return shown;
}

void fillLaserTable(LaserTable &table, const ColorTable &colors, std::span<const SDKPointInfo> points,
                    int laserPoints) {
  const auto wanted = static_cast<std::size_t>(std::max(laserPoints, 0));
  const std::size_t rows = std::min({wanted, points.size(), table.size()});
  for (std::size_t i = 0; i < rows; ++i) {
    const SDKPointInfo &point = points[i];
    table[i] = point.channel == 0 ? LaserPoint{} : LaserPoint{point.x, point.y, point.z, colors.currentValue(point)};
  }
}

void fillOverlay(const RgbScale &scale, std::span<const SDKPointInfo> points, std::span<Vertex> vertices) {
  for (std::size_t i = 0; i < points.size(); ++i) {
    const SDKPointInfo &point = points[i];
    if (point.channel == 0) {
      vertices[i].color = hiddenMark;
    } else {
      vertices[i] = packVertex(point.x, point.y, point.z, rgbWord(scale, point));
    }
  }
}

}  // namespace tarvo::skarnvisor
