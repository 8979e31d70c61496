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
    Row{"NBW_PEAK_V8", {.attributesInPointCloudMode = true}},
    Row{"NBW_PEAK_V8_C", {.attributesInPointCloudMode = true}},
};

} // namespace

TypeTraits typeTraits(std::string_view lidarType)
{
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const Row& r) { return r.type == lidarType; });
    return row != rows.end() ? row->traits : TypeTraits{};
}

} // namespace tarvo::skarnvisor
