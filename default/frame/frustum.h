#pragma once

#include <array>
#include <cmath>

namespace tarvo::skarnvisor {

/// The volume of a selection, as a projection matrix held column by column. All zeros hold nothing.
struct Frustum {
  std::array<float, 16> matrix{};

  /// True when (x, y, z, 1), as a column vector, projects to a fourth component whose magnitude
  /// exceeds those of the other three.
  [[nodiscard]] bool holds(float x, float y, float z) const noexcept {
    const auto row = [&](std::size_t r) {
      return std::fabs(matrix[r] * x + matrix[4 + r] * y + matrix[8 + r] * z + matrix[12 + r]);
    };
    const float w = row(3);
    return (w > row(0)) & (w > row(1)) & (w > row(2));
  }
};

}  // namespace tarvo::skarnvisor
