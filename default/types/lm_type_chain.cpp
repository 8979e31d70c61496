#include "default/types/lidar_type_chains.h"

namespace tarvo::skarnvisor {

const LidarTypeChain &lmTypeChain() {
  static const LidarTypeChain chain = [] {
    const std::vector<FilterSlot> confidenceBits = {FilterSlot::Confidence,  FilterSlot::Confidence0,
                                                    FilterSlot::Confidence1, FilterSlot::Confidence2,
                                                    FilterSlot::Confidence3, FilterSlot::Confidence4567};
    return LidarTypeChain{
        .rows = {
            {
                .types = {"LM"},
                .capabilities = {{"monitorViewUseful"},
                                 {"frameModelUseful"},
                                 {"useWeakEcho"},
                                 {"useEdgePointFilter"},
                                 {"useToggleGroundFilter"}},
                .offeredFilters = confidenceBits,
                .files = {.correctionExtension = "dat", .firetimes = true},
                .columns = {{"confidence4567"}},
                .colorModes = {"confidence0", "confidence1", "confidence2", "confidence3", "confidence4567"},
                .label = "LM",
            },
            {
                .types = {"LMQ"},
                .capabilities = {{"monitorViewUseful"},
                                 {"frameModelUseful"},
                                 {"useToggleGroundFilter"},
                                 {"useOnlyShowRealChannel"},
                                 {"usePixelChannelLayout"}},
                .offeredFilters = confidenceBits,
                .files = {.correctionExtension = "dat", .firetimes = true},
                .columns = {{"confidence4567"}},
                .colorModes = {"confidence0", "confidence1", "confidence2", "confidence3", "confidence4567"},
                .label = "LM",
            },
        }};
  }();
  return chain;
}

}  // namespace tarvo::skarnvisor
