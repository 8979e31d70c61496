#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

namespace tarvo::skarnvisor {

/// The number types that a binary point file can hold; `none` is a type and width that don't go together.
enum class ScalarType { none, i8, u8, i16, u16, i32, u32, i64, u64, f32, f64 };

/// Bytes of one number.
[[nodiscard]] constexpr std::size_t scalarSize(ScalarType type) {
  constexpr std::array<std::size_t, 11> sizes = {0, 1, 1, 2, 2, 4, 4, 8, 8, 4, 8};
  return sizes[static_cast<std::size_t>(type)];
}

/// Calls `use` with a zero of the C++ type; not at all for `none`. Choosing once outside a loop keeps the loop tight.
template <typename Use>
void withScalarType(ScalarType type, Use &&use) {
  switch (type) {
    case ScalarType::none:
      return;
    case ScalarType::i8:
      return use(std::int8_t{});
    case ScalarType::u8:
      return use(std::uint8_t{});
    case ScalarType::i16:
      return use(std::int16_t{});
    case ScalarType::u16:
      return use(std::uint16_t{});
    case ScalarType::i32:
      return use(std::int32_t{});
    case ScalarType::u32:
      return use(std::uint32_t{});
    case ScalarType::i64:
      return use(std::int64_t{});
    case ScalarType::u64:
      return use(std::uint64_t{});
    case ScalarType::f32:
      return use(float{});
    case ScalarType::f64:
      return use(double{});
  }
}

/// Low 16 bits of the value without its fraction. A value that no 64-bit integer holds, NaN too, has none and gives 0.
template <typename T>
[[nodiscard]] std::uint16_t lowWord(T value) {
  if constexpr (std::is_floating_point_v<T>) {
    if (!(std::abs(value) < T(9.2e18))) return 0;
    return static_cast<std::uint16_t>(static_cast<std::int64_t>(value));
  } else {
    return static_cast<std::uint16_t>(value);
  }
}

/// Loads a number from unaligned bytes in the given byte order.
template <typename T, std::endian Order = std::endian::little>
[[nodiscard]] T loadScalar(const char *bytes) {
  T value;
  if constexpr (Order == std::endian::native) {
    std::memcpy(&value, bytes, sizeof value);
  } else {
    std::array<char, sizeof(T)> turned;
    std::reverse_copy(bytes, bytes + sizeof(T), turned.begin());
    std::memcpy(&value, turned.data(), sizeof value);
  }
  return value;
}

}  // namespace tarvo::skarnvisor
