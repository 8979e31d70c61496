#include "default/types/lidar_type_chains.h"

namespace tarvo::skarnvisor {

namespace {

constexpr std::string_view channelEqGains = "nbq_rgb_channel_eq_gains.csv";
constexpr std::string_view channelEqGainsUltra = "nbq_rgb_channel_eq_gains_ultra.csv";

const std::vector<FilterSlot> lowConfidenceBits = {FilterSlot::Confidence, FilterSlot::Confidence0,
                                                   FilterSlot::Confidence1, FilterSlot::Confidence2};

std::vector<LidarTypeRow> krRows() {
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
          .types = {"KR9"},
          .capabilities = {{"monitorViewUseful"},
                           {"faultmessageViewUsed"},
                           {"reflectanceMappingFlag"},
                           {"LidarStandbyModeFlag"},
                           {"frameModelUseful"},
                           {"remakeAndQuantifyFlag"},
                           {"groundFiterFlag"},
                           {"coordinateTransformUseful"}},
          .offeredFilters = {FilterSlot::Confidence, FilterSlot::Confidence0},
          .files = {.correctionExtension = "dat"},
          .columns = {{"GlareInD"}},
          .colorModes = {"GlareInD", "confidence0"},
          .label = "KR9",
      },
      {
          .types = {"KR5E_QD"},
          .capabilities = {{"channelConfigUseful"}, {"useBlindChannels", false}},
          .files = {.correctionExtension = "dat"},
          .blindChannelsCheck = false,
      },
  };
}

// The NB, NBQ and NBW types without a camera.
std::vector<LidarTypeRow> pointRows() {
  const std::vector<CapabilityChange> tuTools = {
      {"reflectanceMappingFlag"}, {"nonlinearMappingUseful"}, {"energyDeductFilterFlag"}, {"subChannelFilterFlag"}};
  const std::vector<ColumnPlace> tuColumns = {{"RawIntensity"},        {"Area"},         {"Peak"}, {"StepId"},
                                              {"FrontCenterDistDiff"}, {"FrontDistDiff"}};
  const std::vector<std::string_view> tuModes = {"RawIntensity", "Area", "Peak", "FrontCenterDistDiff",
                                                 "FrontDistDiff"};
  return {
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
          .types = {"NBQ_TU_410", "NBQ_TU_410_RS"},
          .capabilities = tuTools,
          .offeredFilters = {FilterSlot::NbqVtArea, FilterSlot::NbqVtStepId},
          .files = {.spelling = "NBQ_TU_410", .correctionExtension = "dat"},
          .columns = tuColumns,
          .colorModes = tuModes,
      },
      {
          .types = {"NBQ_TU_830"},
          .capabilities = tuTools,
          .offeredFilters = {FilterSlot::NbqVtArea, FilterSlot::NbqVtStepId},
          .files = {.correctionExtension = "dat"},
          .columns = tuColumns,
          .colorModes = tuModes,
      },
      {
          .types = {"NBQ_TU_RS5_41", "NBQ_TU_RS5_43", "NBQ_TU_RS5_47", "NBQ_TU_5_42"},
          .capabilities = {{"reflectanceMappingFlag"},
                           {"roadMarkerFilterFlag"},
                           {"bankReflectivityFilterFlag"},
                           {"subChannelFilterFlag"}},
          .offeredFilters = {FilterSlot::NbqVtStepId},
          .files = {.correctionExtension = "dat"},
          .columns = {{"RawIntensity"}, {"StepId"}, {"FrontCenterDistDiff"}, {"FrontDistDiff"}},
          .colorModes = {"RawIntensity", "FrontCenterDistDiff", "FrontDistDiff"},
      },
      {
          .types = {"NBQ_V5_33_830"},
          .capabilities = {{"reflectanceMappingFlag"}, {"nonlinearMappingUseful"}, {"nbqSmoothingFlag"}},
          .offeredFilters = {FilterSlot::Confidence},
          .files = {.correctionExtension = "dat"},
          .columns = {{"RawIntensity"}, {"GlareInD"}},
          .colorModes = {"RawIntensity", "GlareInD"},
      },
      {
          .types = {"NBW_TOP_V2"},
          .capabilities = {{"reflectanceMappingFlag"}, {"nonlinearMappingUseful"}, {"energyDeductFilterFlag"}},
          .files = {.correctionExtension = "dat"},
          .columns = {{"RawIntensity"}},
          .colorModes = {"RawIntensity"},
          .label = "NBW",
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

// The types with a colour camera: their image-signal files take the place of the firetimes.
std::vector<LidarTypeRow> cameraRows() {
  const std::vector<ColumnPlace> colors = {{"R"}, {"G"}, {"B"}};
  return {
      {
          .types = {"NBQ_COLOR_V3"},
          .capabilities = {{"firetimesUseful"}, {"nbqRgbModeFlag"}, {"ispFlag"}},
          .files = {.correctionExtension = "dat", .channelEqFile = channelEqGains},
          .columns = colors,
          .scales = TypeScales{.rgbType = true, .rgbMax = 4096.0F},
      },
      {
          .types = {"NBW_TOP_COLOR"},
          .capabilities = {{"firetimesUseful"}, {"nbqRgbModeFlag"}, {"ispFlag"}, {"rgbDisplay1260Flag"}},
          .offeredFilters = {FilterSlot::NbqVtSpadId},
          .files = {.correctionExtension = "dat", .channelEqFile = channelEqGains},
          .columns = colors,
          .scales = TypeScales{.rgbType = true, .rgbMax = 4096.0F},
          .label = "NBW",
      },
      {
          .types = {"COLOR_FLD_V7"},
          .capabilities = {{"firetimesUseful"}, {"nbqRgbModeFlag"}, {"ispFlag"}},
          .offeredFilters = {FilterSlot::NbqVtSpadId},
          .files = {.correctionExtension = "dat", .channelEqFile = channelEqGains},
          .columns = {{"R"}, {"G"}, {"B"}, {"SpadId"}},
          .scales = TypeScales{.rgbType = true, .rgbMax = 4096.0F},
      },
      {
          .types = {"NBW_TOP_COLOR_V6"},
          .capabilities = {{"firetimesUseful"}, {"nbqRgbModeFlag"}, {"ispFlag"}, {"rgbDisplay1260Flag"}},
          .offeredFilters = {FilterSlot::NbqVtSpadId},
          .files = {.correctionExtension = "dat", .channelEqFile = channelEqGains},
          .columns = colors,
          .scales = TypeScales{.rgbType = true, .rgbMax = 255.0F},
          .label = "NBW",
      },
      {
          .types = {"NBW_PEAK_V8"},
          .capabilities = {{"firetimesUseful"}, {"nbqRgbModeFlag"}, {"ispFlag"}, {"rgbDisplayLayoutFlag"}},
          .offeredFilters = {FilterSlot::NbqVtSpadId},
          .files = {.correctionExtension = "dat", .channelEqFile = channelEqGainsUltra},
          .columns = {{"R"}, {"G"}, {"B"}, {"SpadId"}},
          .scales = TypeScales{.rgbType = true, .rgbMax = 4096.0F, .rgbMaxLong = 512.0F, .rgbDualFocusScaleFlag = true},
          .rgbDisplayUseRowCol = true,
          .label = "NBW",
      },
      {
          .types = {"NBW_PEAK_V8_C"},
          .capabilities = {{"firetimesUseful"}, {"nbqRgbModeFlag"}, {"ispFlag"}, {"rgbDisplayLayoutFlag"}},
          .offeredFilters = {FilterSlot::NbqVtSpadId},
          .files = {.correctionExtension = "dat", .channelEqFile = channelEqGainsUltra},
          .columns = {{"R"}, {"G"}, {"B"}, {"SpadId"}},
          .scales = TypeScales{.rgbType = true, .rgbMax = 255.0F, .rgbMaxLong = 31.875F, .rgbDualFocusScaleFlag = true},
          .rgbDisplayUseRowCol = true,
          .label = "NBW",
      },
  };
}

// Colour types without a camera picture; the first keeps its area in one byte.
std::vector<LidarTypeRow> fieldRows() {
  LidarTypeRow row{
      .types = {"COLOR_FLD_V6"},
      .capabilities = {{"firetimesUseful"}, {"areaRemapFlag"}},
      .files = {.correctionExtension = "dat", .firetimes = true},
      .columns = {{"RawIntensity"}, {"Area"}, {"Peak"}, {"SpadId"}, {"FrontCenterDistDiff"}, {"FrontDistDiff"}},
      .colorModes = {"RawIntensity", "Area", "Peak", "FrontCenterDistDiff", "FrontDistDiff"},
      .areaFullScale = 255.0F,
  };
  LidarTypeRow wide = row;
  wide.types = {"COLOR_FLD_V11"};
  wide.areaFullScale.reset();
  return {std::move(row), std::move(wide)};
}

}  // namespace

const LidarTypeChain &krTypeChain() {
  static const LidarTypeChain chain = [] {
    std::vector<LidarTypeRow> rows;
    for (auto *part : {krRows, pointRows, cameraRows, fieldRows})
      for (LidarTypeRow &row : part()) rows.push_back(std::move(row));
    return LidarTypeChain{.everyTypeFirst = {{"firetimesUseful", false}},
                          .rows = std::move(rows),
                          .everyTypeColumns = {{"Field"}},
                          .everyTypeColorModes = {"Field"},
                          .nonlinearMapping = true};
  }();
  return chain;
}

}  // namespace tarvo::skarnvisor
