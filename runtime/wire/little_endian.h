#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace tarvo::lidar::wire {

/// Reads a little-endian scalar from `bytes`; the caller vouches for sizeof(T) readable bytes there. No alignment is
/// needed.
template <typename T>
[[nodiscard]] inline T loadLittle(const std::uint8_t *bytes) noexcept {
  static_assert(std::is_arithmetic_v<T>);
  if constexpr (std::endian::native == std::endian::little) {
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
  } else {
    std::array<std::uint8_t, sizeof(T)> swapped;
    std::reverse_copy(bytes, bytes + sizeof(T), swapped.begin());
    return std::bit_cast<T>(swapped);
  }
}

/// Writes a scalar in little-endian order to `bytes`; the caller vouches for sizeof(T) writable bytes there.
template <typename T>
inline void storeLittle(std::uint8_t *bytes, T value) noexcept {
  static_assert(std::is_arithmetic_v<T>);
  std::memcpy(bytes, &value, sizeof value);
  if constexpr (std::endian::native != std::endian::little) std::reverse(bytes, bytes + sizeof(T));
}

}  // namespace tarvo::lidar::wire
