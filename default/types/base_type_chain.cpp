#include "default/types/lidar_type_chains.h"

namespace tarvo::skarnvisor {

const LidarTypeChain &baseTypeChain() {
  static const LidarTypeChain chain{
      .rows = {
          {
              .types = {"VD8"},
              .capabilities =
                  {{"monitorViewUseful"}, {"vd8PopoutFilterFlag"}, {"pointCloudSmoothing"}, {"frameNumberFlag"}},
              .offeredFilters = {FilterSlot::Confidence, FilterSlot::WeightFactor, FilterSlot::AngleState},
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
              .types = {"HU_V8", "HU_V11"},
              .capabilities = {{"frameNumberFlag"}, {"elevationFovFilterFlag"}},
              .files = {.correctionExtension = "bin"},
              .colorModes = {"Echo"},
              .distanceCorrection = 1,
              .elevationFovFilter = true,
          },
      }};
  return chain;
}

}  // namespace tarvo::skarnvisor
