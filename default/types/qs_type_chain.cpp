#include "default/types/lidar_type_chains.h"

namespace tarvo::skarnvisor {

const LidarTypeChain &qsTypeChain() {
  static const LidarTypeChain chain{
      .rows =
          {
              {
                  .types = {"OrnikaQS5"},
                  .capabilities = {{"retroConfFilterUse"}, {"qswDragPointFilter"}, {"qswDirtyDiagnostic"}},
                  .files = {.correctionExtension = "dat"},
                  .label = "QSW",
              },
              {
                  .types = {"OrnikaQS4_4"},
                  .capabilities = {{"qs4_4LidarChooseUse"}},
                  .files = {.correctionExtension = "dat"},
              },
              {
                  .types = {"OrnikaQS3", "QS3T5W"},
                  .files = {.correctionExtension = "dat"},
                  .label = "QS3",
              },
          },
      .everyTypeLast = {{"firetimesUseful", false}}};
  return chain;
}

}  // namespace tarvo::skarnvisor
