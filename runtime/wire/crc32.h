#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace tarvo::lidar::wire {

namespace detail {
[[nodiscard]] constexpr std::array<std::uint32_t, 256> makeCrcTable() noexcept {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t i = 0; i < 256; ++i) {
    std::uint32_t value = i;
    for (int bit = 0; bit < 8; ++bit) value = (value & 1u) != 0 ? 0xEDB88320u ^ (value >> 1) : value >> 1;
    table[i] = value;
  }
  return table;
}
inline constexpr std::array<std::uint32_t, 256> crcTable = makeCrcTable();
}  // namespace detail

/// CRC-32 as IEEE 802.3 defines it: reflected polynomial 0xEDB88320, start and final value 0xFFFFFFFF.
[[nodiscard]] constexpr std::uint32_t crc32(std::span<const std::uint8_t> bytes) noexcept {
  std::uint32_t value = 0xFFFFFFFFu;
  for (const std::uint8_t byte : bytes) value = detail::crcTable[(value ^ byte) & 0xFFu] ^ (value >> 8);
  return ~value;
}

}  // namespace tarvo::lidar::wire
