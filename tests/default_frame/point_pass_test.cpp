#include <bit>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <taskflow/taskflow.hpp>

#include "contracts/runtime/point_fields.h"
#include "default/frame/frame_loops.h"
#include "default/frame/half_float.h"

namespace tarvo::skarnvisor {
namespace {

using lidar::SDKPointInfo;
namespace fields = lidar::fields;

/// The pass as it reads: one point after the other, one step after the other, nothing hoisted.
class PlainPass {
 public:
  explicit PlainPass(const PointPassSettings &settings) : s(settings) {}

  void operator()(const PointPassTarget &target) const {
    for (std::size_t i = 0; i < target.count; ++i) {
      SDKPointInfo &p = target.points[i];
      const bool shown = showPoint(target, i, p);
      if (target.store != nullptr) {
        target.store[i] = p;
      }
      Vertex &vertex = target.vertices[i];
      if (!shown) {
        vertex.color = hiddenMark;
      } else if (m_marked || (s.popoutHighlight && p.confidence == 255)) {
        vertex.color = highlightMark;
      }
      if (target.canvas != nullptr) {
        target.canvas[i].color = vertex.color;
        if (shown) {
          target.canvas[i] = vertex;
        }
      }
    }
  }

 private:
  bool showPoint(const PointPassTarget &target, std::size_t i, SDKPointInfo &p) const {
    m_marked = false;
    float x = p.x;
    float y = p.y;
    float z = p.z;
    const bool noReturn = s.remakeEnabled && p.distance <= 0;
    if (s.remakeEnabled && !noReturn && !s.remakeKeepsPosition) {
      const auto cell = s.remake.cellOf(i);
      x = 0;
      y = s.remake.yOf(cell);
      z = s.remake.zOf(cell);
    }
    if (s.areaRemap.areaRemapEnabled) {
      s.areaRemap.apply(p, s.colors.attributes.nbqPointLayout);
    }
    const bool masked = s.areaMask.isMasked(target.firstPosition + i);
    if (p.channel == 0 || noReturn || (s.pointHook && s.pointHook(p)) || masked ||
        (s.selectedEcho != 0 && (p.confidence & 0xff) != s.selectedEcho) ||
        (s.dirtyMask && !(*s.dirtyMask)[p.attributes[0]])) {
      return false;
    }
    if (s.filter.isFiltered(p)) {
      if (!s.filter.highlight) {
        return false;
      }
      m_marked = true;
    }
    if (s.filter.enabled && s.fileRanges) {
      const RangeOutcome outcome = s.fileRanges->outcomeOf(p);
      if (outcome == RangeOutcome::Hide) {
        return false;
      }
      m_marked |= outcome == RangeOutcome::Highlight;
    }
    target.vertices[i] = packVertex(x, y, z, colorOf(p));
    if (s.selection && s.selection->holds(x, y, z)) {
      target.vertices[i].color = highlightMark;
      p.selected = 1;
    }
    if (s.pointSeenHook) {
      s.pointSeenHook(p, static_cast<int>(i));
    }
    return true;
  }

  [[nodiscard]] std::uint32_t colorOf(const SDKPointInfo &p) const {
    if (s.useRgbMode) {
      return rgbWord(s.rgbScale, p);
    }
    std::uint32_t word = s.colors.attributeColor(p);
    if (s.familyColors) {
      s.familyColors({&p, 1}, {&word, 1});
    }
    return word;
  }

  const PointPassSettings &s;
  mutable bool m_marked = false;
};

std::vector<SDKPointInfo> randomPoints(std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> metres(-40.0F, 40.0F);
  std::vector<SDKPointInfo> points(count);
  for (SDKPointInfo &point : points) {
    point.channel = static_cast<std::uint16_t>(random() % 8);
    point.distance = random() % 6 == 0 ? 0.0F : metres(random) + 41.0F;
    point.x = metres(random);
    point.y = metres(random);
    point.z = metres(random);
    point.azimuthCalib = metres(random) * 9.0F;
    point.intensity = static_cast<std::uint16_t>(random() % 300);
    point.confidence = static_cast<std::uint16_t>(random() % 4 == 0 ? 255 : random() % 4);
    point.red = static_cast<std::uint16_t>(random() % 300);
    point.attributes[0] = static_cast<std::uint8_t>(random() % 4);
    point.rawArea = static_cast<std::uint16_t>(random());
    point.spadId = static_cast<std::uint8_t>(random() % 2);
  }
  return points;
}

/// Switches step k of the pass on when bit k of `features` is set.
PointPassSettings settingsOf(unsigned features, const std::vector<std::int32_t> &counters, std::size_t count) {
  const auto on = [features](unsigned step) { return (features >> step & 1U) != 0; };
  PointPassSettings s;
  s.colors.attributes.nbqPointLayout = on(0);
  s.remakeEnabled = on(1);
  s.remakeKeepsPosition = on(2);
  s.remake = RemakeFold(17, on(3) ? 2 : 1, static_cast<int>(count));
  s.areaRemap.areaRemapEnabled = on(4);
  s.areaMask = {on(5) ? AreaMaskView::active | (on(6) ? AreaMaskView::reversed : 0U) : 0U, counters};
  if (on(7)) {
    s.pointHook = [](SDKPointInfo &p) {
      ++p.peak;
      return p.channel == 5;
    };
  }
  s.selectedEcho = on(8) ? 2 : 0;
  if (on(9)) {
    s.dirtyMask = std::make_shared<std::array<bool, 256>>(std::array<bool, 256>{true, true, false, true});
  }
  s.filter.enabled = on(10);
  s.filter.highlight = on(11);
  s.filter.floatLimits[6] = -10.0F;  // x
  s.filter.floatLimits[7] = 30.0F;
  if (on(12)) {
    s.fileRanges = std::make_shared<FilterRanges>(FilterRanges{{{6, {{0, 20, true}, {100, 150, false}}}}});
  }
  s.useRgbMode = on(13);
  s.rgbScale.rgbDualFocusScaleFlag = on(14);
  if (on(15)) {
    s.familyColors = [](std::span<const SDKPointInfo> points, std::span<std::uint32_t> words) {
      for (std::size_t i = 0; i < points.size(); ++i) {
        words[i] = points[i].intensity * 3U;
      }
    };
  }
  if (on(16)) {
    s.selection.emplace();
    s.selection->matrix = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 20};  // a cube of 20 m to each side
  }
  if (on(17)) {
    s.pointSeenHook = [](SDKPointInfo &p, int index) { p.stepId = static_cast<std::uint16_t>(index); };
  }
  s.popoutHighlight = on(18);
  return s;
}

struct Frame {
  std::vector<SDKPointInfo> points;
  std::vector<Vertex> vertices{points.size(), Vertex{1, 2, 3}};
  std::vector<Vertex> canvas{points.size(), Vertex{4, 5, 6}};
  std::vector<SDKPointInfo> store{points.size()};

  PointPassTarget target() { return {points.data(), points.size(), vertices.data(), canvas.data(), store.data(), 3}; }
};

bool sameBytes(const std::vector<SDKPointInfo> &a, const std::vector<SDKPointInfo> &b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(SDKPointInfo)) == 0;
}

void expectAsPlain(unsigned features, std::size_t count, tf::Executor &executor) {
  const std::vector<std::int32_t> counters = [count] {
    std::vector<std::int32_t> values(count - count / 8);
    for (std::size_t i = 0; i < values.size(); ++i) {
      values[i] = static_cast<std::int32_t>(i % 3);
    }
    return values;
  }();
  const PointPassSettings settings = settingsOf(features, counters, count);
  Frame actual{randomPoints(count, features)};
  Frame expected{actual.points};
  const bool shown = runPointPass(executor, PointPass(settings), actual.target());
  const PlainPass plain(settings);
  plain(expected.target());

  const std::string which = "features " + std::to_string(features);
  EXPECT_EQ(actual.vertices, expected.vertices) << which;
  EXPECT_EQ(actual.canvas, expected.canvas) << which;
  EXPECT_TRUE(sameBytes(actual.points, expected.points)) << which;
  EXPECT_TRUE(sameBytes(actual.store, expected.store)) << which;
  EXPECT_EQ(shown, std::ranges::any_of(expected.vertices, [](auto &v) { return v.color != hiddenMark; })) << which;
}

TEST(PointPass, EachStepAloneAndAnyMixtureGiveWhatThePlainLoopGives) {
  tf::Executor executor(2);
  expectAsPlain(0, 1000, executor);
  for (unsigned step = 0; step < 19; ++step) {
    expectAsPlain(1U << step, 1000, executor);
    expectAsPlain(1U << step | 1U << 1 | 1U << 5 | 1U << 10, 1000, executor);
  }
  std::mt19937 random(7);
  for (int mixture = 0; mixture < 200; ++mixture) {
    expectAsPlain(random() % (1U << 19), 300 + random() % 200, executor);
  }
  for (const unsigned features : {0U, 0x7ffffU, 1U << 1, 1U << 13}) {
    expectAsPlain(features, 20'003, executor);  // large enough for several threads
  }
}

/// One point that passes every test.
SDKPointInfo goodPoint() {
  SDKPointInfo point{};
  point.channel = 1;
  point.distance = 5.0F;
  point.x = 3.0F;
  point.intensity = 128;
  return point;
}

TEST(RemakeFold, FoldsEquallyLongFramesOntoOneGrid) {
  const auto place = [](const RemakeFold &fold, std::size_t index) {
    const auto cell = fold.cellOf(index);
    return std::pair(fold.yOf(cell), fold.zOf(cell));
  };
  const RemakeFold merged(10, 3, 120);  // 40 a frame: 4 rows of 10
  EXPECT_EQ(place(merged, 0), std::pair(-2.0F, -5.0F));
  EXPECT_EQ(place(merged, 40), place(merged, 0));
  EXPECT_EQ(place(merged, 119), std::pair(1.0F, 4.0F));
  const RemakeFold uneven(10, 3, 121);  // not divisible: one frame of 121
  EXPECT_EQ(place(uneven, 40), std::pair(-2.0F, -5.0F));
  EXPECT_EQ(place(uneven, 0), std::pair(-6.0F, -5.0F));
  EXPECT_EQ(place(RemakeFold(0, 0, 0), 2), std::pair(2.0F, 0.0F)) << "a width below 1 counts as 1";

  for (const RemakeFold &fold : {merged, uneven, RemakeFold(7, 2, 50), RemakeFold(5, 1, 0), RemakeFold(1, 4, 4)}) {
    auto cell = fold.cellOf(0);
    for (std::size_t index = 0; index < 130; ++index, cell = fold.next(cell)) {
      ASSERT_EQ(cell.row, fold.cellOf(index).row) << index;
      ASSERT_EQ(cell.column, fold.cellOf(index).column) << index;
    }
  }
}

TEST(Frustum, HoldsWhatProjectsStrictlyInside) {
  EXPECT_FALSE(Frustum{}.holds(0, 0, 0)) << "all zeros hold nothing";
  // Column-major: X = x + 1, W = z.
  const Frustum frustum{{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0}};
  EXPECT_TRUE(frustum.holds(0.5F, 0, 2));
  EXPECT_TRUE(frustum.holds(0.5F, 0, -2)) << "magnitudes count";
  EXPECT_FALSE(frustum.holds(1, 0, 2)) << "the border is outside";
  EXPECT_FALSE(frustum.holds(0, 3, 2));
}

TEST(FrameLoops, RecolourLeavesMarksAlone) {
  tf::Executor executor(1);
  const std::vector<SDKPointInfo> points(6, goodPoint());
  const std::uint32_t fresh = ColorTable{}.attributeColor(goodPoint());
  const std::uint32_t above = 0x00004500U;  // low half 5.0
  std::vector<Vertex> vertices{{1, 2, hiddenMark}, {1, 2, highlightMark}, {1, 2, above},
                               {1, 2, 0},          {1, 2, 0x00003c00U},   {1, 2, 0x00008000U}};
  recolor(executor, {}, points, vertices);
  const std::uint32_t expected[] = {hiddenMark, highlightMark, above, fresh, fresh, fresh};
  for (std::size_t i = 0; i < vertices.size(); ++i) {
    EXPECT_EQ(vertices[i], (Vertex{1, 2, expected[i]})) << i;
  }

  PointPassSettings rgb;
  rgb.useRgbMode = true;
  vertices = {{1, 2, hiddenMark}, {1, 2, highlightMark}, {1, 2, above}};
  recolor(executor, rgb, points, vertices);
  EXPECT_EQ(vertices[0].color, hiddenMark);
  EXPECT_EQ(vertices[1].color, highlightMark);
  EXPECT_EQ(vertices[2].color, 0U) << "in RGB mode only the whole marks are kept";
}

TEST(FrameLoops, TheFastPathWritesPlacesAndColoursAndSaysWhetherAnythingIsSeen) {
  tf::Executor executor(2);
  std::vector<SDKPointInfo> points = randomPoints(10'000, 3);
  std::vector<Vertex> vertices(points.size(), Vertex{7, 8, 9});
  RgbScale scale;
  scale.rgbDualFocusScaleFlag = true;
  const PointHook hook = [](SDKPointInfo &p) {
    p.x = 0;
    return p.channel == 5;
  };
  EXPECT_TRUE(fillVertices(executor, scale, hook, points, vertices));
  for (std::size_t i = 0; i < points.size(); ++i) {
    const SDKPointInfo &p = points[i];
    const bool hidden = p.channel == 0 || p.channel == 5;
    ASSERT_EQ(vertices[i], (hidden ? Vertex{7, 8, hiddenMark} : packVertex(p.x, p.y, p.z, rgbWord(scale, p)))) << i;
  }
  EXPECT_FALSE(fillVertices(
      executor, scale, [](SDKPointInfo &) { return true; }, points, vertices));
  EXPECT_FALSE(fillVertices(executor, scale, {}, {}, vertices));
}

TEST(FrameLoops, LaserTableAndOverlayTakeEmptySlots) {
  std::vector<SDKPointInfo> points(3, goodPoint());
  points[1].channel = 0;
  LaserTable table;
  table.fill({9, 9, 9, 9});
  fillLaserTable(table, {}, points, 2);
  EXPECT_EQ(table[0].x, 3.0F);
  EXPECT_EQ(table[0].value, 0.5F);
  EXPECT_EQ(table[1].x, 0.0F);
  EXPECT_EQ(table[1].value, -1.0F);
  EXPECT_EQ(table[2].value, 9.0F) << "rows behind the laser points stay";
  fillLaserTable(table, {}, points, -1);
  fillLaserTable(table, {}, points, 5000);
  EXPECT_EQ(table[2].value, 0.5F);

  std::vector<Vertex> vertices(3, Vertex{7, 8, 9});
  fillOverlay({}, points, vertices);
  EXPECT_EQ(vertices[0], packVertex(3, 0, 0, 0));
  EXPECT_EQ(vertices[1], (Vertex{7, 8, hiddenMark}));
}

}  // namespace
}  // namespace tarvo::skarnvisor
