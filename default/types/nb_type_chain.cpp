#include "default/types/lidar_type_chains.h"

namespace tarvo::skarnvisor {

namespace {

/// What all types of the family share; the tools are each type's own.
LidarTypeRow row(std::vector<std::string_view> types, std::vector<CapabilityChange> tools) {
  return {
      .types = std::move(types),
      .capabilities = std::move(tools),
      .offeredFilters = {FilterSlot::Confidence, FilterSlot::TurnIndex, FilterSlot::PointId},
      .files = {.correctionExtension = "dat", .firetimes = true},
      .columns = {{"TurnIndex"}, {"PointId"}},
      .colorModes = {"TurnIndex", "PointId"},
      .label = "NB",
  };
}

}  // namespace

const LidarTypeChain &nbTypeChain() {
  static const LidarTypeChain chain{
      .rows = {
          row({"NB41-6_20"},
              {{"faultmessageViewUsed"}, {"broadbandFilterFlag"}, {"nbBloomingFilterFlag"}, {"lidarStandbyModeFlag"}}),
          row({"NB41-6_21", "NB41-6_22"}, {{"broadbandFilterFlag"}, {"nbBloomingFilterFlag"}}),
          row({"NB41-6_23"}, {{"faultmessageViewUsed"}, {"nbBloomingFilterFlag"}, {"lidarStandbyModeFlag"}}),
      }};
  return chain;
}

}  // namespace tarvo::skarnvisor
