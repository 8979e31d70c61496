#include "default/types/lidar_type_chains.h"

namespace tarvo::skarnvisor {

namespace {

constexpr std::string_view channelEqGains = "nbq_rgb_channel_eq_gains.csv";
constexpr std::string_view channelEqGainsUltra = "nbq_rgb_channel_eq_gains_ultra.csv";

const std::vector<FilterSlot> lowConfidenceBits = {FilterSlot::Confidence, FilterSlot::Confidence0,
                                                   FilterSlot::Confidence1, FilterSlot::Confidence2};

std::vector<LidarTypeRow> pointRows() {
  return {
      {
          .types = {"KR2"},
          .capabilities = {{"monitorViewUseful"}, {"faultmessageViewUsed"}, {"displayModeKr2HudFlag"}},
          .offeredFilters = {FilterSlot::Confidence, FilterSlot::Confidence0},
          .files = {.correctionExtension = "csv", .factoryCorrection = true},
          .colorModes = {"confidence0"},
          .label = "KR2P",
      },
      {
          .types = {"KR6_5_14"},
          .capabilities = {{"faultmessageViewUsed"}, {"reflectanceMappingFlag"}, {"setLidarReturnModeFlag"}},
          .offeredFilters = lowConfidenceBits,
          .files = {.correctionExtension = "dat"},
          .colorModes = {"confidence0", "confidence1", "confidence2"},
          .label = "KR6",
      },
      {
          .types = {"KR6_31_52"},
          .capabilities = {{"faultmessageViewUsed"},
                           {"reflectanceMappingFlag"},
                           {"LidarStandbyModeFlag"},
                           {"setConfidence0FilterFlag"}},
          .offeredFilters = lowConfidenceBits,
          .files = {.correctionExtension = "dat"},
          .columns = {{"GlareInD"}},
          .colorModes = {"GlareInD", "confidence0", "confidence1", "confidence2"},
          .needsNoCorrection = true,
          .label = "KR6",
      },
      {
          .types = {"KR5E_QD"},
          .capabilities = {{"channelConfigUseful"}, {"useBlindChannels", false}},
          .files = {.correctionExtension = "dat"},
          .blindChannelsCheck = false,
      },
      {
          .types = {"NB41X"},
          .capabilities = {{"dcfUseful"},
                           {"reflectanceMappingFlag"},
                           {"nbqSmoothingFlag"},
                           {"nbBloomingFilterFlag"},
                           {"nbNoiseFilterFlag"},
                           {"LidarStandbyModeFlag"},
                           {"nonlinearMappingUseful"},
                           {"faultmessageViewUsed"}},
          .files = {.correctionExtension = "dat", .dcf = true},
          .columns = {{"RawIntensity"}, {"confidence"}, {"GlareInD"}},
          .dcfCorrection = true,
      },
      {
          .types = {"NBQ_TU_410"},
          .capabilities = {{"reflectanceMappingFlag"},
                           {"nonlinearMappingUseful"},
                           {"energyDeductFilterFlag"},
                           {"subChannelFilterFlag"}},
          .offeredFilters = {FilterSlot::NbqVtArea, FilterSlot::NbqVtStepId},
          .files = {.correctionExtension = "dat"},
          .columns = {{"RawIntensity"}, {"Area"}, {"Peak"}, {"StepId"}, {"FrontCenterDistDiff"}, {"FrontDistDiff"}},
          .colorModes = {"RawIntensity", "Area", "Peak", "FrontCenterDistDiff", "FrontDistDiff"},
      },
      {
          .types = {"NBW_TOP_V3_V4"},
          .capabilities =
              {{"reflectanceMappingFlag"}, {"nonlinearMappingUseful"}, {"energyDeductFilterFlag"}, {"rtlEgOrderKFlag"}},
          .files = {.correctionExtension = "dat"},
          .columns = {{"RawIntensity"}},
          .colorModes = {"RawIntensity"},
          .intensityMapping = false,
          .label = "NBW",
      },
  };
}

// The types with a colour camera, and the one whose area field is a byte.
std::vector<LidarTypeRow> colorRows() {
  return {
      {
          .types = {"NBQ_COLOR_V3"},
          .capabilities = {{"firetimesUseful"}, {"nbqRgbModeFlag"}, {"ispFlag"}},
          .files = {.correctionExtension = "dat", .channelEqFile = channelEqGains},
          .columns = {{"R"}, {"G"}, {"B"}},
          .scales = TypeScales{.rgbType = true, .rgbMax = 4096.0F},
      },
      {
          .types = {"NBW_TOP_COLOR", "COLOR_FLD_V7"},
          .capabilities = {{"firetimesUseful"}},
          .files = {.correctionExtension = "dat", .channelEqFile = channelEqGains},
          .columns = {{"R"}, {"G"}, {"B"}},
          .scales = TypeScales{.rgbType = true, .rgbMax = 4096.0F},
      },
      {
          .types = {"NBW_TOP_COLOR_V6"},
          .capabilities = {{"firetimesUseful"}},
          .files = {.correctionExtension = "dat", .channelEqFile = channelEqGains},
          .columns = {{"R"}, {"G"}, {"B"}},
          .scales = TypeScales{.rgbType = true, .rgbMax = 255.0F},
      },
      {
          .types = {"NBW_PEAK_V8"},
          .capabilities = {{"firetimesUseful"}},
          .files = {.correctionExtension = "dat", .channelEqFile = channelEqGainsUltra},
          .columns = {{"R"}, {"G"}, {"B"}},
          .scales = TypeScales{.rgbType = true, .rgbMax = 4096.0F, .rgbMaxLong = 512.0F, .rgbDualFocusScaleFlag = true},
      },
      {
          .types = {"NBW_PEAK_V8_C"},
          .capabilities = {{"firetimesUseful"}},
          .files = {.correctionExtension = "dat", .channelEqFile = channelEqGains},
          .columns = {{"R"}, {"G"}, {"B"}},
          .scales = TypeScales{.rgbType = true, .rgbMax = 255.0F, .rgbMaxLong = 31.875F, .rgbDualFocusScaleFlag = true},
      },
      {
          .types = {"COLOR_FLD_V6"},
          .capabilities = {{"firetimesUseful"}},
          .files = {.correctionExtension = "dat"},
          .areaFullScale = 255.0F,
      },
  };
}

}  // namespace

const LidarTypeChain &krTypeChain() {
  static const LidarTypeChain chain = [] {
    std::vector<LidarTypeRow> rows = pointRows();
    for (LidarTypeRow &row : colorRows()) rows.push_back(std::move(row));
    return LidarTypeChain{.everyTypeFirst = {{"firetimesUseful", false}},
                          .rows = std::move(rows),
                          .everyTypeColumns = {{"Field"}},
                          .everyTypeColorModes = {"Field"},
                          .nonlinearMapping = true};
  }();
  return chain;
}

}  // namespace tarvo::skarnvisor
