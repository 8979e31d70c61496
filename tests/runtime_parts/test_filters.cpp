// What each filter of the decoder takes out of a frame.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "runtime/filters/filter_chain.h"

namespace tarvo::lidar {
namespace {

/// A wall at 10 m as 20 columns of 6 channels see it, 1 degree apart, with things put in front of it.
class Frame {
 public:
  explicit Frame(int echoes = 1) : echoes_(echoes), points_(std::size_t(columns) * unsigned(echoes) * channels) {
    for (int column = 0; column < columns; ++column)
      for (int channel = 0; channel < channels; ++channel) put(column, channel, 10.0F);
  }
  SDKPointInfo &at(int column, int channel, int echo = 0) {
    return points_[(std::size_t(column) * unsigned(echoes_) + unsigned(echo)) * channels + unsigned(channel)];
  }
  void put(int column, int channel, float range, int echo = 0) {
    SDKPointInfo &point = at(column, channel, echo);
    const float azimuth = float(column) * radians;
    const float elevation = float(channel - 2) * radians;
    point.channel = std::uint16_t(channel + 1);
    point.distance = range;
    point.x = range * std::cos(elevation) * std::sin(azimuth);
    point.y = range * std::cos(elevation) * std::cos(azimuth);
    point.z = range * std::sin(elevation);
    point.elevationCalib = float(channel - 2);
    point.confidence = 7;
  }
  void filter(const FilterSettings &settings, const FrameDecodeParam &params = {}) {
    FilterChain chain;
    chain.select(settings, params);
    chain.apply({.points = points_.data(),
                 .columns = columns,
                 .echoes = echoes_,
                 .channels = channels,
                 .elevationMinDeg = -2.0F,
                 .elevationMaxDeg = 3.0F},
                [](int count, const std::function<void(int, int)> &work) {
                  for (int first = 0; first < count; first += 3) work(first, std::min(first + 3, count));
                });
  }
  /// Slots without a return, as "column.channel" with the return behind it from the second on.
  std::set<std::string> empty() {
    std::set<std::string> slots;
    for (int column = 0; column < columns; ++column)
      for (int echo = 0; echo < echoes_; ++echo)
        for (int channel = 0; channel < channels; ++channel)
          if (const SDKPointInfo &point = at(column, channel, echo); point.channel == 0) {
            EXPECT_EQ(point.distance, 0.0F);
            EXPECT_EQ(point.x, 0.0F);
            slots.insert(std::to_string(column) + '.' + std::to_string(channel) + (echo > 0 ? "'" : ""));
          }
    return slots;
  }

  static constexpr int columns = 20;
  static constexpr int channels = 6;

 private:
  static constexpr float radians = 0.0174533F;
  int echoes_;
  std::vector<SDKPointInfo> points_;
};

using Slots = std::set<std::string>;

/// A lone bird at (4, 2), a pole one column wide at column 9, a sign three columns wide at columns 14 to 16.
Frame scene() {
  Frame frame;
  frame.put(4, 2, 6.0F);
  for (int channel = 0; channel < Frame::channels; ++channel) frame.put(9, channel, 7.0F);
  for (int column = 14; column <= 16; ++column) frame.put(column, 3, 8.0F);
  return frame;
}

TEST(Filters, OffMeansUntouched) {
  Frame frame = scene();
  FilterChain chain;
  chain.select({}, {});
  EXPECT_TRUE(chain.isEmpty());
  frame.filter({});
  EXPECT_TRUE(frame.empty().empty());
}

TEST(Filters, PopoutTakesWhatHasNoNeighbourAtItsRange) {
  Frame frame = scene();
  frame.filter({.popout = true});
  EXPECT_EQ(frame.empty(), Slots({"4.2", "9.0", "9.1", "9.2", "9.3", "9.4", "9.5"}));

  Frame near = scene();
  near.filter({.popout = true, .popoutSettings = {.greatestRangeMetres = 6.5F}});
  EXPECT_EQ(near.empty(), Slots({"4.2"})) << "what is further away is left alone";

  Frame marked = scene();
  marked.filter({.popout = true, .popoutHighlight = true});
  EXPECT_TRUE(marked.empty().empty());
  EXPECT_EQ(marked.at(4, 2).confidence, 255);
  EXPECT_EQ(marked.at(5, 2).confidence, 7);

  Frame echoes(2);
  echoes.put(7, 1, 10.1F, 1);
  echoes.put(12, 1, 14.0F, 1);
  echoes.filter({.popout = true});
  EXPECT_EQ(echoes.at(7, 1, 1).channel, 2) << "neighbours of the other return count";
  EXPECT_EQ(echoes.at(12, 1, 1).channel, 0);
}

TEST(Filters, OfflineTakesPointsOffTheScanLineAndItsSecondKindKeepsPoles) {
  Frame first = scene();
  first.filter({.offline = true});
  EXPECT_EQ(first.empty(), Slots({"4.2", "9.0", "9.1", "9.2", "9.3", "9.4", "9.5"}));
  Frame second = scene();
  second.filter({.vd8Offline = true});
  EXPECT_EQ(second.empty(), Slots({"4.2"}));
}

TEST(Filters, NoiseTakesLonelyPointsByItsMode) {
  Frame along = scene();
  along.filter({.noise = true});
  EXPECT_EQ(along.empty(), Slots({"4.2", "9.0", "9.1", "9.2", "9.3", "9.4", "9.5"}));
  Frame across = scene();
  across.filter({.noise = true, .noiseSettings = {.mode = 1, .leastNeighbours = 1}});
  EXPECT_EQ(across.empty(), Slots({"4.2"})) << "the points of a pole have company above and below";
  Frame strict = scene();
  strict.filter({.noise = true, .noiseSettings = {.radiusMetres = 0.5F, .leastNeighbours = 3}});
  EXPECT_TRUE(strict.empty().count("14.3") == 1) << "a sign of three has two neighbours at most";
}

TEST(Filters, DistanceThresholdAndFieldOfViewTakeTheirSideOnly) {
  Frame near = scene();
  FrameDecodeParam params;
  params.vd2DistanceThreshold = 6.5F;
  near.filter({}, params);
  EXPECT_EQ(near.empty(), Slots({"4.2"}));

  Frame view = scene();
  params = {};
  params.elevationFovFilter = true;
  view.at(0, 0).elevationCalib = -2.7F;
  view.at(1, 0).elevationCalib = -2.4F;
  view.at(2, 5).elevationCalib = 3.6F;
  view.filter({}, params);
  EXPECT_EQ(view.empty(), Slots({"0.0", "2.5"})) << "within half a channel of the edge a point stays";
}

TEST(Filters, SmoothingEvensASurfaceAndKeepsEdges) {
  std::mt19937 random(5);
  std::uniform_real_distribution<float> noise(-0.05F, 0.05F);
  Frame frame = scene();
  for (int column = 0; column < Frame::columns; ++column)
    frame.put(column, 5, (column < 10 ? 10.0F : 8.0F) + noise(random));
  const auto roughness = [&frame] {
    float sum = 0;
    for (int column = 0; column < Frame::columns; ++column)
      sum += std::abs(frame.at(column, 5).distance - (column < 10 ? 10.0F : 8.0F));
    return sum;
  };
  const float before = roughness();
  FilterSettings settings{.smoothing = true};
  settings.smoothingSettings.passes = 2;
  frame.filter(settings);
  EXPECT_LT(roughness(), before * 0.7F);
  EXPECT_FLOAT_EQ(frame.at(4, 2).distance, 6.0F) << "a bird is not drawn to the wall";
  for (int column = 0; column < Frame::columns; ++column) {
    const SDKPointInfo &point = frame.at(column, 5);
    EXPECT_NEAR(std::hypot(point.x, point.y, point.z), point.distance, 1e-4F);
  }
  EXPECT_TRUE(frame.empty().empty());
}

TEST(Filters, OddSettingsAndSmallFramesDoNoHarm) {
  FilterSettings all{.popout = true, .offline = true, .vd8Offline = true, .smoothing = true, .noise = true};
  const float odd = std::nanf("");
  all.popoutSettings = {-5, odd, odd, odd};
  all.noiseSettings = {-3, odd, odd, 1'000'000};
  SmoothingConfig config;
  config.floats0.fill(odd);
  config.int7 = 1'000'000'000;
  config.ints11 = {-1, -1};
  all.smoothingSettings = smoothingSettings(config, odd);
  Frame frame = scene();
  frame.filter(all);
  for (int column = 0; column < Frame::columns; ++column) EXPECT_TRUE(std::isfinite(frame.at(column, 1).x));
  SDKPointInfo alone{};
  alone.channel = 1;
  alone.distance = 1.0F;
  FilterChain chain;
  chain.select(all, {});
  const auto share = [](int count, const std::function<void(int, int)> &work) { work(0, count); };
  chain.apply({.points = &alone, .columns = 1, .echoes = 1, .channels = 1}, share);
  chain.apply({}, share);
}

}  // namespace
}  // namespace tarvo::lidar
