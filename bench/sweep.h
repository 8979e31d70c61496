#pragma once

#include <algorithm>
#include <cstddef>
#include <thread>
#include <vector>

#include <taskflow/taskflow.hpp>

#include "bench/measure.h"
#include "default/frame/point_pass.h"

namespace tarvo::skarnvisor::bench {

inline constexpr std::size_t pointCount = 1'000'000;
inline constexpr std::size_t columns = 2000;

/// A sweep of rays: every tenth slot is empty, as in a frame of a real lidar.
std::vector<lidar::SDKPointInfo> sweep(std::size_t count = pointCount);

/// The arrays of one frame and the threads that work on it.
struct Frame {
  tf::Executor executor{std::max(1U, std::thread::hardware_concurrency())};
  std::vector<lidar::SDKPointInfo> points = sweep();
  std::vector<Vertex> vertices{points.size(), hiddenVertex};
  std::vector<lidar::SDKPointInfo> store{points.size()};

  PointPassTarget target() { return {points.data(), points.size(), vertices.data(), nullptr, store.data(), 0}; }
};

/// What no parse can do without: a copy of each record and a packed vertex from it. In runs as short as
/// the pass's own, which is the fastest way known here to do just that.
void copyAndPack(Frame &frame);

/// What no filling of vertices can do without: reading each place and writing its vertex.
void packOnly(tf::Executor &executor, const std::vector<lidar::SDKPointInfo> &points, std::vector<Vertex> &vertices);

/// The point pass over a whole frame with these settings, beside `copyAndPack`.
Measure parseMeasure(const char *name, const PointPassSettings &settings);

}  // namespace tarvo::skarnvisor::bench
