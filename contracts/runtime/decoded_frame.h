#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <vector>

namespace tarvo::lidar {

struct FreeDeleter {
  void operator()(void *block) const noexcept { std::free(block); }
};

// The runtime's single current frame. The decoder fills it, the plug-in resizes it and writes a few request bytes; both
// hold `mutex` for that. Families read their own fields by name; the offsets are fixed on x86-64 with libstdc++.
//
// `points` after a resize: packetCapacity x pointsPerPacket empty records inside `storage`, see decoded_frame_resize.h.
// After a decode: the pointCount records that the source holds, for as long as it does; who reads them holds the
// source's frameLock too. Null while a decode is writing them.
template <class Point>
struct LidarDecodedFrame {
  std::uint64_t sequence = 0;  // id of the (last) frame held
  std::uint32_t packetCapacity = 0;
  std::uint32_t pointsPerPacket = 0;
  std::uint32_t packetCount = 0;
  std::uint32_t framesMerged = 1;
  std::array<std::byte, 3> reserved24{};
  std::uint8_t selectedEcho = 0;  // 0: any
  std::array<std::byte, 4> reserved28{};
  mutable std::mutex mutex;  // guards every member of the frame
  std::array<std::byte, 1324> reserved72{};
  std::uint8_t returnMode = 0;
  std::array<std::byte, 23> reserved1397{};
  std::uint32_t pointCount = 0;
  double fmcwTime = 0.0;      // carried over from the source for a repeated post-process
  double frameSeconds = 0.0;  // FMCW: time of the frame, seconds
  std::array<std::byte, 82> reserved1440{};
  std::uint16_t laserCount = 0;
  std::uint16_t channelCount = 0;  // 0: use laserCount
  std::array<std::byte, 10> reserved1526{};
  std::unique_ptr<std::byte[], FreeDeleter> storage;
  std::byte *packetHeads = nullptr;                           // 12 bytes a packet, inside storage
  Point *points = nullptr;
  std::byte *packetTails = nullptr;                           // 6 bytes a packet, inside storage
  std::unique_ptr<std::uint32_t[], FreeDeleter> packetWords;  // one word a packet
  std::array<std::byte, 96> reserved1576{};
  std::uint8_t popoutRefresh = 0;     // 1: the next decode takes up the pop-out or off-line filter
  std::uint8_t smoothingRefresh = 0;  // 1: the next decode takes up the smoothing kernel
  std::array<std::byte, 32> reserved1674{};
  std::uint16_t packetsPerFrame = 0;
  // Device-status block, little-endian: present, variant, u32 cells a group, 3 groups of 256 cells of 3 bytes.
  std::array<std::uint8_t, 2310> deviceStatus{};
  std::array<std::byte, 6> reserved4018{};
  double motorSpeed = 0.0;  // revolutions a minute
  std::array<std::byte, 4> reserved4032{};
  std::uint16_t gridRows = 0;
  std::uint16_t gridColumns = 0;
  float vehicleSpeed = 0.0F;      // m/s
  float vehicleAzimuth = 0.0F;    // radians
  float vehicleElevation = 0.0F;  // radians
  std::array<std::byte, 4> reserved4052{};
  std::uint32_t fmcwParam0 = 0;
  std::array<std::byte, 4> reserved4060{};
  std::array<double, 3> fmcwParams{};
  std::vector<std::int32_t> dirtyValues;  // last entry: the overall value
  // From here on the runtime's own.
  double timestampSeconds = 0.0;
  std::int32_t firstFrameId = -1;
  std::int32_t rgbMode = 0;
  std::vector<Point> overlayPoints;  // row-major, overlayRows x overlayColumns
  std::int32_t overlayColumns = 0;
  std::int32_t overlayRows = 0;
};

}  // namespace tarvo::lidar

namespace tarvo {
using lidar::LidarDecodedFrame;
}
