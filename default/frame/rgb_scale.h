#pragma once

#include <cmath>
#include <cstdint>
#include <span>

#include "contracts/runtime/point_info.h"

namespace tarvo::skarnvisor {

/// Outcome of writing a limit: refused with nothing changed; too small a change to act on; stored.
enum class LimitChange { Refused, Unchanged, Stored };

/// Limits closer than this count as the same.
inline constexpr float smallestLimitChange = 0.5F;

/// From raw camera values to 0 to 255.
struct FocusScale {
  float min = 0.0F;
  float max = 256.0F;
  float range = 256.0F;  ///< kept beside the limits: 0 or less gives black between them
  bool autoScale = false;

  /// Limits as the user sets them; a stored limit switches the automatic scale off. `setMin` refuses a
  /// value not below `max`, `setMax` one not above `min`.
  LimitChange setMin(float value);
  LimitChange setMax(float value);

  friend bool operator==(const FocusScale &, const FocusScale &) = default;
};

/// Colour scale of a lidar with a camera: a plain value. Lidars with two focal lengths scale the points
/// of each on their own, and bit 0 of the SPAD id says which a point is.
struct RgbScale {
  FocusScale shortFocus;
  FocusScale longFocus{0.0F, 32.0F, 32.0F, false};
  bool rgbDualFocusScaleFlag = false;
  float rgbAutoScaleLowPercent = 1.0F;
  float rgbAutoScaleHighPercent = 99.0F;

  /// True when `autoScale` would work a scale out.
  [[nodiscard]] bool autoScaleOn() const noexcept {
    return shortFocus.autoScale || (rgbDualFocusScaleFlag && longFocus.autoScale);
  }

  /// The low percentage lies in [0, high), the high one in (low, 100].
  LimitChange setLowPercent(float percent);
  LimitChange setHighPercent(float percent);

  [[nodiscard]] const FocusScale &scaleOf(const lidar::SDKPointInfo &point) const noexcept {
    return rgbDualFocusScaleFlag && (point.spadId & 1U) != 0 ? longFocus : shortFocus;
  }

  friend bool operator==(const RgbScale &, const RgbScale &) = default;
};

/// Colour word 0x00RRGGBB of a point: per channel 0 at or below `min`, 255 at or above `max`, else
/// (value - min) / range * 255, rounded.
[[nodiscard]] std::uint32_t rgbWord(const RgbScale &scale, const lidar::SDKPointInfo &point) noexcept;

/// Colour words of a run of points; `words` is at least as long as `points`.
void rgbWords(const RgbScale &scale, std::span<const lidar::SDKPointInfo> points,
              std::span<std::uint32_t> words) noexcept;

/// The same with 255 / range worked out once: words may differ by one step from those of `rgbWords`.
void rgbWordsFast(const RgbScale &scale, std::span<const lidar::SDKPointInfo> points,
                  std::span<std::uint32_t> words) noexcept;

/// Works out the scales that are switched to automatic from the low and high percentage of the red,
/// green and blue values of all points with a channel, and stores them. True when a limit moved by more
/// than `smallestLimitChange`. With fewer than two values, or percentages out of order, a scale stays.
bool autoScale(RgbScale &scale, std::span<const lidar::SDKPointInfo> points);

/// What decides between RGB words and attribute words.
struct RgbModeQuestion {
  bool rgbType = false;  ///< the lidar has a camera
  bool hasSource = false;
  int rgbMode = 0;                          ///< of the frame; 0 is a point cloud
  bool attributesInPointCloudMode = false;  ///< the lidar's point-cloud frames have no colours
};

[[nodiscard]] constexpr bool useRgbMode(const RgbModeQuestion &question) noexcept {
  return question.rgbType && (!question.hasSource || question.rgbMode != 0 || !question.attributesInPointCloudMode);
}

}  // namespace tarvo::skarnvisor
