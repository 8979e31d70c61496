#pragma once

#include <cstddef>
#include <cstdint>

namespace tarvo::lidar {

// Velocity switches and fitting of the FMCW family, at offset 148 of FrameDecodeParam.
struct FmcwVelocityParam {
  std::byte reserved0{};
  bool velocityMode = false;
  bool minusActualVelocity = false;
  bool velocityFittingEnabled = false;
  bool noiseFilterEnabled = false;
  std::byte reserved5[3]{};
  float fitting[3]{};
};
static_assert(sizeof(FmcwVelocityParam) == 20);

// Motion compensation of the FMCW family, at offset 168 of FrameDecodeParam.
struct FmcwMotionParam {
  bool enabled = false;
  std::byte reserved1[7]{};
  std::int32_t imuPktCount = 1000;
  std::byte reserved12[4]{};
  double offset[3]{};                                        // x, y, z
  double coefficients[6]{1.0, 1.0, 1.0, 1.1, 1.1, 1.95195};  // t0 to t5
};
static_assert(sizeof(FmcwMotionParam) == 88);

}  // namespace tarvo::lidar
