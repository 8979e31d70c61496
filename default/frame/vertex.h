#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <type_traits>

namespace tarvo::skarnvisor {

/// Colour word of a vertex that is not drawn: both halves -1.0.
inline constexpr std::uint32_t hiddenMark = 0xbc00bc00U;
/// Colour word of a vertex that is drawn in the highlight colour: both halves 2.0.
inline constexpr std::uint32_t highlightMark = 0x40004000U;

/// One point as the canvas draws it, 12 bytes, little-endian. `low` and `high` hold three 21-bit two's
/// complement coordinates in millimetres: x in bits 0 to 20, y in 21 to 41, z in 42 to 62; bit 63 is 0.
/// `color` is two half floats, an RGB word 0x00RRGGBB, or one of the marks.
struct Vertex {
  std::uint32_t low;
  std::uint32_t high;
  std::uint32_t color;

  friend bool operator==(const Vertex &, const Vertex &) = default;
};
static_assert(sizeof(Vertex) == 12 && std::is_trivially_copyable_v<Vertex>);

/// Three coordinates in millimetres.
struct MillimetrePosition {
  std::int32_t x;
  std::int32_t y;
  std::int32_t z;

  friend bool operator==(const MillimetrePosition &, const MillimetrePosition &) = default;
};

/// Metres to the nearest millimetre, halves away from zero, limited to what 21 bits hold. A value that
/// is no number gives the upper limit. Compiles to no branch, so that a loop of it is vectorised.
[[nodiscard]] inline std::int32_t millimetresFromMetres(float metres) noexcept {
  constexpr float lowest = -1048.576F;
  constexpr float highest = 1048.575F;
  const double scaled = static_cast<double>(std::max(lowest, std::min(highest, metres))) * 1000.0;
  return static_cast<std::int32_t>(scaled + std::copysign(0.5, scaled));
}

/// The vertex of a place in millimetres, each coordinate within 21 bits.
[[nodiscard]] constexpr Vertex packVertex(const MillimetrePosition &place, std::uint32_t color) noexcept {
  constexpr std::uint32_t mask = 0x1fffffU;
  const auto x = static_cast<std::uint32_t>(place.x) & mask;
  const auto y = static_cast<std::uint32_t>(place.y) & mask;
  const auto z = static_cast<std::uint32_t>(place.z) & mask;
  return {x | y << 21, y >> 11 | z << 10, color};
}

/// The vertex of a point at (x, y, z) metres.
[[nodiscard]] inline Vertex packVertex(float x, float y, float z, std::uint32_t color) noexcept {
  return packVertex({millimetresFromMetres(x), millimetresFromMetres(y), millimetresFromMetres(z)}, color);
}

/// Coordinates that a vertex holds.
[[nodiscard]] inline MillimetrePosition unpackPosition(const Vertex &vertex) noexcept {
  const std::uint64_t packed = static_cast<std::uint64_t>(vertex.high) << 32 | vertex.low;
  const auto coordinate = [packed](unsigned shift) {
    const auto raw = static_cast<std::uint32_t>(packed >> shift) << 11;
    return static_cast<std::int32_t>(raw) >> 11;
  };
  return {coordinate(0), coordinate(21), coordinate(42)};
}

/// A vertex at the origin that is not drawn: what an array of vertices starts with.
inline constexpr Vertex hiddenVertex{0, 0, hiddenMark};

}  // namespace tarvo::skarnvisor
