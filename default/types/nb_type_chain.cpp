#include "default/types/lidar_type_chains.h"

namespace tarvo::skarnvisor {

const LidarTypeChain &nbTypeChain() {
  static const LidarTypeChain chain{
      .rows = {
          {
              .types = {"NB41-6_20"},
              .capabilities = {{"faultmessageViewUsed"},
                               {"broadbandFilterFlag"},
                               {"nbBloomingFilterFlag"},
                               {"lidarStandbyModeFlag"}},
              .files = {.correctionExtension = "dat", .firetimes = true},
          },
          {
              .types = {"NB41-6_21", "NB41-6_22"},
              .capabilities = {{"broadbandFilterFlag"}, {"nbBloomingFilterFlag"}},
              .files = {.correctionExtension = "dat", .firetimes = true},
          },
          {
              .types = {"NB41-6_23"},
              .capabilities = {{"faultmessageViewUsed"}, {"nbBloomingFilterFlag"}, {"lidarStandbyModeFlag"}},
              .files = {.correctionExtension = "dat", .firetimes = true},
          },
      }};
  return chain;
}

}  // namespace tarvo::skarnvisor
