#pragma once

#include <limits>

#include "runtime/wire/format.h"

/// Body of a Points packet: a head, then blocks of equal size, each with records of equal size.
namespace tarvo::lidar::wire {

/// Optional parts of a point record. A part is present when its bit is set in the frame's field mask; present parts
/// follow the base record in the order of their bits.
enum class PointPart : std::uint8_t {
  Colour = 0,      ///< red, green, blue: 3 x u16
  Attribute0 = 1,  ///< five family attribute bytes, one u8 each
  Attribute1 = 2,
  Attribute2 = 3,
  Attribute3 = 4,
  Attribute4 = 5,
  Area = 6,               ///< u16
  RawArea = 7,            ///< u16
  Peak = 8,               ///< u8
  AlternateArea = 9,      ///< area u8, raw area u8, peak u8 of the alternate layout
  CentreDifference = 10,  ///< f32, front-centre distance difference of the alternate layout
  FrontDifference = 11,   ///< f32, front distance difference of the alternate layout
  StepId = 12,            ///< u16
  SpadId = 13,            ///< u8, bit 0: long focus
  RelativeVelocity = 14,  ///< f32, m/s, positive away from the lidar
  SpikeValues = 15,       ///< 2 x f32
  AngleId = 16,           ///< i32
  GridPoint = 17,         ///< column u16, background u16, confidence u16
  ConfidenceHigh = 18,    ///< u8, bits 8 to 15 of the confidence word
  WideIntensity = 19,     ///< u16, takes the place of the base record's intensity
};

/// Wire bytes of each part, by bit.
inline constexpr std::array<std::uint8_t, 20> pointPartSizes{6, 1, 1, 1, 1, 1, 2, 2, 1, 3,
                                                             4, 4, 2, 1, 4, 8, 4, 6, 1, 2};

inline constexpr std::uint32_t knownParts = (1u << pointPartSizes.size()) - 1u;

[[nodiscard]] constexpr std::uint32_t bitOf(PointPart part) noexcept { return 1u << static_cast<unsigned>(part); }
[[nodiscard]] constexpr bool hasPart(std::uint32_t mask, PointPart part) noexcept { return (mask & bitOf(part)) != 0; }

/// Base record, always present.
namespace record_offset {
inline constexpr std::size_t distance = 0;    // u16, in the frame's distance unit; 0: no return
inline constexpr std::size_t intensity = 2;   // u8
inline constexpr std::size_t confidence = 3;  // u8, low byte of the confidence word
}  // namespace record_offset
inline constexpr std::size_t baseRecordSize = 4;

/// Bytes of one record under `mask`; bits without a known part add nothing (a decoder refuses such masks).
[[nodiscard]] constexpr std::size_t recordSizeOf(std::uint32_t mask) noexcept {
  std::size_t size = baseRecordSize;
  for (std::size_t bit = 0; bit < pointPartSizes.size(); ++bit)
    size += (mask >> bit & 1u) != 0 ? pointPartSizes[bit] : 0u;
  return size;
}

/// Offset of `part` inside a record under `mask`, whether or not its own bit is set.
[[nodiscard]] constexpr std::size_t partOffset(std::uint32_t mask, PointPart part) noexcept {
  return recordSizeOf(mask & (bitOf(part) - 1u));
}

inline constexpr std::size_t pointsHeadSize = 16;
inline constexpr std::size_t blockHeadSize = 16;
inline constexpr std::size_t pointsRoom = bodyLimit - pointsHeadSize;
inline constexpr double azimuthUnitDeg = 1e-6;

/// Head of a Points body: what is needed to walk it without the frame descriptor.
struct PointsHead {
  std::uint32_t partMask = 0;         // offset 0
  std::uint16_t recordsPerBlock = 0;  // offset 4
  std::uint16_t blockCount = 0;       // offset 6
  std::uint16_t distanceUnitUm = 0;   // offset 8, micrometres
  std::uint16_t packetOfFrame = 0;    // offset 10, 0 for the first Points packet of the frame
  std::uint8_t recordSize = 0;        // offset 12
  std::uint8_t returnMode = 0;        // offset 13
                                      // offset 14, 2 reserved bytes

  [[nodiscard]] std::size_t blockSize() const noexcept {
    return blockHeadSize + std::size_t{recordsPerBlock} * recordSize;
  }
};

/// Head of a block: the records of one column and one return, from channel `firstChannel` on.
struct BlockHead {
  std::int32_t azimuthMicroDeg = 0;  // offset 0, 0 is the y axis, growing clockwise from above
  std::uint32_t timeOffsetNs = 0;    // offset 4, from the start of the frame
  std::uint16_t column = 0;          // offset 8, from 0
  std::uint16_t firstChannel = 0;    // offset 10, from 1
  std::uint16_t recordCount = 0;     // offset 12, at most recordsPerBlock; the rest of the block is padding
  std::uint8_t returnNumber = 0;     // offset 14, from 1
                                     // offset 15, 1 reserved byte
};

/// Reads and checks the head of a Points body: known parts only, a record size that fits the mask, at least one record
/// a block, and blocks that lie inside the body. After that, block i of the body starts at pointsHeadSize + i *
/// blockSize().
[[nodiscard]] inline std::optional<PointsHead> parsePointsHead(std::span<const std::uint8_t> body) noexcept {
  if (body.size() < pointsHeadSize) return std::nullopt;
  const std::uint8_t *at = body.data();
  PointsHead head;
  head.partMask = loadLittle<std::uint32_t>(at);
  head.recordsPerBlock = loadLittle<std::uint16_t>(at + 4);
  head.blockCount = loadLittle<std::uint16_t>(at + 6);
  head.distanceUnitUm = loadLittle<std::uint16_t>(at + 8);
  head.packetOfFrame = loadLittle<std::uint16_t>(at + 10);
  head.recordSize = at[12];
  head.returnMode = at[13];
  if ((head.partMask & ~knownParts) != 0 || head.recordSize != recordSizeOf(head.partMask) ||
      head.recordsPerBlock == 0 || head.blockCount > (body.size() - pointsHeadSize) / head.blockSize())
    return std::nullopt;
  return head;
}

/// `block` points to a block that `parsePointsHead` has shown to lie inside the body. The record count is limited to
/// the head's and to what leaves every channel number inside u16; a first channel of 0 gives no records.
[[nodiscard]] inline BlockHead loadBlockHead(const std::uint8_t *block, const PointsHead &head) noexcept {
  BlockHead out;
  out.azimuthMicroDeg = loadLittle<std::int32_t>(block);
  out.timeOffsetNs = loadLittle<std::uint32_t>(block + 4);
  out.column = loadLittle<std::uint16_t>(block + 8);
  out.firstChannel = loadLittle<std::uint16_t>(block + 10);
  const unsigned channelRoom =
      out.firstChannel == 0 ? 0u : std::numeric_limits<std::uint16_t>::max() - unsigned{out.firstChannel} + 1u;
  const unsigned stored = std::min(unsigned{loadLittle<std::uint16_t>(block + 12)}, unsigned{head.recordsPerBlock});
  out.recordCount = static_cast<std::uint16_t>(std::min(stored, channelRoom));
  out.returnNumber = block[14];
  return out;
}

inline void storePointsHead(std::span<std::uint8_t, pointsHeadSize> to, const PointsHead &head) noexcept {
  std::uint8_t *at = to.data();
  storeLittle(at, head.partMask);
  storeLittle(at + 4, head.recordsPerBlock);
  storeLittle(at + 6, head.blockCount);
  storeLittle(at + 8, head.distanceUnitUm);
  storeLittle(at + 10, head.packetOfFrame);
  at[12] = head.recordSize;
  at[13] = head.returnMode;
  storeLittle(at + 14, std::uint16_t{0});
}

inline void storeBlockHead(std::span<std::uint8_t, blockHeadSize> to, const BlockHead &head) noexcept {
  std::uint8_t *at = to.data();
  storeLittle(at, head.azimuthMicroDeg);
  storeLittle(at + 4, head.timeOffsetNs);
  storeLittle(at + 8, head.column);
  storeLittle(at + 10, head.firstChannel);
  storeLittle(at + 12, head.recordCount);
  at[14] = head.returnNumber;
  at[15] = 0;
}

/// How an encoder cuts the columns of a frame: records of one block, blocks of one packet, blocks of one column and
/// return.
struct BlockPlan {
  std::uint16_t recordsPerBlock = 0;
  std::uint16_t blocksPerPacket = 0;
  std::uint16_t blocksPerColumn = 0;
};

/// The plan that fills packets best for `channels` (at least 1) records of `recordSize` bytes (`recordSizeOf`): as few
/// blocks as a column needs, of equal size.
[[nodiscard]] constexpr BlockPlan planBlocks(std::uint16_t channels, std::size_t recordSize) noexcept {
  const std::size_t most = (pointsRoom - blockHeadSize) / recordSize;
  const std::size_t pieces = (channels + most - 1) / most;
  const std::size_t records = (channels + pieces - 1) / pieces;
  return {static_cast<std::uint16_t>(records),
          static_cast<std::uint16_t>(pointsRoom / (blockHeadSize + records * recordSize)),
          static_cast<std::uint16_t>(pieces)};
}

}  // namespace tarvo::lidar::wire
