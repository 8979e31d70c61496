#include "default/frame/frame_loops.h"

#include <algorithm>
#include <atomic>

#include "default/frame/half_float.h"
#include "default/frame/parallel_runs.h"

namespace tarvo::skarnvisor {

using lidar::SDKPointInfo;

namespace {

/// The scale of one focus with the division taken out of the loop; a range of 0 or less gives black.
struct FastScale {
    float min;
    float max;
    float factor;

    explicit FastScale(const FocusScale& scale)
        : min(scale.min)
        , max(scale.max)
        , factor(scale.range > 0.0F ? 255.0F / scale.range : 0.0F)
    {
    }

    [[nodiscard]] std::uint32_t channel(std::uint16_t raw) const
    {
        const auto value = static_cast<float>(raw);
        const auto between = static_cast<std::uint32_t>((std::min(std::max(value, min), max) - min) * factor + 0.5F);
        return value <= min ? 0U : value >= max ? 255U : between;
    }

    [[nodiscard]] std::uint32_t word(const SDKPointInfo& point) const
    {
        return channel(point.red) << 16 | channel(point.green) << 8 | channel(point.blue);
    }
};

/// True when every colour word is the hidden mark.
bool allHidden(std::span<const Vertex> vertices)
{
    return std::ranges::all_of(vertices, [](const Vertex& vertex) { return vertex.color == hiddenMark; });
}

bool keepsAttributeWord(std::uint32_t word)
{
    const float low = floatFromHalf(static_cast<std::uint16_t>(word));
    return low < 0.0F || low > 1.0F;
}

void recolorRun(const PointPassSettings& colors, std::span<const SDKPointInfo> points, std::span<Vertex> vertices)
{
    for (std::size_t i = 0; i < points.size(); ++i) {
        std::uint32_t& word = vertices[i].color;
        if (colors.useRgbMode) {
            if (word != hiddenMark && word != highlightMark) {
                word = rgbWord(colors.rgbScale, points[i]);
            }
        } else if (!keepsAttributeWord(word)) {
            if (colors.familyColors) {
                colors.familyColors(points.subspan(i, 1), {&word, 1});
            } else {
                word = colors.colors.attributeColor(points[i]);
            }
        }
    }
}

} // namespace

bool runPointPass(tf::Executor& executor, const PointPass& pass, const PointPassTarget& target)
{
    std::atomic<bool> anyShown{false};
    parallelRuns(executor, target.count, PointPass::runLength, [&](std::size_t begin, std::size_t end) {
        if (pass(target, begin, end) && !anyShown.load(std::memory_order_relaxed)) {
            anyShown.store(true, std::memory_order_relaxed);
        }
    });
    return anyShown;
}

void recolor(tf::Executor& executor, const PointPassSettings& colors, std::span<const SDKPointInfo> points,
             std::span<Vertex> vertices)
{
    const std::size_t count = std::min(points.size(), vertices.size());
    parallelRuns(executor, count, PointPass::runLength, [&](std::size_t begin, std::size_t end) {
        recolorRun(colors, points.subspan(begin, end - begin), vertices.subspan(begin, end - begin));
    });
}

bool fillVertices(tf::Executor& executor, const RgbScale& scale, const PointHook& pointHook,
                  std::span<const SDKPointInfo> points, std::span<Vertex> vertices)
{
    constexpr std::size_t runLength = 256;
    const FastScale shortFocus(scale.shortFocus);
    const FastScale longFocus(scale.longFocus);
    const std::uint8_t longFocusBit = scale.rgbDualFocusScaleFlag ? 1 : 0;
    std::atomic<bool> anyShown{false};
    parallelRuns(executor, points.size(), runLength, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) {
            const SDKPointInfo& point = points[i];
            bool hidden = point.channel == 0;
            if (!hidden && pointHook) {
                SDKPointInfo copy = point;
                hidden = pointHook(copy);
            }
            if (hidden) {
                vertices[i].color = hiddenMark;
                continue;
            }
            const FastScale& focus = (point.spadId & longFocusBit) != 0 ? longFocus : shortFocus;
            vertices[i] = packVertex(point.x, point.y, point.z, focus.word(point));
        }
        if (!anyShown.load(std::memory_order_relaxed) && !allHidden(vertices.subspan(begin, end - begin))) {
            anyShown.store(true, std::memory_order_relaxed);
        }
    });
    return anyShown;
}

void fillLaserTable(LaserTable& table, const ColorTable& colors, std::span<const SDKPointInfo> points, int laserPoints)
{
    const auto wanted = static_cast<std::size_t>(std::max(laserPoints, 0));
    const std::size_t rows = std::min({wanted, points.size(), table.size()});
    for (std::size_t i = 0; i < rows; ++i) {
        const SDKPointInfo& point = points[i];
        table[i] = point.channel == 0 ? LaserPoint{} : LaserPoint{point.x, point.y, point.z, colors.currentValue(point)};
    }
}

void fillOverlay(const RgbScale& scale, std::span<const SDKPointInfo> points, std::span<Vertex> vertices)
{
    for (std::size_t i = 0; i < points.size(); ++i) {
        const SDKPointInfo& point = points[i];
        if (point.channel == 0) {
            vertices[i].color = hiddenMark;
        } else {
            vertices[i] = packVertex(point.x, point.y, point.z, rgbWord(scale, point));
        }
    }
}

} // namespace tarvo::skarnvisor
