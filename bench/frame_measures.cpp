// The parser's point step on a frame of a million points, as the parser runs it, and the fast path.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <thread>
#include <vector>

#include <taskflow/taskflow.hpp>

#include "bench/measure.h"
#include "default/frame/frame_loops.h"
#include "default/frame/parallel_runs.h"

namespace tarvo::skarnvisor::bench {

using lidar::SDKPointInfo;

namespace {

constexpr std::size_t pointCount = 1'000'000;
constexpr std::size_t columns = 2000;

/// A sweep of rays: every tenth slot is empty, as in a frame of a real lidar.
std::vector<SDKPointInfo> sweep() {
  std::vector<SDKPointInfo> points(pointCount);
  for (std::size_t i = 0; i < points.size(); ++i) {
    SDKPointInfo &point = points[i];
    const float azimuth = static_cast<float>(i % columns) * 0.18F;
    const float range = 5.0F + static_cast<float>(i * 7919 % 20'000) * 0.01F;
    point.timeNs = static_cast<std::uint32_t>(i * 100);
    point.azimuth = azimuth;
    point.azimuthCalib = azimuth;
    point.distance = range;
    point.x = range * std::sin(azimuth * 0.0174533F);
    point.y = range * std::cos(azimuth * 0.0174533F);
    point.z = static_cast<float>(i / columns) * 0.02F - 5.0F;
    point.channel = i % 10 == 0 ? 0 : static_cast<std::uint16_t>(i / columns % 128 + 1);
    point.intensity = static_cast<std::uint16_t>(i * 31 % 256);
    point.red = static_cast<std::uint16_t>(i * 13 % 300);
    point.green = static_cast<std::uint16_t>(i * 17 % 300);
    point.blue = static_cast<std::uint16_t>(i * 19 % 300);
  }
  return points;
}

/// The arrays of one frame and the threads that work on it.
struct Frame {
  tf::Executor executor{std::max(1U, std::thread::hardware_concurrency())};
  std::vector<SDKPointInfo> points = sweep();
  std::vector<Vertex> vertices{points.size(), hiddenVertex};
  std::vector<SDKPointInfo> store{points.size()};

  PointPassTarget target() { return {points.data(), points.size(), vertices.data(), nullptr, store.data(), 0}; }
};

/// What no parse can do without: a copy of each record and a packed vertex from it. In runs as short as
/// the pass's own, which is the fastest way known here to do just that.
void copyAndPack(Frame &frame) {
  parallelRuns(frame.executor, frame.points.size(), 128, [&frame](std::size_t begin, std::size_t end) {
    for (; begin < end; begin += pointRunLength) {
      const std::size_t length = std::min(pointRunLength, end - begin);
      for (std::size_t i = begin; i < begin + length; ++i) {
        const SDKPointInfo &point = frame.points[i];
        frame.vertices[i] = packVertex(point.x, point.y, point.z, point.intensity);
      }
      std::memcpy(frame.store.data() + begin, frame.points.data() + begin, length * sizeof(SDKPointInfo));
    }
  });
}

/// What no filling of vertices can do without: reading each place and writing its vertex.
void packOnly(Frame &frame) {
  parallelRuns(frame.executor, frame.points.size(), 256, [&frame](std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) {
      const SDKPointInfo &point = frame.points[i];
      frame.vertices[i] = packVertex(point.x, point.y, point.z, point.channel);
    }
  });
}

Measure parseMeasure(const char *name, PointPassSettings settings) {
  return {name, "1,000,000 points of 88 bytes read and stored, 12-byte vertices: 188 MB", [settings] {
            const auto frame = std::make_shared<Frame>();
            return Bodies{
                [frame, settings] { runPointPass(frame->executor, PointPass(settings), frame->target()); },
                [frame] { copyAndPack(*frame); },
            };
          }};
}

}  // namespace

void addFrameMeasures(std::vector<Measure> &measures) {
  PointPassSettings rgb;
  rgb.useRgbMode = true;
  PointPassSettings remake;
  remake.remakeEnabled = true;
  remake.remake = RemakeFold(static_cast<int>(columns), 1, static_cast<int>(pointCount));
  PointPassSettings filtered;
  filtered.filter.enabled = true;

  measures.push_back(parseMeasure("parse_frame_default", {}));
  measures.push_back(parseMeasure("parse_frame_rgb", rgb));
  measures.push_back(parseMeasure("parse_frame_remake", remake));
  measures.push_back(parseMeasure("parse_frame_filtered", filtered));
  measures.push_back(
      {"fill_vertices_fast_path", "1,000,000 points of 88 bytes read, 12-byte vertices written: 100 MB", [] {
         const auto frame = std::make_shared<Frame>();
         return Bodies{
             [frame] { fillVertices(frame->executor, {}, {}, frame->points, frame->vertices); },
             [frame] { packOnly(*frame); },
         };
       }});
}

}  // namespace tarvo::skarnvisor::bench
