#include "default/point_files/channel_layout.h"

#include <algorithm>
#include <numeric>

namespace tarvo::skarnvisor {

namespace {

constexpr float nearestDistance = 0.01F;  // metres: closer points have no direction to speak of
constexpr int lastPlainRing = 64;
constexpr int lastRingWithoutPoints = 255;
constexpr int orderedChannels = 100;

struct ElevationSums {
  std::array<double, ChannelLayout::channels + 1> sum{};  // by ring
  std::array<std::size_t, ChannelLayout::channels + 1> count{};

  /// 0 for a ring without points.
  [[nodiscard]] double mean(int ring) const {
    const auto index = static_cast<std::size_t>(ring);
    return count[index] == 0 ? 0.0 : sum[index] / static_cast<double>(count[index]);
  }
};

ElevationSums sumElevations(std::span<const lidar::SDKPointInfo> points) {
  ElevationSums sums;
  for (const lidar::SDKPointInfo &point : points) {
    if (point.channel < 1 || point.channel > ChannelLayout::channels || !(point.distance > nearestDistance)) continue;
    sums.sum[point.channel] += point.elevationCalib;
    ++sums.count[point.channel];
  }
  return sums;
}

std::vector<int> ringsOf(const ElevationSums &sums) {
  std::vector<int> rings;
  for (int ring = 1; ring <= ChannelLayout::channels; ++ring)
    if (sums.count[static_cast<std::size_t>(ring)] != 0) rings.push_back(ring);
  if (rings.empty())
    for (int ring = 1; ring <= lastRingWithoutPoints; ring += 2) rings.push_back(ring);
  return rings;
}

}  // namespace

ChannelLayout::ChannelLayout() : pixelFlags(channels, 1) { std::iota(channelOrder.begin(), channelOrder.end(), 0); }

ChannelLayout ChannelLayout::plain() {
  ChannelLayout layout;
  layout.pixelFollowers.resize(channels);
  return layout;
}

ChannelLayout ChannelLayout::fromPoints(std::span<const lidar::SDKPointInfo> points, bool byElevation) {
  ChannelLayout layout = plain();
  const ElevationSums sums = sumElevations(points);
  const std::vector<int> rings = ringsOf(sums);
  for (int ring : rings) {
    layout.pixelFlags[static_cast<std::size_t>(ring - 1)] = 1;
    layout.pixelOrder.push_back(ring - 1);
  }
  if (std::all_of(rings.begin(), rings.end(), [](int ring) { return ring % 2 != 0; })) {
    for (std::size_t i = 0; i + 1 < layout.pixelOrder.size(); ++i) {
      auto &followers = layout.pixelFollowers[static_cast<std::size_t>(layout.pixelOrder[i])];
      for (int between = layout.pixelOrder[i] + 1; between < layout.pixelOrder[i + 1]; ++between) {
        layout.pixelFlags[static_cast<std::size_t>(between)] = 0;
        followers.push_back(between);
      }
    }
  }
  const bool counted = std::any_of(sums.count.begin(), sums.count.end(), [](std::size_t count) { return count != 0; });
  if (byElevation && counted)
    std::stable_sort(layout.pixelOrder.begin(), layout.pixelOrder.end(),
                     [&sums](int a, int b) { return sums.mean(a + 1) > sums.mean(b + 1); });
  return layout;
}

bool ChannelLayout::isSubpixel(int ring, bool pixelLayout) const {
  if (!pixelLayout) return ring > lastPlainRing;
  if (ring == 0 || ring > static_cast<int>(pixelFlags.size())) return false;
  return pixelOrder.empty() ? ring % 2 == 0 : pixelFlags[static_cast<std::size_t>(ring - 1)] != 1;
}

void ChannelLayout::setOrdered() { std::iota(channelOrder.begin(), channelOrder.begin() + orderedChannels, 0); }

void ChannelLayout::setInterleaved() {
  struct Stretch {
    int first, last, step;
  };
  constexpr std::array<Stretch, 4> stretches = {{{0, 11, 1}, {13, 83, 2}, {84, 99, 1}, {12, 82, 2}}};
  std::size_t place = 0;
  for (const Stretch &stretch : stretches)
    for (int channel = stretch.first; channel <= stretch.last; channel += stretch.step) channelOrder[place++] = channel;
}

}  // namespace tarvo::skarnvisor
