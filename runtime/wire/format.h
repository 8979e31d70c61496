#pragma once

#include <optional>

#include "runtime/wire/span_reader.h"

/// Skarnvisor capture format, version 1: the common header of every UDP payload. docs/capture-format.md tells the whole
/// format.
namespace tarvo::lidar::wire {

inline constexpr std::uint32_t magicWord = 0x4E524B53;  // "SKRN" in the order of the bytes
inline constexpr std::uint8_t formatVersion = 1;
inline constexpr std::uint16_t defaultPort = 2368;

inline constexpr std::size_t payloadLimit = 1206;  // with Ethernet, IPv4 and UDP headers: a frame of 1248 bytes
inline constexpr std::size_t headerSize = 32;
inline constexpr std::size_t bodyLimit = payloadLimit - headerSize;

enum class PacketKind : std::uint8_t {
  FrameDescriptor = 1,
  Points = 2,
  Status = 3,
  Faults = 4,
  Imu = 5,
  Motion = 6,
  Overlay = 7,
  Grid = 8,
  Calibration = 9,
};

enum HeaderFlag : std::uint8_t {
  EndOfFrame = 0x01,  ///< nothing more of this frame follows
};

/// Byte offsets of the header's fields.
namespace header_offset {
inline constexpr std::size_t magic = 0;          // u32
inline constexpr std::size_t version = 4;        // u8
inline constexpr std::size_t kind = 5;           // u8
inline constexpr std::size_t sensorId = 6;       // u16
inline constexpr std::size_t sequence = 8;       // u32
inline constexpr std::size_t frame = 12;         // u32
inline constexpr std::size_t frameTimeNs = 16;   // u64
inline constexpr std::size_t timeOffsetNs = 24;  // u32
inline constexpr std::size_t bodyLength = 28;    // u16
inline constexpr std::size_t flags = 30;         // u8
inline constexpr std::size_t reserved = 31;      // u8, zero
}  // namespace header_offset

struct Header {
  PacketKind kind = PacketKind::Points;  ///< may be a value without a name: skip such a packet
  std::uint16_t sensorId = 0;
  std::uint32_t sequence = 0;      ///< one more with each packet of the sensor, whatever its kind; wraps
  std::uint32_t frame = 0;         ///< the frame that the packet belongs to
  std::uint64_t frameTimeNs = 0;   ///< start of that frame, Unix time, ns; the same in all packets of a frame
  std::uint32_t timeOffsetNs = 0;  ///< the packet's own time, from the start of the frame
  std::uint16_t bodyLength = 0;
  std::uint8_t flags = 0;

  [[nodiscard]] bool endsFrame() const noexcept { return (flags & EndOfFrame) != 0; }
};

/// The header of one UDP payload. None when the payload is not of this format and version, or when its body is longer
/// than what came. Bytes after the body are ignored.
[[nodiscard]] inline std::optional<Header> parseHeader(std::span<const std::uint8_t> payload) noexcept {
  if (payload.size() < headerSize) return std::nullopt;
  const std::uint8_t *at = payload.data();
  if (loadLittle<std::uint32_t>(at + header_offset::magic) != magicWord || at[header_offset::version] != formatVersion)
    return std::nullopt;
  Header header;
  header.kind = static_cast<PacketKind>(at[header_offset::kind]);
  header.sensorId = loadLittle<std::uint16_t>(at + header_offset::sensorId);
  header.sequence = loadLittle<std::uint32_t>(at + header_offset::sequence);
  header.frame = loadLittle<std::uint32_t>(at + header_offset::frame);
  header.frameTimeNs = loadLittle<std::uint64_t>(at + header_offset::frameTimeNs);
  header.timeOffsetNs = loadLittle<std::uint32_t>(at + header_offset::timeOffsetNs);
  header.bodyLength = loadLittle<std::uint16_t>(at + header_offset::bodyLength);
  header.flags = at[header_offset::flags];
  if (header.bodyLength > payload.size() - headerSize) return std::nullopt;
  return header;
}

/// The body of a payload whose header `parseHeader` gave.
[[nodiscard]] inline std::span<const std::uint8_t> bodyOf(std::span<const std::uint8_t> payload,
                                                          const Header &header) noexcept {
  return payload.subspan(headerSize, header.bodyLength);
}

}  // namespace tarvo::lidar::wire
