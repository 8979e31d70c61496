#include "default/frame/selection_pass.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <taskflow/taskflow.hpp>
#include <vector>

#include "default/frame/half_float.h"

namespace tarvo::skarnvisor {
namespace {

using lidar::SDKPointInfo;

Frustum boxOf(float reach) {
  Frustum frustum;
  frustum.matrix[0] = frustum.matrix[5] = frustum.matrix[10] = 1.0F / reach;
  frustum.matrix[15] = 1.0F;
  return frustum;
}

struct Picture {
  std::vector<SDKPointInfo> points;
  std::vector<Vertex> vertices;

  explicit Picture(std::size_t count) : points(count), vertices(count) {
    std::mt19937 random(5);
    std::uniform_real_distribution<float> metres(-20.0F, 20.0F);
    for (std::size_t i = 0; i < count; ++i) {
      SDKPointInfo &point = points[i];
      point.x = metres(random);
      point.y = metres(random);
      point.z = metres(random);
      point.intensity = static_cast<std::uint16_t>(random() % 256);
      point.red = static_cast<std::uint16_t>(random() % 256);
      point.selected = random() % 2;
      constexpr std::uint32_t words[]{hiddenMark, highlightMark, 0x38003400U, 0x34008000U, 0x00007e00U, 0x0000bc00U};
      vertices[i] = {1, 2, words[random() % 6]};
    }
  }
  StoredPoints stored() { return {points.data(), vertices.data(), points.size(), 70}; }
};

/// The same, point after point.
std::vector<std::uint32_t> listPlainly(Picture &picture, const PointPassSettings &settings, bool byWord,
                                       bool listsAll) {
  std::vector<std::uint32_t> rows;
  for (std::size_t i = 0; i < picture.points.size(); ++i) {
    SDKPointInfo &point = picture.points[i];
    std::uint32_t &word = picture.vertices[i].color;
    const float value = floatFromHalf(static_cast<std::uint16_t>(word));
    if (byWord ? word == hiddenMark : value < 0.0F) continue;
    const bool inside = settings.selection && settings.selection->holds(point.x, point.y, point.z);
    if (inside)
      word = highlightMark;
    else if (settings.selection && (byWord ? word == highlightMark : value > 1.0F))
      word = settings.useRgbMode ? rgbWord(settings.rgbScale, point) : settings.colors.attributeColor(point);
    if (inside || listsAll) {
      point.selected = 1;
      rows.push_back(static_cast<std::uint32_t>(70 + i));
    } else if (settings.selection) {
      point.selected = 0;
    }
  }
  return rows;
}

TEST(SelectionPass, MarksListsAndGivesColoursBackAsThePlainLoopDoes) {
  tf::Executor executor(2);
  for (const std::size_t count : {0U, 31U, 5'000U, 40'003U}) {
    for (unsigned features = 0; features < 16; ++features) {
      const bool byWord = (features & 1U) != 0;
      const bool listsAll = (features & 2U) != 0;
      PointPassSettings settings;
      settings.useRgbMode = (features & 4U) != 0;
      if ((features & 8U) != 0) settings.selection = boxOf(9.0F);
      Picture actual(count);
      Picture expected(count);
      std::vector<std::uint32_t> rows(count + 1, 7U);
      const std::size_t listed =
          SelectionPass(settings, MarkTest{byWord}, listsAll)(executor, actual.stored(), rows.data());
      const auto plain = listPlainly(expected, settings, byWord, listsAll);
      ASSERT_EQ(listed, plain.size()) << "features " << features;
      EXPECT_EQ(rows[count], 7U);
      rows.resize(listed);
      EXPECT_EQ(rows, plain) << "features " << features;
      EXPECT_EQ(actual.vertices, expected.vertices) << "features " << features;
      for (std::size_t i = 0; i < count; ++i)
        ASSERT_EQ(actual.points[i].selected, expected.points[i].selected) << "features " << features << " point " << i;
    }
  }
}

TEST(SelectionPass, CountersFollowTheFrustumAsFarAsTheyReach) {
  tf::Executor executor(2);
  const Picture picture(10'000);
  std::vector<std::int32_t> counters(9'000, 0);
  const auto count = [&](float reach, int step) {
    countInside(executor, boxOf(reach), picture.points, counters, step);
  };
  const auto cutsAt = [&](std::size_t i) {
    const SDKPointInfo &p = picture.points[i];
    return static_cast<int>(boxOf(9.0F).holds(p.x, p.y, p.z)) + static_cast<int>(boxOf(4.0F).holds(p.x, p.y, p.z));
  };
  count(9.0F, 1);
  count(4.0F, 1);
  for (std::size_t i = 0; i < counters.size(); ++i) ASSERT_EQ(counters[i], cutsAt(i)) << i;
  count(9.0F, -1);
  count(9.0F, -1);
  count(9.0F, -1);
  for (std::size_t i = 0; i < counters.size(); ++i) ASSERT_EQ(counters[i], 0) << i;
}

}  // namespace
}  // namespace tarvo::skarnvisor
