#pragma once

#include "contracts/runtime/decoded_frame.h"
#include "contracts/runtime/point_info.h"

namespace tarvo::lidar {

using DecodedFrame = LidarDecodedFrame<SDKPointInfo>;

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(sizeof(SDKPointInfo) == 88);
static_assert(offsetof(DecodedFrame, packetCapacity) == 8);
static_assert(offsetof(DecodedFrame, pointsPerPacket) == 12);
static_assert(offsetof(DecodedFrame, selectedEcho) == 27);
static_assert(offsetof(DecodedFrame, returnMode) == 1396);
static_assert(offsetof(DecodedFrame, pointCount) == 1420);
static_assert(offsetof(DecodedFrame, fmcwTime) == 1424);
static_assert(offsetof(DecodedFrame, frameSeconds) == 1432);
static_assert(offsetof(DecodedFrame, laserCount) == 1522);
static_assert(offsetof(DecodedFrame, channelCount) == 1524);
static_assert(offsetof(DecodedFrame, points) == 1552);
static_assert(offsetof(DecodedFrame, smoothingRefresh) == 1673);
static_assert(offsetof(DecodedFrame, packetsPerFrame) == 1706);
static_assert(offsetof(DecodedFrame, deviceStatus) == 1708);
static_assert(offsetof(DecodedFrame, motorSpeed) == 4024);
static_assert(offsetof(DecodedFrame, gridRows) == 4036);
static_assert(offsetof(DecodedFrame, gridColumns) == 4038);
static_assert(offsetof(DecodedFrame, vehicleSpeed) == 4040);
static_assert(offsetof(DecodedFrame, vehicleAzimuth) == 4044);
static_assert(offsetof(DecodedFrame, vehicleElevation) == 4048);
static_assert(offsetof(DecodedFrame, fmcwParam0) == 4056);
static_assert(offsetof(DecodedFrame, fmcwParams) == 4064);
static_assert(offsetof(DecodedFrame, dirtyValues) == 4088);
#pragma GCC diagnostic pop

}  // namespace tarvo::lidar

namespace tarvo {
using lidar::DecodedFrame;
using lidar::SDKPointInfo;
}  // namespace tarvo
