#pragma once

#include "runtime/wire/format.h"

namespace tarvo::lidar::wire {

/// Builds one UDP payload in place. A write that does not fit is refused and leaves the packet as it was.
class PacketWriter {
 public:
  /// Starts a new packet; `header.bodyLength` is filled by `finish()`.
  void begin(const Header &header) noexcept {
    header_ = header;
    size_ = headerSize;
  }

  template <typename T>
  bool put(T value) noexcept {
    if (room() < sizeof(T)) return false;
    storeLittle(bytes_.data() + size_, value);
    size_ += sizeof(T);
    return true;
  }

  bool putBytes(std::span<const std::uint8_t> bytes) noexcept {
    if (room() < bytes.size()) return false;
    std::copy(bytes.begin(), bytes.end(), bytes_.begin() + static_cast<std::ptrdiff_t>(size_));
    size_ += bytes.size();
    return true;
  }

  /// Appends `count` zero bytes and returns where they lie; empty when they do not fit.
  [[nodiscard]] std::span<std::uint8_t> claim(std::size_t count) noexcept {
    if (room() < count) return {};
    const std::span<std::uint8_t> part(bytes_.data() + size_, count);
    std::fill(part.begin(), part.end(), std::uint8_t{0});
    size_ += count;
    return part;
  }

  [[nodiscard]] std::size_t room() const noexcept { return bytes_.size() - size_; }
  [[nodiscard]] std::size_t bodySize() const noexcept { return size_ - headerSize; }

  void addFlags(std::uint8_t flags) noexcept { header_.flags = static_cast<std::uint8_t>(header_.flags | flags); }

  /// Writes the header and gives the whole payload, valid until the next `begin()`.
  [[nodiscard]] std::span<const std::uint8_t> finish() noexcept {
    std::uint8_t *at = bytes_.data();
    storeLittle(at + header_offset::magic, magicWord);
    at[header_offset::version] = formatVersion;
    at[header_offset::kind] = static_cast<std::uint8_t>(header_.kind);
    storeLittle(at + header_offset::sensorId, header_.sensorId);
    storeLittle(at + header_offset::sequence, header_.sequence);
    storeLittle(at + header_offset::frame, header_.frame);
    storeLittle(at + header_offset::frameTimeNs, header_.frameTimeNs);
    storeLittle(at + header_offset::timeOffsetNs, header_.timeOffsetNs);
    storeLittle(at + header_offset::bodyLength, static_cast<std::uint16_t>(bodySize()));
    at[header_offset::flags] = header_.flags;
    at[header_offset::reserved] = 0;
    return {bytes_.data(), size_};
  }

 private:
  Header header_;
  std::array<std::uint8_t, payloadLimit> bytes_{};
  std::size_t size_ = headerSize;
};

}  // namespace tarvo::lidar::wire
