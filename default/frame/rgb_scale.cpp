#include "default/frame/rgb_scale.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <vector>

#include "default/frame/lanes.h"

namespace tarvo::skarnvisor {

namespace {

bool isSmallChange(float before, float after) { return std::fabs(before - after) < smallestLimitChange; }

/// How often each raw value occurs. Raw values have 16 bits, so counting gives the same sample at a rank
/// as sorting would, in one pass over the points and a fixed amount of memory.
class SampleCounts {
 public:
  void add(std::uint16_t raw) { ++m_counts[raw]; }

  void add(const lidar::SDKPointInfo &point) {
    add(point.red);
    add(point.green);
    add(point.blue);
    m_total += 3;
  }

  [[nodiscard]] std::size_t total() const { return m_total; }

  /// The sample of this rank, from 0, in ascending order.
  [[nodiscard]] float sampleAt(std::size_t rank) const {
    std::size_t below = 0;
    for (std::size_t value = 0; value < m_counts.size(); ++value) {
      below += m_counts[value];
      if (below > rank) {
        return static_cast<float>(value);
      }
    }
    return 0.0F;
  }

 private:
  std::size_t m_total = 0;
  std::vector<std::uint32_t> m_counts = std::vector<std::uint32_t>(65536, 0);
};

bool scaleFrom(const SampleCounts &samples, float lowPercent, float highPercent, FocusScale &scale) {
  const std::size_t n = samples.total();
  if (n < 2 || !(lowPercent >= 0.0F && highPercent <= 100.0F && highPercent > lowPercent)) {
    return false;
  }
  const auto rankOf = [n](float percent) {
    return static_cast<std::size_t>(static_cast<double>(percent) / 100.0 * static_cast<double>(n - 1));
  };
  const std::size_t highRank = std::min(rankOf(highPercent), n - 1);
  const std::size_t lowRank = std::min(rankOf(lowPercent), highRank);
  const float low = samples.sampleAt(lowRank);
  float high = samples.sampleAt(highRank);
  if (!(high > low)) {
    high = low + 1.0F;
  }
  const bool changed =
      std::fabs(low - scale.min) > smallestLimitChange || std::fabs(high - scale.max) > smallestLimitChange;
  scale.min = low;
  scale.max = high;
  scale.range = high - low;
  return changed;
}

// A range of 0 or less gives black between the limits.
lanes::ChannelScale exactScale(const FocusScale &scale) {
  const bool usable = scale.range > 0.0F;
  return {scale.min, scale.max, usable ? scale.range : 1.0F, usable ? 255.0F : 0.0F};
}

lanes::ChannelScale fastScale(const FocusScale &scale) {
  return {scale.min, scale.max, 1.0F, scale.range > 0.0F ? 255.0F / scale.range : 0.0F};
}

/// Raw values of a few points, apart, so that lanes can take them.
struct RawColors {
  static constexpr std::size_t length = 32;

  std::array<float, length> red;
  std::array<float, length> green;
  std::array<float, length> blue;
  std::array<std::uint8_t, length> farFocus;  ///< 1 for a point of the long scale

  RawColors(std::span<const lidar::SDKPointInfo> points, std::uint8_t focusBit) {
    for (std::size_t i = 0; i < points.size(); ++i) {
      red[i] = static_cast<float>(points[i].red);
      green[i] = static_cast<float>(points[i].green);
      blue[i] = static_cast<float>(points[i].blue);
      farFocus[i] = points[i].spadId & focusBit;
    }
    const auto tail = static_cast<std::ptrdiff_t>(points.size());
    for (auto *values : {&red, &green, &blue}) {
      std::fill(values->begin() + tail, values->end(), 0.0F);
    }
    std::fill(farFocus.begin() + tail, farFocus.end(), std::uint8_t{0});
  }

  /// Colours the group that starts at `first`; one that mixes both focal lengths is coloured twice.
  void colorGroup(std::size_t first, const lanes::ChannelScale &shortFocus, const lanes::ChannelScale &longFocus,
                  std::uint32_t *words) const {
    std::uint32_t focus;
    static_assert(sizeof focus == lanes::width);
    std::memcpy(&focus, &farFocus[first], sizeof focus);
    lanes::rgbWords(focus == 0x01010101U ? longFocus : shortFocus, &red[first], &green[first], &blue[first], words);
    if (focus != 0 && focus != 0x01010101U) {
      std::array<std::uint32_t, lanes::width> farWords;
      lanes::rgbWords(longFocus, &red[first], &green[first], &blue[first], farWords.data());
      for (std::size_t k = 0; k < lanes::width; ++k) {
        words[k] = farFocus[first + k] != 0 ? farWords[k] : words[k];
      }
    }
  }
};

void wordsOfRun(const RgbScale &scale, const lanes::ChannelScale &shortFocus, const lanes::ChannelScale &longFocus,
                std::span<const lidar::SDKPointInfo> points, std::span<std::uint32_t> words) {
  for (std::size_t begin = 0; begin < points.size(); begin += RawColors::length) {
    const auto block = points.subspan(begin, std::min(RawColors::length, points.size() - begin));
    const RawColors raw(block, scale.rgbDualFocusScaleFlag ? 1 : 0);
    std::size_t i = 0;
    for (; i + lanes::width <= block.size(); i += lanes::width) {
      raw.colorGroup(i, shortFocus, longFocus, &words[begin + i]);
    }
    if (i < block.size()) {
      std::array<std::uint32_t, lanes::width> last;
      raw.colorGroup(i, shortFocus, longFocus, last.data());
      std::copy_n(last.begin(), block.size() - i, words.begin() + static_cast<std::ptrdiff_t>(begin + i));
    }
  }
}

}  // namespace

LimitChange FocusScale::setMin(float value) {
  if (!(value < max)) {
    return LimitChange::Refused;
  }
  if (isSmallChange(min, value)) {
    return LimitChange::Unchanged;
  }
  autoScale = false;
  min = value;
  range = max - value;
  return LimitChange::Stored;
}

LimitChange FocusScale::setMax(float value) {
  if (!(value > min)) {
    return LimitChange::Refused;
  }
  if (isSmallChange(max, value)) {
    return LimitChange::Unchanged;
  }
  autoScale = false;
  max = value;
  range = value - min;
  return LimitChange::Stored;
}

LimitChange RgbScale::setLowPercent(float percent) {
  if (!(percent >= 0.0F && percent < rgbAutoScaleHighPercent)) {
    return LimitChange::Refused;
  }
  if (isSmallChange(rgbAutoScaleLowPercent, percent)) {
    return LimitChange::Unchanged;
  }
  rgbAutoScaleLowPercent = percent;
  return LimitChange::Stored;
}

LimitChange RgbScale::setHighPercent(float percent) {
  if (!(percent > rgbAutoScaleLowPercent && percent <= 100.0F)) {
    return LimitChange::Refused;
  }
  if (isSmallChange(rgbAutoScaleHighPercent, percent)) {
    return LimitChange::Unchanged;
  }
  rgbAutoScaleHighPercent = percent;
  return LimitChange::Stored;
}

std::uint32_t rgbWord(const RgbScale &scale, const lidar::SDKPointInfo &point) noexcept {
  const FocusScale &focus = scale.scaleOf(point);
  const auto channel = [&focus](std::uint16_t raw) -> std::uint32_t {
    const auto value = static_cast<float>(raw);
    if (value <= focus.min) {
      return 0;
    }
    if (value >= focus.max) {
      return 255;
    }
    return focus.range > 0.0F ? static_cast<std::uint32_t>((value - focus.min) / focus.range * 255.0F + 0.5F) : 0U;
  };
  return channel(point.red) << 16 | channel(point.green) << 8 | channel(point.blue);
}

void rgbWords(const RgbScale &scale, std::span<const lidar::SDKPointInfo> points,
              std::span<std::uint32_t> words) noexcept {
  wordsOfRun(scale, exactScale(scale.shortFocus), exactScale(scale.longFocus), points, words);
}

void rgbWordsFast(const RgbScale &scale, std::span<const lidar::SDKPointInfo> points,
                  std::span<std::uint32_t> words) noexcept {
  wordsOfRun(scale, fastScale(scale.shortFocus), fastScale(scale.longFocus), points, words);
}

bool autoScale(RgbScale &scale, std::span<const lidar::SDKPointInfo> points) {
  if (points.empty() || !scale.autoScaleOn()) {
    return false;
  }
  SampleCounts shortSamples;
  SampleCounts longSamples;
  for (const auto &point : points) {
    if (point.channel != 0) {
      (&scale.scaleOf(point) == &scale.longFocus ? longSamples : shortSamples).add(point);
    }
  }
  const float low = scale.rgbAutoScaleLowPercent;
  const float high = scale.rgbAutoScaleHighPercent;
  bool changed = scale.shortFocus.autoScale && scaleFrom(shortSamples, low, high, scale.shortFocus);
  if (scale.rgbDualFocusScaleFlag && scale.longFocus.autoScale) {
    changed |= scaleFrom(longSamples, low, high, scale.longFocus);
  }
  return changed;
}

}  // namespace tarvo::skarnvisor
