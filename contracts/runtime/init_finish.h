#pragma once

namespace tarvo::lidar {

// What GetInitFinish is asked about; each value is its own yes/no question.
enum class SvSdkInitFinish { Ready = 3, Failed = 4 };

}  // namespace tarvo::lidar

namespace tarvo {
using lidar::SvSdkInitFinish;
}
