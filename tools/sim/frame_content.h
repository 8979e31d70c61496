#pragma once

#include "tools/sim/ray_caster.h"
#include "tools/sim/sensor.h"

namespace tarvo::lidar::sim {

/// One return as the lidar measured it.
struct Sample {
  float distance = 0;  ///< metres, 0: no return
  float velocity = 0;  ///< m/s
  std::uint8_t intensity = 0;
  std::uint8_t confidence = 0;
  bool foliage = false;
  std::array<float, 3> colour{};  ///< red, green, blue, 0 to 1
};

/// What one frame holds before it is packed.
struct FrameContent {
  unsigned channels = 0, columns = 0, echoes = 0;
  std::vector<Sample> samples;  ///< by column, then return, then channel
  std::vector<wire::OverlayPixel> overlay;

  [[nodiscard]] std::span<const Sample> ofColumn(unsigned column, unsigned echo) const noexcept {
    return std::span(samples).subspan((std::size_t{column} * echoes + echo) * channels, channels);
  }
};

inline constexpr unsigned overlayColumns = 160, overlayRows = 90;

/// Looks at the scene from the lidar at `frame`; spreads the work over `threads` threads, with the same result for any
/// number.
[[nodiscard]] FrameContent lookAround(const Scene &scene, const Sensor &sensor, const Options &options,
                                      std::uint32_t frame, unsigned threads);

}  // namespace tarvo::lidar::sim
