#pragma once

#include <optional>
#include <span>

#include "runtime/decode/packet_decoder.h"
#include "runtime/wire/format.h"

namespace tarvo::lidar {

/// More points in one frame than this are taken for damage.
inline constexpr std::uint64_t framePointLimit = 8u << 20;

/// The description in a packet of kind FrameDescriptor; none when it is damaged or describes a frame without or with
/// too many points.
[[nodiscard]] std::optional<StreamDescription> readDescription(std::span<const std::uint8_t> body);

}  // namespace tarvo::lidar
