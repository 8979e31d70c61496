#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "contracts/runtime/point_info.h"

namespace tarvo::skarnvisor {

/// How the channels of a frame stand to each other: which are pixels of their own and in which order they lie. A plain
/// value. Index = ring - 1 throughout.
struct ChannelLayout {
  static constexpr int channels = 512;

  ChannelLayout();

  std::array<int, channels> channelOrder{};
  std::vector<std::uint8_t> pixelFlags;          ///< 1: a pixel of its own, 0: lies between two pixels
  std::vector<int> pixelOrder;                   ///< the pixels
  std::vector<std::vector<int>> pixelFollowers;  ///< per pixel, the channels between it and the next one

  /// Whether a point of this ring lies between pixels. Without `pixelLayout` the rings above 64 do.
  [[nodiscard]] bool isSubpixel(int ring, bool pixelLayout) const;

  /// Every channel in its own place and a pixel.
  static ChannelLayout plain();
  /// Derived from the rings that the frame's points have; `byElevation` orders the pixels by their mean elevation,
  /// highest first.
  static ChannelLayout fromPoints(std::span<const lidar::SDKPointInfo> points, bool byElevation);

  /// The first hundred places: in order, or as a device with interleaved halves has them.
  void setOrdered();
  void setInterleaved();
};

}  // namespace tarvo::skarnvisor
