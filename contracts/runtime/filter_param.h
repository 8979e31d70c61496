#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarvo::lidar {

// Road marker filter, at offset 588 of FrameDecodeParam. Distances in metres.
struct RoadMarkerParam {
  std::int32_t stepI = 12;
  std::int32_t stepJ = 5;
  std::int32_t iStepNear = 45;
  std::int32_t jStepNear = 5;
  float edgeThr = 1.6F;
  float edgeThrFilter = 1.6F;
  std::int32_t channelThr = 260;
  float distThr = 5.0F;
  float distNear = 20.0F;
  float distFar = 70.0F;
  std::uint8_t refThrNear = 54;
  std::uint8_t refThrMid = 45;
  std::uint8_t refThrFar = 30;
  std::uint8_t refFilterThr = 40;
  std::int32_t markerTagThr = 3;
  std::int32_t markerTagThrFar = 2;
  std::int32_t thrSimilarI = 35;
  std::int32_t thrSimilarJ = 1;
};
static_assert(sizeof(RoadMarkerParam) == 60);
static_assert(offsetof(RoadMarkerParam, edgeThr) == 604 - 588);
static_assert(offsetof(RoadMarkerParam, refThrNear) == 628 - 588);
static_assert(offsetof(RoadMarkerParam, thrSimilarI) == 640 - 588);

// Bank reflectivity filter, at offset 652 of FrameDecodeParam. Distances in metres.
struct BankReflectivityParam {
  std::int32_t numBanks = 16;
  std::int32_t channelsPerBank = 45;
  std::int32_t minHighCount = 1;
  std::uint8_t thrLow = 1;
  std::byte reserved13[3]{};
  float distNear = 20.0F;
  float distFar = 75.0F;
  std::uint8_t thrHighNear = 25;
  std::uint8_t thrHighMid = 18;
  std::uint8_t thrHighFar = 12;
  bool groupByStepId = true;
  std::int32_t neighborBankSpan = 0;
};
static_assert(sizeof(BankReflectivityParam) == 32);
static_assert(offsetof(BankReflectivityParam, distNear) == 668 - 652);
static_assert(offsetof(BankReflectivityParam, thrHighNear) == 676 - 652);

// Energy deduct filter, at offset 688 of FrameDecodeParam. Distances in metres, angles in degrees.
struct EnergyDeductParam {
  std::int32_t kernelRows = 0;
  std::int32_t kernelColumns = 0;
  std::vector<float> kernel;  // row-major, kernelRows x kernelColumns
  float distThreshold = 100.0F;
  float energyMinThreshold = 0.0F;
  float energyMaxDistance = 50.0F;
  float horizontalFovMin = 60.0F;
  float horizontalFovMax = 120.0F;
  float isolatedDistThreshold = 120.0F;
  bool bankAlign = true;
  std::byte reserved57[3]{};
  std::int32_t bankAlignShift = 7;
  float anglePerType = 45.0F;
  bool processSubChannels = false;
  std::byte reserved69[3]{};
  std::int32_t columnsPerType = 720;
  std::byte reserved76[4]{};
  std::vector<float> distCoefficients;
  std::uint8_t byteLookup[256]{};  // raw reflectivity to mapped reflectivity
  bool byteLookupLoaded = false;
  std::byte reserved361[3]{};
  float floatLookup[64]{};  // raw index to reflectivity
  bool floatLookupLoaded = false;
  std::byte reserved621[3]{};
};
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(sizeof(EnergyDeductParam) == 624);
static_assert(offsetof(EnergyDeductParam, kernel) == 696 - 688);
static_assert(offsetof(EnergyDeductParam, distThreshold) == 720 - 688);
static_assert(offsetof(EnergyDeductParam, horizontalFovMin) == 732 - 688);
static_assert(offsetof(EnergyDeductParam, isolatedDistThreshold) == 740 - 688);
static_assert(offsetof(EnergyDeductParam, bankAlign) == 744 - 688);
static_assert(offsetof(EnergyDeductParam, anglePerType) == 752 - 688);
static_assert(offsetof(EnergyDeductParam, processSubChannels) == 756 - 688);
static_assert(offsetof(EnergyDeductParam, columnsPerType) == 760 - 688);
static_assert(offsetof(EnergyDeductParam, distCoefficients) == 768 - 688);
static_assert(offsetof(EnergyDeductParam, byteLookup) == 792 - 688);
static_assert(offsetof(EnergyDeductParam, byteLookupLoaded) == 1048 - 688);
static_assert(offsetof(EnergyDeductParam, floatLookup) == 1052 - 688);
static_assert(offsetof(EnergyDeductParam, floatLookupLoaded) == 1308 - 688);
#pragma GCC diagnostic pop

}  // namespace tarvo::lidar
