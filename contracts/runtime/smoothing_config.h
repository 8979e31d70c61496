#pragma once

#include <array>

namespace tarvo::lidar {

// Parameters of the runtime's point-cloud smoothing, in the order in which the tool box hands them over: `floats0` are
// its elements 0 to 6, `int7` element 7, `floats8` elements 8 to 10, `ints11` elements 11 and 12.
struct SmoothingConfig {
  bool enabled = false;  // the runtime's flag at the time of the call
  std::array<float, 7> floats0{};
  int int7 = 0;
  std::array<float, 3> floats8{};
  std::array<int, 2> ints11{};
};

}  // namespace tarvo::lidar

namespace tarvo {
using lidar::SmoothingConfig;
}
