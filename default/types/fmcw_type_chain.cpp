#include "default/types/lidar_type_chains.h"

namespace tarvo::skarnvisor {

const LidarTypeChain &fmcwTypeChain() {
  static const LidarTypeChain chain{
      .rows =
          {
              {
                  .types = {"FMCW", "FMCW_V3"},
                  .capabilities = {{"firetimesUseful", false}, {"coordinateTransformUseful"}},
                  .columns = {{"RelVelocity"}, {"AngleId"}},
                  .colorModes = {"VelocityIntensity", "OptVelocityIntensity", "Velocity"},
                  .glslType = 1,
                  .label = "FMCW",
              },
              {
                  .types = {"FMCW_V4"},
                  .capabilities = {{"firetimesUseful", false},
                                   {"coordinateTransformUseful"},
                                   {"fmcwPostProcessUseful", false}},
                  .columns = {{"RelVelocity"}, {"AngleId"}},
                  .colorModes = {"VelocityIntensity", "OptVelocityIntensity", "Velocity"},
                  .glslType = 1,
                  .label = "FMCW",
              },
          },
      .corrections = CorrectionsStep::Never,
      .dcf = false};
  return chain;
}

}  // namespace tarvo::skarnvisor
