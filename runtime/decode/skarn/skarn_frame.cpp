#include "runtime/decode/skarn/skarn_frame.h"

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <numbers>

#include "runtime/decode/channel_table.h"
#include "runtime/decode/skarn/skarn_description.h"
#include "runtime/decode/skarn/skarn_records.h"

namespace tarvo::lidar {

namespace {

constexpr double radiansPerDegree = std::numbers::pi / 180.0;
constexpr double secondsPerNs = 1e-9;
constexpr double metresPerUm = 1e-6;
constexpr float fullTurn = 360.0F;

/// What all records of a block share.
struct BlockPlace {
  double startSeconds;
  float sine;  // of the column's azimuth
  float cosine;
  float azimuthDeg;
  float unitMetres;
  std::uint32_t timeNs;
  bool turning;
};

float wrapped(float degrees, bool turning) {
  if (!turning) return degrees;
  if (degrees >= fullTurn) return degrees - fullTurn;
  return degrees < 0 ? degrees + fullTurn : degrees;
}

/// Eight bytes of a point, the lowest at offset `at`.
void storeWord(SDKPointInfo *to, std::size_t at, std::uint64_t word) {
  std::memcpy(reinterpret_cast<std::byte *>(to) + at, &word, sizeof word);
}
static_assert(offsetof(SDKPointInfo, channel) == offsetof(SDKPointInfo, z) + 4 &&
              offsetof(SDKPointInfo, intensity) == offsetof(SDKPointInfo, z) + 6);
static_assert(offsetof(SDKPointInfo, relVelocity) == offsetof(SDKPointInfo, confidence) + 8);

/// The base part of `count` records, from channel `firstChannel` on. The hot loop: no branch but for missing returns.
void decodeRecords(const std::uint8_t *record, std::size_t stride, unsigned count, unsigned firstChannel,
                   const BlockPlace &place, const ChannelEntry *channels, SDKPointInfo *to) {
  for (unsigned i = 0; i < count; ++i, record += stride, ++to) {
    const ChannelEntry &channel = channels[i];
    const auto raw = wire::loadLittle<std::uint16_t>(record + wire::record_offset::distance);
    const float distance = raw == 0 ? 0.0F : static_cast<float>(raw) * place.unitMetres + channel.distanceOffset;
    const bool visible = distance > 0 && channel.shown;
    const float metres = distance > 0 ? distance : 0.0F;
    const std::uint32_t timeNs = place.timeNs + channel.delayNs;
    // A shot without a return has no place to be drawn at: its slot stays empty for the views.
    const std::uint64_t shownChannel = visible ? firstChannel + i : 0;
    const float z = metres * channel.upward;
    // Straight into its place, every byte of it: a point put together beside it and then moved costs three times as
    // much.
    to->timestamp = place.startSeconds + timeNs * secondsPerNs;
    to->timeNs = timeNs;
    to->azimuth = place.azimuthDeg;
    to->azimuthCalib = wrapped(place.azimuthDeg + channel.azimuthOffsetDeg, place.turning);
    to->elevation = channel.elevationDeg;
    to->elevationCalib = channel.elevationCalibDeg;
    to->distance = metres;
    to->x = metres * (place.sine * channel.alongCos + place.cosine * channel.alongSin);
    to->y = metres * (place.cosine * channel.alongCos - place.sine * channel.alongSin);
    storeWord(to, offsetof(SDKPointInfo, z),
              std::bit_cast<std::uint32_t>(z) | shownChannel << 32 |
                  std::uint64_t{record[wire::record_offset::intensity]} << 48);
    storeWord(to, offsetof(SDKPointInfo, confidence), record[wire::record_offset::confidence]);
    for (std::size_t at = offsetof(SDKPointInfo, relVelocity); at < sizeof *to; at += 8) storeWord(to, at, 0);
  }
}

}  // namespace

std::optional<FrameHead> SkarnFrameDecoder::prepare(const FramePackets &packets, const StreamDescription &known) {
  shape_ = known;
  returnMode_ = 0;
  damaged_ = 0;
  points_.clear();
  sides_.clear();
  head_ = {};
  for (std::size_t i = 0; i < packets.size(); ++i) {
    const auto payload = packets.payload(i);
    const auto header = wire::parseHeader(payload);
    if (!header) continue;
    head_.number = header->frame;
    head_.startNs = static_cast<std::int64_t>(header->frameTimeNs);
    const auto body = wire::bodyOf(payload, *header);
    if (header->kind == wire::PacketKind::Points) {
      const auto head = wire::parsePointsHead(body);
      if (!head) {
        ++damaged_;
        continue;
      }
      returnMode_ = head->returnMode;
      points_.push_back({body.data() + wire::pointsHeadSize, *head});
    } else if (header->kind == wire::PacketKind::FrameDescriptor) {
      if (auto told = readDescription(body))
        shape_ = std::move(*told);
      else
        ++damaged_;
    } else {
      sides_.push_back({header->kind, body});
    }
  }
  if (shape_.framePoints() == 0) return std::nullopt;
  head_.shape = &shape_;
  return head_;
}

bool SkarnFrameDecoder::holds(const wire::BlockHead &block) const {
  return block.column < shape_.columns && block.returnNumber >= 1 && block.returnNumber <= shape_.echoes &&
         block.firstChannel >= 1 && unsigned{block.firstChannel} + block.recordCount <= unsigned{shape_.channels} + 1;
}

bool SkarnFrameDecoder::takes(const PointSettings &settings, const wire::BlockHead &block, unsigned firstColumn,
                              unsigned endColumn) const {
  return block.column >= firstColumn && block.column < endColumn && holds(block) &&
         (settings.echo == 0 || settings.echo == block.returnNumber);
}

/// Empties the columns that no packet fills from the first channel to the last, which is what loss leaves.
void SkarnFrameDecoder::clearGaps(const PointSettings &settings, unsigned firstColumn, unsigned endColumn,
                                  SDKPointInfo *slots) const {
  constexpr std::uint32_t ragged = 0xFFFF'FFFF;
  std::vector<std::uint32_t> filled((endColumn - firstColumn) * std::size_t{shape_.echoes});
  for (const PointPacket &packet : points_)
    for (unsigned i = 0; i < packet.head.blockCount; ++i) {
      const wire::BlockHead block = wire::loadBlockHead(packet.blocks + i * packet.head.blockSize(), packet.head);
      if (!takes(settings, block, firstColumn, endColumn)) continue;
      std::uint32_t &count = filled[(block.column - firstColumn) * std::size_t{shape_.echoes} + block.returnNumber - 1];
      count = count == block.firstChannel - 1U ? count + block.recordCount : ragged;
    }
  SDKPointInfo *run = slots + std::size_t{firstColumn} * shape_.echoes * shape_.channels;
  for (std::size_t i = 0; i < filled.size(); ++i, run += shape_.channels)
    if (filled[i] != shape_.channels) std::memset(static_cast<void *>(run), 0, shape_.channels * sizeof(SDKPointInfo));
}

void SkarnFrameDecoder::decodeColumns(const PointSettings &settings, unsigned firstColumn, unsigned endColumn,
                                      SDKPointInfo *slots) const {
  clearGaps(settings, firstColumn, endColumn, slots);
  const double startSeconds = static_cast<double>(head_.startNs) * secondsPerNs;
  RecordParts parts;
  for (const PointPacket &packet : points_) {
    parts.select(packet.head.partMask);
    const auto unitMetres = static_cast<float>(packet.head.distanceUnitUm * metresPerUm);
    for (unsigned i = 0; i < packet.head.blockCount; ++i) {
      const std::uint8_t *bytes = packet.blocks + i * packet.head.blockSize();
      const wire::BlockHead block = wire::loadBlockHead(bytes, packet.head);
      if (!takes(settings, block, firstColumn, endColumn)) continue;
      const double azimuthDeg = block.azimuthMicroDeg * wire::azimuthUnitDeg;
      const BlockPlace place{startSeconds,
                             static_cast<float>(std::sin(azimuthDeg * radiansPerDegree)),
                             static_cast<float>(std::cos(azimuthDeg * radiansPerDegree)),
                             static_cast<float>(azimuthDeg),
                             unitMetres,
                             block.timeOffsetNs,
                             settings.channels->turning};
      const std::size_t slot = (std::size_t{block.column} * shape_.echoes + block.returnNumber - 1U) * shape_.channels +
                               block.firstChannel - 1U;
      const std::uint8_t *records = bytes + wire::blockHeadSize;
      decodeRecords(records, packet.head.recordSize, block.recordCount, block.firstChannel, place,
                    settings.channels->entries.data() + block.firstChannel - 1, slots + slot);
      parts.decode(records, packet.head.recordSize, block.recordCount, slots + slot);
      if (settings.intensityMap != nullptr)
        for (unsigned r = 0; r < block.recordCount; ++r)
          slots[slot + r].intensity = (*settings.intensityMap)[slots[slot + r].intensity];
    }
  }
}

}  // namespace tarvo::lidar
