#include "default/types/lidar_type_chains.h"

namespace tarvo::skarnvisor {

namespace {

/// The types of 128 lines and more, and those of the VD line, tell weight and azimuth state of each point.
const std::vector<FilterSlot> weightAndState = {FilterSlot::Confidence, FilterSlot::WeightFactor,
                                                FilterSlot::AngleState};

/// Older lidars come with a factory table beside the default one.
constexpr CalibrationFileKinds factoryTables{
    .correctionExtension = "csv", .factoryCorrection = true, .firetimes = true, .factoryFiretimes = true};

std::vector<LidarTypeRow> mechanicalRows() {
  return {
      {
          .types = {"Ornika210", "OrnikaAura"},
          .capabilities = {{"monitorViewUseful"}, {"remakeAndQuantifyFlag"}},
          .offeredFilters = weightAndState,
          .files = factoryTables,
          .columns = {{"WeightFactor"}, {"EnvLight"}, {"AziState"}},
          .colorModes = {"WeightFactor", "EnvLight", "AziState"},
      },
      {
          .types = {"Ornika70S_plusInfo", "Ornika44S_plusInfo"},
          .capabilities = {{"monitorViewUseful"}},
          .offeredFilters = {FilterSlot::AngleState},
          .files = factoryTables,
          .columns = {{"AziState"}},
          .colorModes = {"AziState"},
      },
      {
          .types = {"WG9"},
          .capabilities = {{"monitorViewUseful"}, {"groundFiterFlag"}},
          .offeredFilters = {FilterSlot::Confidence},
          .files = factoryTables,
          .label = "WG9",
      },
      {
          .types = {"OrnikaYF"},
          .capabilities = {{"monitorViewUseful"}, {"frameNumberFlag"}},
          .offeredFilters = {FilterSlot::Confidence},
          .files = {.correctionExtension = "csv", .firetimes = true},
          .label = "YF",
      },
      {
          .types = {"OrnikaYFN"},
          .capabilities = {{"monitorViewUseful"}, {"frameNumberFlag"}, {"yfnNoiseFilter"}},
          .offeredFilters = {FilterSlot::Confidence},
          .files = {.correctionExtension = "csv", .firetimes = true},
          .columns = {{"NoiseLevel"}},
          .colorModes = {"NoiseLevel"},
          .label = "YF",
      },
      {
          .types = {"YFP"},
          .capabilities = {{"frameNumberFlag"}, {"yfnNoiseFilter"}},
          .offeredFilters = {FilterSlot::Confidence},
          .files = {.correctionExtension = "bin", .firetimes = true},
          .columns = {{"NoiseLevel"}},
          .colorModes = {"NoiseLevel"},
          .label = "YF",
      },
      {
          .types = {"OrnikaZC"},
          .capabilities = {{"monitorViewUseful"}},
          .offeredFilters = {FilterSlot::Confidence},
          .files = {.correctionExtension = "csv", .firetimes = true},
          .firstBeforeLast = true,
          .label = "ZC",
      },
      {
          .types = {"OrnikaZC8", "OrnikaZC8Special"},
          .capabilities = {{"monitorViewUseful"}},
          .offeredFilters = {FilterSlot::Confidence},
          .files = {.spelling = "OrnikaZC8", .correctionExtension = "csv", .firetimes = true},
          .columns = {{"DirtyLevel"}},
          .colorModes = {"DirtyLevel"},
          .firstBeforeLast = true,
          .label = "ZC",
      },
  };
}

std::vector<LidarTypeRow> modernRows() {
  return {
      {
          .types = {"VD8"},
          .capabilities =
              {{"monitorViewUseful"}, {"vd8PopoutFilterFlag"}, {"pointCloudSmoothing"}, {"frameNumberFlag"}},
          .offeredFilters = weightAndState,
          .files = {.correctionExtension = "dat", .firetimes = true},
          .columns = {{"WeightFactor"}, {"AziState"}, {"EnvLight"}, {"DirtyLevel"}},
          .colorModes = {"WeightFactor", "AziState", "EnvLight", "DirtyLevel"},
          .distanceCorrection = 0,
          .label = "VD8",
      },
      {
          .types = {"VD2"},
          .capabilities = {{"monitorViewUseful"},
                           {"dirtyMappingReflectanceUsefulFlag"},
                           {"frameDurationFlag"},
                           {"vd8PopoutFilterFlag"},
                           {"vd2OfflineFilter"},
                           {"pointCloudSmoothing"},
                           {"firetimesUseful", false}},
          .files = {.correctionExtension = "dat"},
          .columns = {{"DirtyDegree"}},
          .colorModes = {"DirtyDegree"},
          .frameSeconds = 0.2,
          .label = "VD2",
      },
      {
          .types = {"VD5_Serial"},
          .capabilities = {{"monitorViewUseful"},
                           {"frameDurationFlag"},
                           {"vd8PopoutFilterFlag"},
                           {"vd8OffineFilterFlag"},
                           {"vd2DistanceFilter"},
                           {"pointCloudSmoothing"}},
          .offeredFilters = weightAndState,
          .files = {.correctionExtension = "dat", .firetimes = true},
          .columns = {{"WeightFactor"}, {"AziState"}},
          .colorModes = {"WeightFactor", "AziState"},
          .distanceCorrection = 0,
          .label = "VD5",
      },
      {
          .types = {"HU_V8", "HU_V11"},
          .capabilities = {{"frameNumberFlag"}, {"elevationFovFilterFlag"}},
          .files = {.correctionExtension = "bin"},
          .colorModes = {"Echo"},
          .distanceCorrection = 1,
          .elevationFovFilter = true,
      },
  };
}

}  // namespace

const LidarTypeChain &baseTypeChain() {
  static const LidarTypeChain chain = [] {
    std::vector<LidarTypeRow> rows = mechanicalRows();
    for (LidarTypeRow &row : modernRows()) rows.push_back(std::move(row));
    return LidarTypeChain{.rows = std::move(rows), .corrections = CorrectionsStep::WhenNamed, .energyDeduct = true};
  }();
  return chain;
}

}  // namespace tarvo::skarnvisor
