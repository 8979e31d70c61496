#include "default/pipeline/type_traits.h"

#include <algorithm>
#include <array>

namespace tarvo::skarnvisor {

namespace {

struct Row {
  std::string_view type;
  TypeTraits traits;
};

constexpr std::array rows{
    Row{"HU_V8", {.echoGate = true}},
    Row{"HU_V11", {.echoGate = true}},
    Row{"VD2", {.dirtyLevelGate = true}},
    Row{"NBQ_COLOR_V3", {.denseCamera = true, .attributesInPointCloudMode = true}},
    Row{"NBW_TOP_COLOR", {.attributesInPointCloudMode = true}},
    Row{"NBW_TOP_COLOR_V6", {.attributesInPointCloudMode = true}},
    Row{"NBW_PEAK_V8", {.attributesInPointCloudMode = true, .nbqPointLayout = true, .channelEqRows = 540}},
    Row{"NBW_PEAK_V8_C", {.attributesInPointCloudMode = true, .nbqPointLayout = true}},
    Row{"NBQ_TU_410", {.nbqPointLayout = true}},
    Row{"NBQ_TU_410_RS", {.nbqPointLayout = true}},
    Row{"NBQ_TU_830", {.nbqPointLayout = true}},
    Row{"NBQ_TU_RS5_41", {.nbqPointLayout = true}},
    Row{"NBQ_TU_RS5_43", {.nbqPointLayout = true}},
    Row{"NBQ_TU_RS5_47", {.nbqPointLayout = true}},
    Row{"NBQ_TU_5_42", {.nbqPointLayout = true}},
    Row{"NBW_TOP_V2", {.nbqPointLayout = true}},
    Row{"NBW_TOP_V3_V4", {.nbqPointLayout = true}},
    Row{"COLOR_FLD_V6", {.nbqPointLayout = true, .diffByThree = true}},
    Row{"COLOR_FLD_V7", {.nbqPointLayout = true}},
    Row{"COLOR_FLD_V11", {.nbqPointLayout = true}},
};

}  // namespace

TypeTraits typeTraits(std::string_view lidarType) {
  const auto row = std::find_if(rows.begin(), rows.end(), [&](const Row &r) { return r.type == lidarType; });
  return row != rows.end() ? row->traits : TypeTraits{};
}

}  // namespace tarvo::skarnvisor
