#pragma once

#include <cstddef>
#include <cstdint>

namespace tarvo::lidar {

// Angle grid of the 2D remake; all angles in degrees. At offset 96 of FrameDecodeParam.
struct RemakeGrid {
  bool enabled = false;
  std::byte reserved1[3]{};
  float azimuthMin = -60.0F;
  float azimuthMax = 60.0F;
  float azimuthResolution = 0.1F;
  std::int32_t azimuthCells = 1200;
  float elevationMin = -15.0F;
  float elevationMax = 15.0F;
  float elevationResolution = 0.1F;
  std::int32_t elevationCells = 300;
  std::int32_t reserved36 = 0;
  std::int32_t mergedFrames = 1;  // frames merged into one decode
};

static_assert(sizeof(RemakeGrid) == 44);

}  // namespace tarvo::lidar
