#pragma once

#include <cstdint>
#include <cstdlib>
#include <limits>

#include "contracts/runtime/decoded_frame.h"

namespace tarvo::lidar {

// Frees the blocks of `frame` and gives it room for a group of `frames` frames, all zero. The storage holds, one after
// the other: 12 bytes a packet, the points, 6 bytes a packet; beside it lies an array of one word a packet.
// Caller holds frame.mutex. `frames` below 1 counts as 1. Without memory the frame is left with no room and false comes
// back. What was decoded before is gone in either case: pointCount is 0.
template <class Point>
[[nodiscard]] bool resizeDecodedFrameLocked(LidarDecodedFrame<Point> &frame, int frames) {
  static_assert(alignof(Point) <= 8);
  frame.storage.reset();
  frame.packetWords.reset();
  frame.packetHeads = frame.packetTails = nullptr;
  frame.points = nullptr;
  frame.pointCount = frame.packetCount = frame.packetCapacity = 0;

  const std::uint64_t packets = std::uint64_t{frame.packetsPerFrame} * std::uint64_t(frames < 1 ? 1 : frames);
  const std::uint64_t pointBytes = packets * frame.pointsPerPacket * sizeof(Point);
  if (packets == 0 || packets * frame.pointsPerPacket > std::numeric_limits<std::int32_t>::max()) return packets == 0;
  // Eight bytes to spare keep the points aligned when the packet heads before them end on an odd word.
  frame.storage.reset(static_cast<std::byte *>(std::calloc(pointBytes + packets * 18 + 8, 1)));
  frame.packetWords.reset(static_cast<std::uint32_t *>(std::calloc(packets, sizeof(std::uint32_t))));
  if (!frame.storage || !frame.packetWords) {
    frame.storage.reset();
    frame.packetWords.reset();
    return false;
  }
  frame.packetHeads = frame.storage.get() + (packets * 12) % 8;
  frame.points = reinterpret_cast<Point *>(frame.packetHeads + packets * 12);
  frame.packetTails = frame.packetHeads + packets * 12 + pointBytes;
  frame.packetCapacity = static_cast<std::uint32_t>(packets);
  return true;
}

// The same for a caller that does not hold the frame's lock; waits for a decode in progress. Any thread. A stack that
// does not fit falls back to one frame, so that the frame stays usable; the result then is false.
template <class Point>
bool resizeDecodedFrame(LidarDecodedFrame<Point> &frame, int frames) {
  const std::lock_guard lock(frame.mutex);
  if (resizeDecodedFrameLocked(frame, frames)) return true;
  (void)resizeDecodedFrameLocked(frame, 1);
  return false;
}

}  // namespace tarvo::lidar

namespace tarvo {
using lidar::resizeDecodedFrame;
using lidar::resizeDecodedFrameLocked;
}  // namespace tarvo
