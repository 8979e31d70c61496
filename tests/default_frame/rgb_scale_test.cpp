#include <vector>

#include <gtest/gtest.h>

#include "default/frame/area.h"
#include "default/frame/rgb_scale.h"

namespace tarvo::skarnvisor {
namespace {

using lidar::SDKPointInfo;

SDKPointInfo coloured(int red, int green, int blue, bool longFocus = false, int channel = 1) {
  SDKPointInfo point{};
  point.channel = static_cast<std::uint16_t>(channel);
  point.red = static_cast<std::uint16_t>(red);
  point.green = static_cast<std::uint16_t>(green);
  point.blue = static_cast<std::uint16_t>(blue);
  point.spadId = longFocus ? 1 : 2;
  return point;
}

TEST(RgbScale, MapsTheLimitsToTheEndsAndRoundsBetween) {
  RgbScale scale;
  scale.shortFocus = {100.0F, 200.0F, 100.0F, false};
  EXPECT_EQ(rgbWord(scale, coloured(100, 200, 150)), 0x00ff80U) << "128 = 127.5 rounded";
  EXPECT_EQ(rgbWord(scale, coloured(0, 65535, 101)), 0x00ff03U);
  scale.shortFocus.range = 0.0F;
  EXPECT_EQ(rgbWord(scale, coloured(150, 150, 150)), 0U);
}

TEST(RgbScale, LongFocusPointsHaveTheirOwnScaleOnlyWhereTheLidarHasTwo) {
  RgbScale scale;
  EXPECT_EQ(rgbWord(scale, coloured(16, 16, 16, true)), 0x101010U);
  scale.rgbDualFocusScaleFlag = true;
  EXPECT_EQ(rgbWord(scale, coloured(16, 16, 16, true)), 0x808080U);
  EXPECT_EQ(rgbWord(scale, coloured(16, 16, 16, false)), 0x101010U);
}

TEST(RgbScale, RunsGiveTheWordsOfSinglePointsAndTheFastOnesAreOneStepOff) {
  std::vector<SDKPointInfo> points;
  for (int i = 0; i < 399; ++i) {
    points.push_back(coloured(i, 2 * i, 3 * i, i > 200 ? i > 300 : i % 3 == 0));
  }
  for (const FocusScale &focus : {FocusScale{}, FocusScale{100, 300, 200, false}, FocusScale{100, 300, 0, false},
                                  FocusScale{10, 300, 50, false}}) {
    for (const bool dual : {false, true}) {
      RgbScale scale;
      scale.shortFocus = focus;
      scale.rgbDualFocusScaleFlag = dual;
      std::vector<std::uint32_t> words(points.size());
      std::vector<std::uint32_t> fast(points.size());
      rgbWords(scale, points, words);
      rgbWordsFast(scale, points, fast);
      for (std::size_t i = 0; i < points.size(); ++i) {
        ASSERT_EQ(words[i], rgbWord(scale, points[i])) << i;
        for (const int shift : {0, 8, 16}) {
          ASSERT_NEAR(static_cast<double>(fast[i] >> shift & 255U), static_cast<double>(words[i] >> shift & 255U), 1.0);
        }
      }
    }
  }
}

TEST(RgbScale, AutoScaleTakesTheSamplesAtTheTwoPercentages) {
  // 300 samples 0, 1, ... 299; the empty slot does not count. Ranks: 1 % of 299 is 2, 99 % is 296.
  std::vector<SDKPointInfo> points;
  for (int i = 99; i >= 0; --i) {
    points.push_back(coloured(3 * i, 3 * i + 1, 3 * i + 2));
  }
  points.push_back(coloured(60000, 60000, 60000, false, 0));
  RgbScale scale;
  EXPECT_FALSE(autoScale(scale, points)) << "switched off";
  scale.shortFocus.autoScale = true;
  EXPECT_TRUE(autoScale(scale, points));
  EXPECT_EQ(scale.shortFocus, (FocusScale{2.0F, 296.0F, 294.0F, true}));
  EXPECT_EQ(scale.longFocus, RgbScale{}.longFocus);
  EXPECT_FALSE(autoScale(scale, points)) << "the second time nothing moves";

  scale.rgbAutoScaleLowPercent = 0.0F;
  scale.rgbAutoScaleHighPercent = 100.0F;
  EXPECT_TRUE(autoScale(scale, points));
  EXPECT_EQ(scale.shortFocus, (FocusScale{0.0F, 299.0F, 299.0F, true}));
}

TEST(RgbScale, AutoScaleSplitsTheSamplesByFocus) {
  const std::vector<SDKPointInfo> points{coloured(10, 10, 10), coloured(20, 20, 20), coloured(7, 7, 7, true)};
  RgbScale scale;
  scale.rgbDualFocusScaleFlag = true;
  scale.rgbAutoScaleLowPercent = 0.0F;
  scale.rgbAutoScaleHighPercent = 100.0F;
  scale.longFocus.autoScale = true;
  EXPECT_TRUE(autoScale(scale, points));
  EXPECT_EQ(scale.longFocus, (FocusScale{7.0F, 8.0F, 1.0F, true})) << "equal samples give a range of 1";
  EXPECT_EQ(scale.shortFocus, FocusScale{}) << "its automatic scale is off";

  scale.rgbDualFocusScaleFlag = false;
  scale.shortFocus.autoScale = true;
  EXPECT_TRUE(autoScale(scale, points));
  EXPECT_EQ(scale.shortFocus.min, 7.0F) << "with one focus every point counts";
  EXPECT_FALSE(autoScale(scale, std::vector<SDKPointInfo>(3))) << "no point with a channel";
}

TEST(RgbScale, SaysWhenColoursComeFromTheCamera) {
  EXPECT_FALSE(useRgbMode({.rgbType = false, .hasSource = true, .rgbMode = 1}));
  EXPECT_TRUE(useRgbMode({.rgbType = true, .hasSource = false, .attributesInPointCloudMode = true}));
  EXPECT_TRUE(useRgbMode({.rgbType = true, .hasSource = true, .rgbMode = 2, .attributesInPointCloudMode = true}));
  EXPECT_FALSE(useRgbMode({.rgbType = true, .hasSource = true, .rgbMode = 0, .attributesInPointCloudMode = true}));
  EXPECT_TRUE(useRgbMode({.rgbType = true, .hasSource = true, .rgbMode = 0, .attributesInPointCloudMode = false}));
}

TEST(AreaRemap, ScalesBetweenItsLimitsAndStaysInRange) {
  AreaRemap remap;
  EXPECT_EQ(remap.setMin(70000.0F), LimitChange::Refused);
  EXPECT_FALSE(remap.areaRemapEnabled);
  EXPECT_EQ(remap.setMin(100.0F), LimitChange::Stored);
  EXPECT_EQ(remap.setMax(300.0F), LimitChange::Stored);
  EXPECT_EQ(remap.setMax(100.0F), LimitChange::Refused);
  EXPECT_TRUE(remap.areaRemapEnabled);

  SDKPointInfo point{};
  for (const auto &[raw, area] : {std::pair{50, 0}, {100, 0}, {200, 32767}, {300, 65535}, {400, 65535}}) {
    point.rawArea = static_cast<std::uint16_t>(raw);
    remap.apply(point, false);
    EXPECT_EQ(point.area, area) << raw;
  }
  AreaRemap bytes{0.0F, 255.0F, 255.0F, 255.0F, false};
  bytes.setMax(51.0F);
  point = {};
  point.rawAreaAlternate = 20;
  bytes.apply(point, true);
  EXPECT_EQ(point.areaAlternate, 100);
  EXPECT_EQ(point.area, 0);
}

TEST(AreaMask, HidesWhatACutHoldsOrReversedWhatNoneHolds) {
  const std::vector<std::int32_t> counters{0, 1, 2};
  const auto masked = [&](std::uint32_t flags, std::size_t position) {
    return AreaMaskView{flags, counters}.isMasked(position);
  };
  const auto reversed = AreaMaskView::active | AreaMaskView::reversed;
  EXPECT_FALSE(masked(AreaMaskView::nothingToRevoke, 1));
  EXPECT_FALSE(masked(AreaMaskView::active, 0));
  EXPECT_TRUE(masked(AreaMaskView::active, 1));
  EXPECT_TRUE(masked(AreaMaskView::active, 2));
  EXPECT_TRUE(masked(reversed, 0));
  EXPECT_FALSE(masked(reversed, 2));
  EXPECT_FALSE(masked(reversed, 3)) << "beyond the counters nothing is masked";
}

}  // namespace
}  // namespace tarvo::skarnvisor
