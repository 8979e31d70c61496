#include "runtime/decode/decoder_registry.h"

#include <algorithm>
#include <array>

namespace tarvo::lidar {

std::span<const PacketDecoder *const> decoderRegistry() {
  static const std::array<const PacketDecoder *, 1> formats{&skarnDecoder()};
  return formats;
}

const PacketDecoder *findDecoder(const UdpDatagram &datagram) {
  const auto formats = decoderRegistry();
  const auto found = std::find_if(formats.begin(), formats.end(),
                                  [&](const PacketDecoder *format) { return format->recognises(datagram); });
  return found == formats.end() ? nullptr : *found;
}

}  // namespace tarvo::lidar
