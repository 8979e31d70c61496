#include "app/render/vertex_bytes.h"

#include <cmath>
#include <limits>

namespace tarvo::skarnvisor::app {

float halfToFloat(std::uint16_t half) {
  const float sign = (half & 0x8000U) != 0 ? -1.0F : 1.0F;
  const int exponent = (half >> 10) & 0x1f;
  const int mantissa = half & 0x3ff;
  if (exponent == 0x1f)
    return mantissa != 0 ? std::numeric_limits<float>::quiet_NaN() : sign * std::numeric_limits<float>::infinity();
  if (exponent == 0) return sign * std::ldexp(static_cast<float>(mantissa), -24);
  return sign * std::ldexp(static_cast<float>(mantissa | 0x400), exponent - 25);
}

std::size_t VertexCloud::size() const {
  std::size_t total = 0;
  for (const QByteArray &canvas : m_canvases) total += static_cast<std::size_t>(canvas.size()) / vertexStride;
  return total;
}

}  // namespace tarvo::skarnvisor::app
