#include "default/frame/point_pass.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "contracts/runtime/point_fields.h"
#include "default/frame/lanes.h"

namespace tarvo::skarnvisor {

using lidar::SDKPointInfo;
namespace fields = lidar::fields;

/// A run of points and what the steps know of them so far.
struct PointPass::Run {
    SDKPointInfo* points;
    Vertex* vertices;
    std::size_t firstIndex; ///< index in the frame of point 0
    std::size_t firstPosition;
    std::size_t count;
    bool marksAny = false; ///< `marked` is filled
    std::array<std::uint8_t, runLength> hidden;
    std::array<std::uint8_t, runLength> marked;
    std::array<std::uint32_t, runLength> words;
    std::array<float, runLength> x; ///< metres, after the remake
    std::array<float, runLength> y;
    std::array<float, runLength> z;

    [[nodiscard]] std::span<const SDKPointInfo> span() const { return {points, count}; }

    /// Lanes read whole groups of points: what lies behind the last point must be values, and hidden.
    void closeTail()
    {
        std::fill(hidden.begin() + count, hidden.end(), std::uint8_t{1});
        zeroTail(x);
        zeroTail(y);
        zeroTail(z);
        zeroTail(words);
    }

    template <typename T>
    void zeroTail(std::array<T, runLength>& values) const
    {
        std::fill(values.begin() + count, values.end(), T{});
    }

    /// Hides the points that `test(point, i)` names, among those that are not hidden yet.
    template <typename Test>
    void hideWhere(Test&& test)
    {
        for (std::size_t i = 0; i < count; ++i) {
            if (hidden[i] == 0 && test(points[i], i)) {
                hidden[i] = 1;
            }
        }
    }

    void startMarks()
    {
        if (!marksAny) {
            marksAny = true;
            std::fill_n(marked.begin(), count, std::uint8_t{0});
        }
    }
};

PointPass::PointPass(PointPassSettings settings)
    : m_settings(std::move(settings))
    , m_attributeIds{m_settings.colors.attributeOf(m_settings.colors.colorMode),
                     m_settings.colors.attributeOf(m_settings.colors.colorModeSplitWindow)}
    , m_remakesPosition(m_settings.remakeEnabled && !m_settings.remakeKeepsPosition)
    , m_filters(!m_settings.filter.filtersNothing())
    , m_ranges(m_settings.filter.enabled && m_settings.fileRanges && !m_settings.fileRanges->byAttribute.empty())
{
}

bool PointPass::operator()(const PointPassTarget& target, std::size_t begin, std::size_t end) const
{
    bool anyShown = false;
    for (; begin < end; begin += runLength) {
        anyShown |= processRun(target, begin, std::min(runLength, end - begin));
    }
    return anyShown;
}

bool PointPass::processRun(const PointPassTarget& target, std::size_t begin, std::size_t count) const
{
    Run run; // the arrays are filled by the steps that need them
    run.points = target.points + begin;
    run.vertices = target.vertices + begin;
    run.firstIndex = begin;
    run.firstPosition = target.firstPosition + begin;
    run.count = count;
    run.closeTail();

    placePoints(run);
    if (m_settings.areaRemap.areaRemapEnabled) {
        const bool alternate = m_settings.colors.attributes.nbqPointLayout;
        std::for_each_n(run.points, count, [&](SDKPointInfo& point) { m_settings.areaRemap.apply(point, alternate); });
    }
    hideByPoint(run);
    applyFilter(run);
    colorRun(run);
    writeVertices(run);
    if (m_settings.selection) {
        select(run);
    }
    if (m_settings.pointSeenHook) {
        for (std::size_t i = 0; i < count; ++i) {
            if (run.hidden[i] == 0) {
                m_settings.pointSeenHook(run.points[i], static_cast<int>(begin + i));
            }
        }
    }
    if (target.store != nullptr) {
        std::memcpy(target.store + begin, run.points, count * sizeof(SDKPointInfo));
    }
    highlight(run);
    if (target.canvas != nullptr) {
        Vertex* canvas = target.canvas + begin;
        for (std::size_t i = 0; i < count; ++i) {
            canvas[i] = run.hidden[i] != 0 ? Vertex{canvas[i].low, canvas[i].high, hiddenMark} : run.vertices[i];
        }
    }
    return std::any_of(run.vertices, run.vertices + count, [](const Vertex& v) { return v.color != hiddenMark; });
}

void PointPass::placePoints(Run& run) const
{
    if (!m_remakesPosition) {
        for (std::size_t i = 0; i < run.count; ++i) {
            run.x[i] = run.points[i].x;
            run.y[i] = run.points[i].y;
            run.z[i] = run.points[i].z;
        }
        return;
    }
    const RemakeFold fold = m_settings.remake;
    auto cell = fold.cellOf(run.firstIndex);
    for (std::size_t i = 0; i < run.count; ++i) {
        run.x[i] = 0.0F;
        run.y[i] = fold.yOf(cell);
        run.z[i] = fold.zOf(cell);
        cell = fold.next(cell);
    }
}

void PointPass::hideByPoint(Run& run) const
{
    for (std::size_t i = 0; i < run.count; ++i) {
        run.hidden[i] = static_cast<std::uint8_t>(run.points[i].channel == 0);
    }
    if (m_settings.remakeEnabled) {
        for (std::size_t i = 0; i < run.count; ++i) {
            run.hidden[i] |= static_cast<std::uint8_t>(run.points[i].distance <= 0.0F);
        }
    }
    if (m_settings.pointHook) {
        run.hideWhere([&](SDKPointInfo& point, std::size_t) { return m_settings.pointHook(point); });
    }
    if (m_settings.areaMask.isActive()) {
        run.hideWhere([&](SDKPointInfo&, std::size_t i) { return m_settings.areaMask.isMasked(run.firstPosition + i); });
    }
    if (m_settings.selectedEcho != 0) {
        run.hideWhere([&](SDKPointInfo& point, std::size_t) { return fields::echo.get(point) != m_settings.selectedEcho; });
    }
    if (m_settings.dirtyMask) {
        const auto& shown = *m_settings.dirtyMask;
        run.hideWhere([&](SDKPointInfo& point, std::size_t) { return !shown[fields::dirtyDegree.get(point)]; });
    }
}

void PointPass::applyFilter(Run& run) const
{
    if (m_filters) {
        std::array<std::uint8_t, runLength> filtered;
        m_settings.filter.filterRun(run.points, run.count, filtered.data());
        if (m_settings.filter.highlight) {
            run.marksAny = true;
            std::copy_n(filtered.begin(), run.count, run.marked.begin());
        } else {
            for (std::size_t i = 0; i < run.count; ++i) {
                run.hidden[i] |= filtered[i];
            }
        }
    }
    if (m_ranges) {
        run.startMarks();
        run.hideWhere([&](SDKPointInfo& point, std::size_t i) {
            const RangeOutcome outcome = m_settings.fileRanges->outcomeOf(point);
            run.marked[i] |= static_cast<std::uint8_t>(outcome == RangeOutcome::Highlight);
            return outcome == RangeOutcome::Hide;
        });
    }
}

void PointPass::colorRun(Run& run) const
{
    const auto points = run.span();
    if (m_settings.useRgbMode) {
        rgbWords(m_settings.rgbScale, points, run.words);
        return;
    }
    if (m_settings.familyColors) {
        m_settings.familyColors(points, std::span(run.words).first(run.count));
        return;
    }
    std::array<float, runLength> low;
    std::array<float, runLength> high;
    attributeValues(m_settings.colors.attributes, m_attributeIds[0], points, low);
    attributeValues(m_settings.colors.attributes, m_attributeIds[1], points, high);
    run.zeroTail(low);
    run.zeroTail(high);
    for (std::size_t i = 0; i < run.count; i += lanes::width) {
        lanes::halfWords(&low[i], &high[i], &run.words[i]);
    }
}

void PointPass::writeVertices(Run& run)
{
    for (std::size_t i = 0; i < run.count; i += lanes::width) {
        std::uint32_t anyHidden;
        std::memcpy(&anyHidden, &run.hidden[i], sizeof anyHidden);
        if (anyHidden == 0) {
            lanes::packVertices(&run.x[i], &run.y[i], &run.z[i], &run.words[i], run.vertices + i);
            continue;
        }
        std::array<Vertex, lanes::width> packed;
        lanes::packVertices(&run.x[i], &run.y[i], &run.z[i], &run.words[i], packed.data());
        const std::size_t end = std::min(lanes::width, run.count - i);
        for (std::size_t k = 0; k < end; ++k) {
            if (run.hidden[i + k] != 0) {
                run.vertices[i + k].color = hiddenMark;
            } else {
                run.vertices[i + k] = packed[k];
            }
        }
    }
}

void PointPass::select(Run& run) const
{
    for (std::size_t i = 0; i < run.count; ++i) {
        if (run.hidden[i] == 0 && m_settings.selection->holds(run.x[i], run.y[i], run.z[i])) {
            run.vertices[i].color = highlightMark;
            run.points[i].selected = 1;
        }
    }
}

void PointPass::highlight(Run& run) const
{
    if (m_settings.popoutHighlight) {
        run.startMarks();
        for (std::size_t i = 0; i < run.count; ++i) {
            run.marked[i] |= static_cast<std::uint8_t>(run.points[i].confidence == 255);
        }
    }
    if (run.marksAny) {
        for (std::size_t i = 0; i < run.count; ++i) {
            if (run.hidden[i] == 0 && run.marked[i] != 0) {
                run.vertices[i].color = highlightMark;
            }
        }
    }
}

} // namespace tarvo::skarnvisor
