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
                  .columns = {{"row"}, {"col"}, {"Background"}, {"QswConfidence"}},
                  .colorModes = {"Background", "QswConfidence"},
                  .label = "QSW",
              },
              {
                  .types = {"OrnikaQS4_4"},
                  .capabilities = {{"qs4_4LidarChooseUse"}},
                  .files = {.correctionExtension = "dat"},
                  .columns = {{"row"}, {"col"}, {"Background"}},
                  .colorModes = {"Background"},
                  .label = "QS4",
              },
              {
                  .types = {"OrnikaQS3", "QS3T5W"},
                  .capabilities = {{"d2DViewUsed"}},
                  .files = {.correctionExtension = "dat"},
                  .columns = {{"row"}, {"col"}},
                  .label = "QS3",
              },
              {
                  .types = {"QSQ_4_18", "QSQ_V21", "QSQ_V23"},
                  .capabilities = {{"d2DViewUsed"}},
                  .files = {.correctionExtension = "dat"},
                  .columns = {{"row"}, {"col"}, {"Background"}},
                  .colorModes = {"Background"},
                  .label = "QSQ",
              },
          },
      .everyTypeLast = {{"firetimesUseful", false}}};
  return chain;
}

}  // namespace tarvo::skarnvisor
