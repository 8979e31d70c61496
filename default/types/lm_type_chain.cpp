#include "default/types/lidar_type_chains.h"

namespace tarvo::skarnvisor {

namespace {

const std::vector<FilterSlot> singleBits = {FilterSlot::Confidence,  FilterSlot::Confidence0,
                                            FilterSlot::Confidence1, FilterSlot::Confidence2,
                                            FilterSlot::Confidence3, FilterSlot::Confidence4567};
const std::vector<std::string_view> singleBitModes = {"confidence0", "confidence1", "confidence2", "confidence3",
                                                      "confidence4567"};

/// The LMQ line packs five bits into one value and leaves three single.
const std::vector<FilterSlot> packedBits = {FilterSlot::Confidence01234, FilterSlot::Confidence5,
                                            FilterSlot::Confidence6, FilterSlot::Confidence7};
const std::vector<std::string_view> packedBitModes = {"confidence01234", "confidence5", "confidence6", "confidence7"};

std::vector<LidarTypeRow> lmRows() {
  return {
      {
          .types = {"LM"},
          .capabilities = {{"monitorViewUseful"},
                           {"frameModelUseful"},
                           {"useWeakEcho"},
                           {"useEdgePointFilter"},
                           {"useToggleGroundFilter"}},
          .offeredFilters = singleBits,
          .files = {.correctionExtension = "dat", .firetimes = true},
          .columns = {{"confidence4567"}},
          .colorModes = singleBitModes,
          .label = "LM",
      },
      {
          .types = {"LMQ-TX"},
          .capabilities = {{"frameModelUseful"}, {"useWeakEcho"}, {"useEdgePointFilter"}, {"useToggleGroundFilter"}},
          .offeredFilters = packedBits,
          .files = {.correctionExtension = "dat", .firetimes = true},
          .colorModes = packedBitModes,
          .label = "LM",
      },
      {
          .types = {"LMQ"},
          .capabilities = {{"monitorViewUseful"},
                           {"frameModelUseful"},
                           {"useToggleGroundFilter"},
                           {"useOnlyShowRealChannel"},
                           {"usePixelChannelLayout"}},
          .offeredFilters = packedBits,
          .files = {.correctionExtension = "dat", .firetimes = true},
          .colorModes = packedBitModes,
          .label = "LM",
      },
      {
          .types = {"LMQ-350"},
          .capabilities =
              {{"frameModelUseful"}, {"useToggleGroundFilter"}, {"useOnlyShowRealChannel"}, {"usePixelChannelLayout"}},
          .offeredFilters = packedBits,
          .files = {.correctionExtension = "dat", .firetimes = true},
          .colorModes = packedBitModes,
          .label = "LM",
      },
      {
          .types = {"KR8_19", "KR8_37"},
          .capabilities = {{"frameModelUseful"}},
          .offeredFilters = {FilterSlot::Confidence, FilterSlot::Confidence0},
          .files = {.correctionExtension = "dat", .firetimes = true},
          .colorModes = {"confidence0"},
          .label = "KR8",
      },
      {
          .types = {"TRL-Newt", "TRL-KRS51"},
          .capabilities = {{"frameModelUseful"}},
          .offeredFilters = {FilterSlot::Confidence},
          .files = {.correctionExtension = "dat", .firetimes = true},
          .label = "TRL",
      },
  };
}

}  // namespace

const LidarTypeChain &lmTypeChain() {
  static const LidarTypeChain chain{.rows = lmRows()};
  return chain;
}

}  // namespace tarvo::skarnvisor
