#pragma once

#include <string_view>
#include <vector>

#include "runtime/wire/side_bodies.h"

/// What a simulated lidar says about itself beside its points.
namespace tarvo::lidar::sim {

using StatusBlock = std::array<std::uint8_t, wire::statusBlockSize>;

/// Status block with the cells of the boards that `type` has in the build `variant`; values drift a little with
/// `seconds`.
[[nodiscard]] StatusBlock statusBlock(std::string_view type, std::uint8_t variant, double seconds);

/// A batch of fault records in the form that `type` sends; `recordSize` tells which.
struct FaultBatch {
  std::uint16_t recordSize = 0;
  std::uint16_t count = 0;
  std::vector<std::uint8_t> bytes;
};
[[nodiscard]] FaultBatch faultBatch(std::string_view type, std::uint64_t timeNs, std::uint32_t frame);

/// IMU samples of one frame: a lidar that stands on its vehicle, with the shake of an engine.
[[nodiscard]] std::vector<wire::ImuSample> imuSamples(std::uint64_t frameTimeNs, double frameSeconds,
                                                      std::uint64_t seed);

}  // namespace tarvo::lidar::sim
