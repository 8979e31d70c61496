#include "app/render/word_colors.h"

#include <algorithm>
#include <cmath>

namespace tarvo::skarnvisor::app {

WordColors::WordColors(WordKind kind, const ColorRamp &ramp, ValueRange range) : m_kind(kind) {
  if (kind == WordKind::Rgb) return;
  const float span = std::max(range.high - range.low, 1e-6F);
  m_byHalf.resize(0x10000);
  for (std::uint32_t half = 0; half < m_byHalf.size(); ++half)
    m_byHalf[half] = ramp.at((halfToFloat(static_cast<std::uint16_t>(half)) - range.low) / span);
}

QRgb WordColors::velocityColor(std::uint32_t word) const {
  const float brightness = halfToFloat(static_cast<std::uint16_t>(word >> 16));
  if (brightness < 0) return m_byHalf[word & 0xffffU];
  const float velocity = halfToFloat(static_cast<std::uint16_t>(word & 0xffffU));
  const QRgb color = m_diverging.at(0.5 + 0.5 * velocity / velocityLimit);
  // A floor keeps the points of a dark surface visible.
  const float light = 0.35F + 0.65F * std::min(brightness / 256.0F, 1.0F);
  const auto scaled = [light](int channel) { return static_cast<int>(std::lround(channel * light)); };
  return qRgb(scaled(qRed(color)), scaled(qGreen(color)), scaled(qBlue(color)));
}

}  // namespace tarvo::skarnvisor::app
