#include "default/types/lidar_type_chains.h"

namespace tarvo::skarnvisor {

const LidarTypeChain &fmcwTypeChain() {
  static const LidarTypeChain chain{
      .rows = {
          {
              .types = {"FMCW", "FMCW_V3"},
              .capabilities = {{"firetimesUseful", false}},
              .glslType = 1,
          },
          {
              .types = {"FMCW_V4"},
              .capabilities = {{"firetimesUseful", false}, {"fmcwPostProcessUseful", false}},
              .glslType = 1,
          },
      }};
  return chain;
}

}  // namespace tarvo::skarnvisor
