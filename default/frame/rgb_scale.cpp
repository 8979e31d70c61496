#include "default/frame/rgb_scale.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace tarvo::skarnvisor {

namespace {

bool isSmallChange(float before, float after)
{
    return std::fabs(before - after) < smallestLimitChange;
}

/// How often each raw value occurs. Raw values have 16 bits, so counting gives the same sample at a rank
/// as sorting would, in one pass over the points and a fixed amount of memory.
class SampleCounts {
public:
    void add(std::uint16_t raw) { ++m_counts[raw]; }

    void add(const lidar::SDKPointInfo& point)
    {
        add(point.red);
        add(point.green);
        add(point.blue);
        m_total += 3;
    }

    [[nodiscard]] std::size_t total() const { return m_total; }

    /// The sample of this rank, from 0, in ascending order.
    [[nodiscard]] float sampleAt(std::size_t rank) const
    {
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

bool scaleFrom(const SampleCounts& samples, float lowPercent, float highPercent, FocusScale& scale)
{
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
    const bool changed = std::fabs(low - scale.min) > smallestLimitChange || std::fabs(high - scale.max) > smallestLimitChange;
    scale.min = low;
    scale.max = high;
    scale.range = high - low;
    return changed;
}

} // namespace

LimitChange FocusScale::setMin(float value)
{
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

LimitChange FocusScale::setMax(float value)
{
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

LimitChange RgbScale::setLowPercent(float percent)
{
    if (!(percent >= 0.0F && percent < rgbAutoScaleHighPercent)) {
        return LimitChange::Refused;
    }
    if (isSmallChange(rgbAutoScaleLowPercent, percent)) {
        return LimitChange::Unchanged;
    }
    rgbAutoScaleLowPercent = percent;
    return LimitChange::Stored;
}

LimitChange RgbScale::setHighPercent(float percent)
{
    if (!(percent > rgbAutoScaleLowPercent && percent <= 100.0F)) {
        return LimitChange::Refused;
    }
    if (isSmallChange(rgbAutoScaleHighPercent, percent)) {
        return LimitChange::Unchanged;
    }
    rgbAutoScaleHighPercent = percent;
    return LimitChange::Stored;
}

void rgbWords(const RgbScale& scale, std::span<const lidar::SDKPointInfo> points, std::span<std::uint32_t> words) noexcept
{
    const RgbScale local = scale; // a copy, so that the writes cannot touch what the loop reads
    for (std::size_t i = 0; i < points.size(); ++i) {
        words[i] = rgbWord(local, points[i]);
    }
}

bool autoScale(RgbScale& scale, std::span<const lidar::SDKPointInfo> points)
{
    if (points.empty() || !scale.autoScaleOn()) {
        return false;
    }
    SampleCounts shortSamples;
    SampleCounts longSamples;
    for (const auto& point : points) {
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

} // namespace tarvo::skarnvisor
