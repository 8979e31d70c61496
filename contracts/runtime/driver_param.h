#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace tarvo::lidar {

enum class SourceKind : std::int32_t { Live = 0, CaptureFile = 6 };

// What a runtime is started with. Filled before SvSdkRuntime::Init and read only by it; a binary record between the
// host, the plug-in and the runtime, so the offsets below are fixed on x86-64 with libstdc++.
struct DriverParam {
  std::array<std::byte, 4> reserved0{};
  std::int32_t sourceKind = 0;  // SourceKind; any value but CaptureFile is a live source
  bool fastTuning = false;
  std::array<std::byte, 3> reserved9{};
  std::int32_t sensorPort = 0;            // data port of one sensor of a capture that holds several; 0: the first found
  std::uint32_t liveRingFrames = 0;       // decoded frames that a live source keeps; 0: the runtime's default
  std::uint32_t receiveBufferBytes = 0;   // receive buffer asked of the socket; 0: the runtime's default
  std::array<char, 48> multicastGroup{};  // zero-terminated IP address; empty: none
  std::array<char, 48> bindAddress{};     // zero-terminated IP address; empty: every interface
  std::array<std::byte, 36> reserved120{};
  std::uint16_t liveUdpPort = 0;
  std::array<std::byte, 90> reserved158{};
  std::string capturePath;  // local 8-bit code page
  std::array<std::byte, 224> reserved280{};
  std::int32_t tuningSelector = 0;
  std::array<std::byte, 4> reserved508{};
  float tuningA = 0.0F;
  float tuningB = 0.0F;
  bool preParse = false;
  std::array<std::byte, 640> reserved521{};
  bool flag1161 = false;
  std::array<std::byte, 566> reserved1162{};
};

static_assert(sizeof(DriverParam) == 1728);
static_assert(offsetof(DriverParam, sourceKind) == 4);
static_assert(offsetof(DriverParam, fastTuning) == 8);
static_assert(offsetof(DriverParam, liveUdpPort) == 156);
static_assert(offsetof(DriverParam, capturePath) == 248);
static_assert(offsetof(DriverParam, tuningSelector) == 504);
static_assert(offsetof(DriverParam, tuningA) == 512);
static_assert(offsetof(DriverParam, tuningB) == 516);
static_assert(offsetof(DriverParam, preParse) == 520);
static_assert(offsetof(DriverParam, flag1161) == 1161);

}  // namespace tarvo::lidar

namespace tarvo {
using lidar::DriverParam;
using lidar::SourceKind;
}  // namespace tarvo
