#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "contracts/runtime/filter_param.h"
#include "contracts/runtime/fmcw_param.h"
#include "contracts/runtime/isp_param.h"
#include "contracts/runtime/qs_param.h"
#include "contracts/runtime/remake_param.h"

namespace tarvo::lidar {

// Parameters that the decoder takes up at its next decode. Plug-in code reads and writes the live record through
// DecodeParams (decode_params.h) alone. Offsets are fixed on x86-64 with libstdc++.
struct FrameDecodeParam {
  std::byte reserved0{};
  bool firetimeCorrection = false;
  bool dcfCorrection = false;
  bool distanceCorrection = false;
  std::byte reserved4{};
  bool faultPackets = false;
  std::array<std::byte, 3> reserved6{};
  bool dirtyMappingReflectance = false;
  std::byte reserved10{};
  std::uint8_t selectedEcho = 0;  // 0: any
  std::array<std::byte, 84> reserved12{};
  RemakeGrid remake;
  bool nbBloomingFilter = false;
  bool nbNoiseFilter = false;
  bool elevationFovFilter = false;
  std::byte reserved143{};
  std::int32_t rtlEgOrderK = 0;  // 0 to 15
  FmcwVelocityParam fmcwVelocity;
  FmcwMotionParam fmcwMotion;
  std::int32_t lidarPosition = 0;
  float vd2DistanceThreshold = 0.0F;  // metres
  DragPointFilterParam dragPointFilter;
  std::int32_t nbqRgbMode = 0;
  IspParam isp;
  std::array<std::byte, 4> reserved568{};
  std::int32_t currentMode = 0;
  bool intensityMapping = true;
  std::array<std::byte, 3> reserved577{};
  std::int32_t frameModel = 0;
  bool broadbandFilter = false;
  bool onlyRealChannels = false;
  bool nbqPointLayout = false;
  bool roadMarkerEnabled = false;
  RoadMarkerParam roadMarker;
  bool bankReflectivityEnabled = false;
  std::array<std::byte, 3> reserved649{};
  BankReflectivityParam bankReflectivity;
  bool energyDeductEnabled = false;
  bool energyDeductIsolatedFilter = true;
  std::array<std::byte, 2> reserved686{};
  EnergyDeductParam energyDeduct;
  RetroFilterParam retro;
  bool useCuda = false;
  std::array<std::byte, 11> reserved1349{};
  DirtDiagnosticParam dirtDiagnostic;
};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(sizeof(FrameDecodeParam) == 1376);
static_assert(offsetof(FrameDecodeParam, firetimeCorrection) == 1);
static_assert(offsetof(FrameDecodeParam, dcfCorrection) == 2);
static_assert(offsetof(FrameDecodeParam, distanceCorrection) == 3);
static_assert(offsetof(FrameDecodeParam, faultPackets) == 5);
static_assert(offsetof(FrameDecodeParam, dirtyMappingReflectance) == 9);
static_assert(offsetof(FrameDecodeParam, selectedEcho) == 11);
static_assert(offsetof(FrameDecodeParam, remake) == 96);
static_assert(offsetof(FrameDecodeParam, remake.azimuthMin) == 100);
static_assert(offsetof(FrameDecodeParam, remake.elevationResolution) == 124);
static_assert(offsetof(FrameDecodeParam, remake.elevationCells) == 128);
static_assert(offsetof(FrameDecodeParam, remake.mergedFrames) == 136);
static_assert(offsetof(FrameDecodeParam, nbBloomingFilter) == 140);
static_assert(offsetof(FrameDecodeParam, nbNoiseFilter) == 141);
static_assert(offsetof(FrameDecodeParam, elevationFovFilter) == 142);
static_assert(offsetof(FrameDecodeParam, rtlEgOrderK) == 144);
static_assert(offsetof(FrameDecodeParam, fmcwVelocity.velocityMode) == 149);
static_assert(offsetof(FrameDecodeParam, fmcwVelocity.fitting) == 156);
static_assert(offsetof(FrameDecodeParam, fmcwMotion) == 168);
static_assert(offsetof(FrameDecodeParam, fmcwMotion.imuPktCount) == 176);
static_assert(offsetof(FrameDecodeParam, fmcwMotion.offset) == 184);
static_assert(offsetof(FrameDecodeParam, fmcwMotion.coefficients) == 208);
static_assert(offsetof(FrameDecodeParam, lidarPosition) == 256);
static_assert(offsetof(FrameDecodeParam, vd2DistanceThreshold) == 260);
static_assert(offsetof(FrameDecodeParam, dragPointFilter) == 264);
static_assert(offsetof(FrameDecodeParam, nbqRgbMode) == 284);
static_assert(offsetof(FrameDecodeParam, isp) == 288);
static_assert(offsetof(FrameDecodeParam, currentMode) == 572);
static_assert(offsetof(FrameDecodeParam, intensityMapping) == 576);
static_assert(offsetof(FrameDecodeParam, frameModel) == 580);
static_assert(offsetof(FrameDecodeParam, broadbandFilter) == 584);
static_assert(offsetof(FrameDecodeParam, onlyRealChannels) == 585);
static_assert(offsetof(FrameDecodeParam, nbqPointLayout) == 586);
static_assert(offsetof(FrameDecodeParam, roadMarkerEnabled) == 587);
static_assert(offsetof(FrameDecodeParam, roadMarker) == 588);
static_assert(offsetof(FrameDecodeParam, bankReflectivityEnabled) == 648);
static_assert(offsetof(FrameDecodeParam, bankReflectivity) == 652);
static_assert(offsetof(FrameDecodeParam, energyDeductEnabled) == 684);
static_assert(offsetof(FrameDecodeParam, energyDeductIsolatedFilter) == 685);
static_assert(offsetof(FrameDecodeParam, energyDeduct) == 688);
static_assert(offsetof(FrameDecodeParam, retro) == 1312);
static_assert(offsetof(FrameDecodeParam, useCuda) == 1348);
static_assert(offsetof(FrameDecodeParam, dirtDiagnostic) == 1360);
#pragma GCC diagnostic pop

}  // namespace tarvo::lidar

namespace tarvo {
using lidar::FrameDecodeParam;
}
