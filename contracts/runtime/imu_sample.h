#pragma once

#include <array>
#include <cstddef>

namespace tarvo::lidar {

// One sample of the inertial unit: acceleration in g, angular velocity in degrees a second.
struct ImuSample {
  double timestamp = 0.0;  // seconds
  std::array<double, 3> acceleration{0.0, 0.0, 1.0};
  std::array<double, 3> angularVelocity{-1.0, -1.0, -1.0};
  bool valid = false;
  std::array<std::byte, 7> reserved57{};
};

static_assert(sizeof(ImuSample) == 64);
static_assert(offsetof(ImuSample, acceleration) == 8);
static_assert(offsetof(ImuSample, angularVelocity) == 32);
static_assert(offsetof(ImuSample, valid) == 56);

}  // namespace tarvo::lidar

namespace tarvo {
using lidar::ImuSample;
}
