#include "bench/sweep.h"

#include <cmath>
#include <cstring>

#include "default/frame/parallel_runs.h"

namespace tarvo::skarnvisor::bench {

using lidar::SDKPointInfo;

std::vector<SDKPointInfo> sweep(std::size_t count) {
  std::vector<SDKPointInfo> points(count);
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

void packOnly(tf::Executor &executor, const std::vector<SDKPointInfo> &points, std::vector<Vertex> &vertices) {
  parallelRuns(executor, points.size(), 256, [&](std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) {
      const SDKPointInfo &point = points[i];
      vertices[i] = packVertex(point.x, point.y, point.z, point.channel);
    }
  });
}

}  // namespace tarvo::skarnvisor::bench
