#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "contracts/runtime/imu_sample.h"
#include "contracts/runtime/point_info.h"

namespace tarvo::lidar {

struct ChannelTable;

/// What the decode of points depends on, taken once a decode.
struct PointSettings {
  const ChannelTable *channels = nullptr;
  std::uint8_t echo = 0;                                     ///< only this return is kept; 0: all
  bool mapIntensity = false;                                 ///< through `intensityMap`
  const std::vector<std::uint16_t> *intensityMap = nullptr;  ///< 65536 values; null: none loaded
};

struct VehicleMotion {
  float speedMetresPerS = 0;
  float azimuthRad = 0;
  float elevationRad = 0;
};

struct CameraPicture {
  std::int32_t columns = 0;
  std::int32_t rows = 0;
  std::vector<SDKPointInfo> pixels;  ///< rows x columns, from the top left; channel 0: no position
};

struct SensorGrid {
  std::uint16_t rows = 0;
  std::uint16_t columns = 0;
  std::vector<std::int32_t> dirt;
};

/// What the packets of one or several merged frames hold beside points. Where frames tell the same thing the later
/// wins; lists grow.
struct DecodedParts {
  static constexpr std::size_t statusBytes = 2310;

  std::int64_t frameStartNs = 0;
  std::uint8_t returnMode = 0;
  double motorSpeedRpm = 0;
  std::int32_t laserPointCount = 0;
  std::optional<std::array<std::uint8_t, statusBytes>> status;  ///< only when every byte of the block came
  std::size_t faultStride = 0;                                  ///< bytes of a fault record
  std::vector<unsigned char> faults;
  std::vector<ImuSample> imu;
  std::optional<VehicleMotion> motion;
  std::optional<CameraPicture> picture;
  std::optional<SensorGrid> grid;
  unsigned damagedPackets = 0;
};

}  // namespace tarvo::lidar
