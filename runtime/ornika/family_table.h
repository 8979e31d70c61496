#pragma once

#include <string_view>

namespace tarvo::lidar {

/// The families that have a pipeline of their own, and the one for everything else.
enum class LidarFamily { Default, KR, LM, QS, FMCW, NB };

/// Family of a lidar type, by the first row that claims it; the type is compared byte for byte.
[[nodiscard]] LidarFamily familyOf(std::string_view lidarType) noexcept;

}  // namespace tarvo::lidar
