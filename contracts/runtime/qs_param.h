#pragma once

#include <cstddef>
#include <cstdint>

namespace tarvo::lidar {

// Drag point filter of the QS family, at offset 264 of FrameDecodeParam.
struct DragPointFilterParam {
  bool enabled = false;
  std::byte reserved1[3]{};
  float values[4]{};
};
static_assert(sizeof(DragPointFilterParam) == 20);
static_assert(offsetof(DragPointFilterParam, values) == 268 - 264);

// Retro filter of the QS family, at offset 1312 of FrameDecodeParam; also the form of a parameter group.
struct RetroFilterParam {
  static constexpr std::uint32_t filterOrHighlightBit = 1U << 4;
  std::uint32_t mode = 0;
  std::int32_t ints[2]{};
  float scaled[3]{};  // shown times 100
  float plain[2]{};
  std::uint32_t changed = 0;  // first byte 1: the decoder takes the new values; a group's trailer
};
static_assert(sizeof(RetroFilterParam) == 36);
static_assert(offsetof(RetroFilterParam, ints) == 1316 - 1312);
static_assert(offsetof(RetroFilterParam, scaled) == 1324 - 1312);
static_assert(offsetof(RetroFilterParam, plain) == 1336 - 1312);
static_assert(offsetof(RetroFilterParam, changed) == 1344 - 1312);

// Dirt diagnostic of the QS family, at offset 1360 of FrameDecodeParam.
struct DirtDiagnosticParam {
  bool enabled = false;
  std::byte reserved1[3]{};
  float values[2]{};
  std::byte reserved12{};
  bool changed = false;
  std::byte reserved14[2]{};
};
static_assert(sizeof(DirtDiagnosticParam) == 16);
static_assert(offsetof(DirtDiagnosticParam, values) == 1364 - 1360);
static_assert(offsetof(DirtDiagnosticParam, changed) == 1373 - 1360);

}  // namespace tarvo::lidar

namespace tarvo {
using lidar::RetroFilterParam;
}
