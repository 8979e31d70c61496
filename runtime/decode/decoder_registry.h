#pragma once

#include <span>

#include "runtime/decode/packet_decoder.h"

namespace tarvo::lidar {

/// Every packet format that the runtime reads, in the order in which they are asked.
[[nodiscard]] std::span<const PacketDecoder *const> decoderRegistry();

/// The first format that takes the packet for its own; null for none.
[[nodiscard]] const PacketDecoder *findDecoder(const UdpDatagram &datagram);

/// Our own format, docs/capture-format.md.
[[nodiscard]] const PacketDecoder &skarnDecoder();

}  // namespace tarvo::lidar
