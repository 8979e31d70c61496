#pragma once

#include <QColor>
#include <vector>

#include "app/render/color_ramp.h"
#include "app/render/vertex_bytes.h"

namespace tarvo::skarnvisor::app {

/// How the bits of a colour word are read.
enum class WordKind {
  LowHalf,   ///< attribute of the main view, bits 0 to 15
  HighHalf,  ///< attribute of the split-window view, bits 16 to 31
  Velocity,  ///< low half a velocity in m/s, high half its brightness (0 to 256), or below 0: low half is an attribute
  Rgb,       ///< 0x00RRGGBB
};

/// The part of the attribute values that the ramp is spread over.
struct ValueRange {
  float low = 0;
  float high = 1;
};

/// Velocity at either end of the diverging ramp, m/s.
inline constexpr float velocityLimit = 20.0F;
inline constexpr QRgb highlightColor = 0xffff40ff;
inline constexpr QRgb backgroundColor = 0xff101418;

/// Turns colour words into pixels. Built once a picture, read by all threads.
class WordColors {
 public:
  WordColors(WordKind kind, const ColorRamp &ramp, ValueRange range);

  /// Colour of any word but `hiddenWord`.
  QRgb at(std::uint32_t word) const {
    if (word == highlightWord) return highlightColor;
    switch (m_kind) {
      case WordKind::LowHalf:
        return m_byHalf[word & 0xffffU];
      case WordKind::HighHalf:
        return m_byHalf[word >> 16];
      case WordKind::Rgb:
        return 0xff000000U | word;
      case WordKind::Velocity:
        break;
    }
    return velocityColor(word);
  }

 private:
  QRgb velocityColor(std::uint32_t word) const;

  WordKind m_kind;
  ColorRamp m_diverging = ColorRamp::diverging();
  std::vector<QRgb> m_byHalf;
};

}  // namespace tarvo::skarnvisor::app
