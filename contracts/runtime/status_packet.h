#pragma once

#include <cstddef>

namespace tarvo::lidar {

// Sizes of the status (fault) records that a source hands over in one byte array, back to back. Which one a lidar sends
// is a matter of its type; both are little-endian and are read by the plug-in's fault passes.
inline constexpr std::size_t shortStatusPacketBytes = 6;
inline constexpr std::size_t longStatusPacketBytes = 210;

}  // namespace tarvo::lidar

namespace tarvo {
using lidar::longStatusPacketBytes;
using lidar::shortStatusPacketBytes;
}  // namespace tarvo
