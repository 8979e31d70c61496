// The packet decoder as a whole: the input is a row of packets, each with two bytes of length in front; they are put in
// their places by the walker, and every frame that comes of it is decoded.

#include <memory>
#include <vector>

#include "contracts/runtime/point_info.h"
#include "runtime/decode/channel_table.h"
#include "runtime/decode/decoder_registry.h"
#include "runtime/wire/format.h"

using namespace tarvo::lidar;

namespace {

constexpr std::uint64_t pointLimit = 1u << 20;

void decode(FrameDecoder &decoder, const FramePackets &packets, const StreamDescription &known) {
  const auto head = decoder.prepare(packets, known);
  if (!head || head->shape->framePoints() > pointLimit) return;
  ChannelTable channels;
  CalibrationStore store;
  ChannelTableInput input;
  const auto calibration = store.snapshot();
  input.calibration = calibration.get();
  input.store = &store;
  channels.build(*head->shape, head->number, input);
  PointSettings settings;
  settings.channels = &channels;
  std::vector<SDKPointInfo> slots(head->shape->framePoints());
  decoder.decodeColumns(settings, 0, head->shape->columns, slots.data());
  DecodedParts parts;
  decoder.decodeParts(parts);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const auto walker = skarnDecoder().makeWalker();
  const auto decoder = skarnDecoder().makeFrameDecoder();
  FramePackets packets;
  std::span<const std::uint8_t> rest(data, size);
  std::int64_t time = 0;
  while (rest.size() >= 2) {
    const std::size_t length = std::min<std::size_t>(rest[0] | rest[1] << 8, rest.size() - 2);
    UdpDatagram datagram;
    datagram.payload = rest.subspan(2, length);
    datagram.timeNs = time += 1'000'000;
    rest = rest.subspan(2 + length);
    const PacketPlace where = walker->place(datagram);
    while (walker->takeCalibration()) {
    }
    const StreamDescription *known = walker->description();
    if (where.kind == PacketPlace::Kind::Next) {
      if (known != nullptr) decode(*decoder, packets, *known);
      packets.clear();
    }
    packets.add(datagram.payload);
  }
  if (const StreamDescription *known = walker->description()) decode(*decoder, packets, *known);
  return 0;
}
