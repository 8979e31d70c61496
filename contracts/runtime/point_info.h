#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace tarvo::lidar {

/// One decoded lidar point, 88 bytes, in the layout that the runtime and the plug-in exchange.
///
/// Bytes 64 to 82 are read differently by the lidar families. The members here give the usual
/// reading; every other reading is a descriptor of contracts/runtime/point_fields.h.
/// Angles are in degrees, lengths in metres. Little-endian, x86-64.
struct SDKPointInfo {
  double timestamp;          ///< seconds
  std::uint32_t timeNs;      ///< nanoseconds inside the frame
  float azimuth;             ///< degrees, as measured
  float azimuthCalib;        ///< degrees, calibrated
  float elevation;           ///< degrees, as measured
  float elevationCalib;      ///< degrees, calibrated
  float distance;            ///< metres; 0 or less means no return
  float x;                   ///< metres
  float y;                   ///< metres
  float z;                   ///< metres
  std::uint16_t channel;     ///< from 1; 0 marks an empty slot
  std::uint16_t intensity;   ///< raw counts
  std::uint16_t confidence;  ///< the low 8 bits are confidence bits
  std::uint16_t red;         ///< raw camera value
  std::uint16_t green;       ///< raw camera value
  std::uint16_t blue;        ///< raw camera value
  float relVelocity;         ///< metres per second, FMCW lidars only
  std::uint8_t selected;     ///< 1 when the selection holds the point
  std::uint8_t paddingA[3];
  std::uint8_t attributes[5];  ///< family-specific bytes 64 to 68
  std::uint8_t paddingB;
  std::uint16_t area;     ///< remapped area
  std::uint16_t rawArea;  ///< input of the area remap
  std::uint8_t peak;      ///< raw counts
  std::uint8_t paddingC;
  std::uint8_t areaAlternate;     ///< area in the alternate layout
  std::uint8_t rawAreaAlternate;  ///< raw area in the alternate layout
  std::uint8_t peakAlternate;     ///< peak in the alternate layout
  std::uint8_t paddingD;
  std::uint16_t stepId;  ///< step of the emitter pattern
  std::uint8_t spadId;   ///< bit 0 marks a long-focus point
  std::uint8_t paddingE[5];
};

static_assert(sizeof(SDKPointInfo) == 88);
static_assert(alignof(SDKPointInfo) == 8);
static_assert(std::is_trivially_copyable_v<SDKPointInfo> && std::is_standard_layout_v<SDKPointInfo>);
static_assert(offsetof(SDKPointInfo, timestamp) == 0);
static_assert(offsetof(SDKPointInfo, timeNs) == 8);
static_assert(offsetof(SDKPointInfo, azimuth) == 12 && offsetof(SDKPointInfo, azimuthCalib) == 16);
static_assert(offsetof(SDKPointInfo, elevation) == 20 && offsetof(SDKPointInfo, elevationCalib) == 24);
static_assert(offsetof(SDKPointInfo, distance) == 28);
static_assert(offsetof(SDKPointInfo, x) == 32 && offsetof(SDKPointInfo, y) == 36 && offsetof(SDKPointInfo, z) == 40);
static_assert(offsetof(SDKPointInfo, channel) == 44);
static_assert(offsetof(SDKPointInfo, intensity) == 46);
static_assert(offsetof(SDKPointInfo, confidence) == 48);
static_assert(offsetof(SDKPointInfo, red) == 50 && offsetof(SDKPointInfo, green) == 52 &&
              offsetof(SDKPointInfo, blue) == 54);
static_assert(offsetof(SDKPointInfo, relVelocity) == 56);
static_assert(offsetof(SDKPointInfo, selected) == 60);
static_assert(offsetof(SDKPointInfo, attributes) == 64);
static_assert(offsetof(SDKPointInfo, area) == 70 && offsetof(SDKPointInfo, rawArea) == 72);
static_assert(offsetof(SDKPointInfo, peak) == 74);
static_assert(offsetof(SDKPointInfo, areaAlternate) == 76 && offsetof(SDKPointInfo, rawAreaAlternate) == 77);
static_assert(offsetof(SDKPointInfo, peakAlternate) == 78);
static_assert(offsetof(SDKPointInfo, stepId) == 80 && offsetof(SDKPointInfo, spadId) == 82);

}  // namespace tarvo::lidar

namespace tarvo {
using lidar::SDKPointInfo;
}
