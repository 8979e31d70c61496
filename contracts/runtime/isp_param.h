#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tarvo::lidar {

// Image-signal chain and RGB display of the colour lidars, at offset 288 of FrameDecodeParam.
struct IspParam {
  bool enable = false;
  bool dcrEnable = false;
  bool channelEqEnable = false;
  bool blcEnable = true;
  float blcOffset = 42.0F;
  std::string channelEqPath;  // changed only inside ExecuteWithIspLock; local 8-bit code page
  bool spadEnable = false;
  bool ccmEnable = false;
  bool awbEnable = false;
  bool aeEnable = false;
  bool drcEnable = true;
  bool gammaEnable = false;
  std::byte reserved46[2]{};
  float spadNMax = 1.0F;
  float spadEnergyRef = 1.0F;
  float spadSaturationRatio = 1.0F;
  float ccm[12]{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};  // 3 rows of 4
  float awbRGain = 1.0F;
  float awbGGain = 1.0F;
  float awbBGain = 1.0F;
  float aeTargetBrightness = 0.5F;
  float aeMaxGain = 8.0F;
  float aeMinGain = 1.0F;
  float drcShadowGain = 1.4F;
  float drcKneePoint = 0.5F;
  float drcTargetMax = 1.0F;
  float drcHighlightCompression = 0.5F;
  bool sharpenEnable = true;
  std::byte reserved149[3]{};
  float sharpenStrength = 1.1F;
  float gammaValue = 1.0F;
  bool gapFillEnable = false;
  std::byte reserved161[3]{};
  float gapTriggerDeg = 0.05F;
  float insertStepDeg = 0.03F;
  bool rowSpikeFixEnable = false;
  std::byte reserved173[3]{};
  float spikeMargin = 100.0F;
  bool temporalEmaEnable = false;
  bool nonlinearEnable = false;
  std::byte reserved182[2]{};
  float integrationUs = 33.3F;
  bool pythonWbEnable = true;
  std::byte reserved189[3]{};
  float wbGrayPerfectMix = 0.0F;
  bool wbFinalEnable = true;
  std::byte reserved197[3]{};
  float wbFinalAggression = 1.0F;
  bool dehazeEnable = false;
  std::byte reserved205[3]{};
  float dehazeOmega = 0.65F;
  float dehazeOutputGamma = 0.65F;
  bool dehazeWbAfter = false;
  bool showStyleEnable = true;
  bool showToneEnable = true;
  std::byte reserved219{};
  float toneClipLimit = 0.5F;
  std::int32_t toneTileSize = 8;
  float toneGamma = 1.0F;
  bool chromaBoostEnable = true;
  std::byte reserved233[3]{};
  float crGain = 1.2F;
  float cbGain = 1.2F;
  float shadowBoost = 0.8F;
  float yGain = 1.0F;
  bool ySmoothEnable = false;
  std::byte reserved253[3]{};
  float ySmoothSigma = 0.4F;
  bool chromaDenoiseEnable = false;
  std::byte reserved261[3]{};
  float chromaDnSigma = 1.0F;
  bool flipVertical = false;
  bool rgbDisplay1260 = false;
  bool rgbDisplayUseRowCol = false;
  bool rgbToDBgFillEnable = false;
  float rgbToDBgFillRangeM = 300.0F;  // metres
  bool previewEnable = false;
  std::byte reserved277[3]{};
};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(sizeof(IspParam) == 280);
static_assert(offsetof(IspParam, blcOffset) == 292 - 288);
static_assert(offsetof(IspParam, channelEqPath) == 296 - 288);
static_assert(offsetof(IspParam, spadEnable) == 328 - 288);
static_assert(offsetof(IspParam, spadNMax) == 336 - 288);
static_assert(offsetof(IspParam, ccm) == 348 - 288);
static_assert(offsetof(IspParam, awbRGain) == 396 - 288);
static_assert(offsetof(IspParam, aeTargetBrightness) == 408 - 288);
static_assert(offsetof(IspParam, drcShadowGain) == 420 - 288);
static_assert(offsetof(IspParam, sharpenEnable) == 436 - 288);
static_assert(offsetof(IspParam, gammaValue) == 444 - 288);
static_assert(offsetof(IspParam, gapFillEnable) == 448 - 288);
static_assert(offsetof(IspParam, rowSpikeFixEnable) == 460 - 288);
static_assert(offsetof(IspParam, temporalEmaEnable) == 468 - 288);
static_assert(offsetof(IspParam, integrationUs) == 472 - 288);
static_assert(offsetof(IspParam, pythonWbEnable) == 476 - 288);
static_assert(offsetof(IspParam, wbFinalEnable) == 484 - 288);
static_assert(offsetof(IspParam, dehazeEnable) == 492 - 288);
static_assert(offsetof(IspParam, dehazeWbAfter) == 504 - 288);
static_assert(offsetof(IspParam, toneClipLimit) == 508 - 288);
static_assert(offsetof(IspParam, chromaBoostEnable) == 520 - 288);
static_assert(offsetof(IspParam, yGain) == 536 - 288);
static_assert(offsetof(IspParam, ySmoothEnable) == 540 - 288);
static_assert(offsetof(IspParam, chromaDnSigma) == 552 - 288);
static_assert(offsetof(IspParam, flipVertical) == 556 - 288);
static_assert(offsetof(IspParam, rgbToDBgFillRangeM) == 560 - 288);
static_assert(offsetof(IspParam, previewEnable) == 564 - 288);
#pragma GCC diagnostic pop

}  // namespace tarvo::lidar
