// The decoder's filters on one frame, on one thread.

#include <cmath>
#include <memory>
#include <random>
#include <vector>

#include "bench/measure.h"
#include "runtime/filters/filter_chain.h"

namespace tarvo::skarnvisor::bench {

namespace {

using lidar::SDKPointInfo;

constexpr int channels = 128;
constexpr int columns = 1800;

/// Walls at 10 to 30 m with a hand's breadth of noise, one shot in ten without a return.
struct Frame {
  std::vector<SDKPointInfo> points = std::vector<SDKPointInfo>(std::size_t{channels} * columns);
  std::vector<float> ranges = std::vector<float>(points.size());
  lidar::FilterChain chain;

  explicit Frame(const lidar::FilterSettings &settings) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> noise(-0.05F, 0.05F);
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (random() % 10 == 0) continue;
      const float column = static_cast<float>(i / channels);
      points[i].channel = static_cast<std::uint16_t>(i % channels + 1);
      points[i].distance = 20.0F + 10.0F * std::sin(column / 100.0F) + noise(random);
      points[i].y = points[i].distance;
    }
    chain.select(settings, {});
  }
  void filter() {
    chain.apply({.points = points.data(), .columns = columns, .echoes = 1, .channels = channels},
                [](int count, const std::function<void(int, int)> &work) { work(0, count); });
  }
  /// What no filter can do without: the range of every return.
  void readRanges() {
    for (std::size_t i = 0; i < points.size(); ++i) ranges[i] = points[i].channel != 0 ? points[i].distance : 0.0F;
  }
};

void add(std::vector<Measure> &measures, const char *name, const lidar::FilterSettings &settings) {
  measures.push_back({name, "230,400 points on one thread; floor: the range of each point", [settings] {
                        auto frame = std::make_shared<Frame>(settings);
                        return Bodies{[frame] { frame->filter(); }, [frame] { frame->readRanges(); }};
                      }});
}

}  // namespace

void addFilterMeasures(std::vector<Measure> &measures) {
  add(measures, "filter_popout", {.popout = true});
  add(measures, "filter_offline", {.offline = true});
  add(measures, "filter_noise", {.noise = true});
  add(measures, "filter_smoothing", {.smoothing = true});
}

}  // namespace tarvo::skarnvisor::bench
