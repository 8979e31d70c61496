#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace tarvo::skarnvisor {

/// The volume of a selection, as a projection matrix held column by column. All zeros hold nothing.
struct Frustum {
  std::array<float, 16> matrix{};

  /// True when (x, y, z, 1), as a column vector, projects to a fourth component whose magnitude
  /// exceeds those of the other three.
  [[nodiscard]] bool holds(float x, float y, float z) const noexcept {
    const float w = magnitude(3, x, y, z);
    return (w > magnitude(0, x, y, z)) & (w > magnitude(1, x, y, z)) & (w > magnitude(2, x, y, z));
  }

  /// `holds` of `length` places: 1 or 0 in `inside`. The fixed length lets the compiler work on several at once.
  template <std::size_t length>
  void holdsEach(const std::array<float, length> &x, const std::array<float, length> &y,
                 const std::array<float, length> &z, std::array<std::uint8_t, length> &inside) const noexcept {
    std::array<std::uint32_t, length> holding;
    for (std::size_t i = 0; i < length; ++i) holding[i] = static_cast<std::uint32_t>(holds(x[i], y[i], z[i]));
    for (std::size_t i = 0; i < length; ++i) inside[i] = static_cast<std::uint8_t>(holding[i]);
  }

 private:
  [[nodiscard]] float magnitude(std::size_t r, float x, float y, float z) const noexcept {
    return std::fabs(matrix[r] * x + matrix[4 + r] * y + matrix[8 + r] * z + matrix[12 + r]);
  }
};

}  // namespace tarvo::skarnvisor
