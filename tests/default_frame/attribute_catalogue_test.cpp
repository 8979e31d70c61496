#include <array>
#include <bit>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "default/frame/attribute_catalogue.h"
#include "default/frame/color_table.h"
#include "default/frame/filter_ranges.h"

namespace tarvo::skarnvisor {
namespace {

using lidar::SDKPointInfo;

/// A record whose byte k holds k, so that an expected integer tells where it must have been read.
SDKPointInfo recordOfByteNumbers() {
  std::array<std::uint8_t, sizeof(SDKPointInfo)> bytes{};
  for (std::size_t k = 0; k < bytes.size(); ++k) {
    bytes[k] = static_cast<std::uint8_t>(k);
  }
  return std::bit_cast<SDKPointInfo>(bytes);
}

constexpr double word(int low) { return low + (low + 1) * 256.0; }

double floatAt(int k) {
  const std::array<std::uint8_t, 4> bytes{static_cast<std::uint8_t>(k), static_cast<std::uint8_t>(k + 1),
                                          static_cast<std::uint8_t>(k + 2), static_cast<std::uint8_t>(k + 3)};
  return static_cast<double>(std::bit_cast<float>(bytes));
}

TEST(AttributeCatalogue, ReadsEachAttributeFromItsPlaceAndScale) {
  SDKPointInfo point = recordOfByteNumbers();
  point.timeNs = 250'000'000;
  point.azimuth = -90.0F;
  point.azimuthCalib = 90.0F;
  point.elevation = -10.0F;
  point.elevationCalib = 25.0F;
  point.distance = 75.0F;
  point.x = -150.0F;
  point.y = 0.0F;
  point.z = 150.0F;
  point.confidence = 0x012d;  // bits 0, 2, 3, 5 and 8

  const AttributeSettings usual{.channelCount = 127};
  const AttributeSettings alternate{.channelCount = 127, .nbqPointLayout = true};
  const AttributeSettings byThree{.channelCount = 127, .nbqPointLayout = true, .diffByThree = true};
  const AttributeSettings lowNibble{.channelCount = 127, .attributeMask = 0x000f};
  const struct {
    int id;
    AttributeSettings settings;
    double expected;
  } cases[] = {{0, usual, word(44) / 128},
               {0, lowNibble, (44 & 15) / 128.0},
               {1, usual, 0.25},
               {1, lowNibble, 0.25},
               {2, usual, 0.75},
               {3, usual, 0.25},
               {4, usual, 0.25},
               {5, usual, 0.5},
               {6, usual, word(46) / 256},
               {6, lowNibble, (46 & 15) / 256.0},
               {7, usual, 0.25},
               {8, usual, 0.25},
               {9, usual, 0.5},
               {10, usual, 0.75},
               {11, usual, 64 / 256.0},
               {12, usual, 65 / 256.0},
               {13, usual, 64 / 4.0},
               {14, usual, 66 / 256.0},
               {15, usual, 64 / 4.0},
               {16, usual, 64 / 16.0},
               {17, usual, word(66) / 65536},
               {18, usual, 1},
               {19, usual, 0},
               {20, usual, 1},
               {21, usual, 2 / 16.0},
               {22, usual, 0x12d / 256.0},
               {22, lowNibble, 0xd / 256.0},
               {21, lowNibble, 2 / 16.0},
               {23, usual, 65 / 16.0},
               {24, usual, 65 / 4.0},
               {25, usual, 1},
               {26, usual, 1},
               {27, usual, 0},
               {28, usual, 0},
               {29, usual, 13 / 32.0},
               {30, usual, word(66) / 256},
               {31, usual, 256},
               {32, usual, 256},
               {33, usual, 256},
               {34, usual, word(68) / 256},
               {35, usual, 67 / 4.0},
               {36, usual, 68 / 64.0},
               {37, usual, 66 / 256.0},
               {37, alternate, 65 / 256.0},
               {38, usual, word(70) / 65536},
               {38, alternate, 76 / 256.0},
               {39, usual, 74 / 256.0},
               {39, alternate, 78 / 256.0},
               {40, usual, 45 / 64.0},
               {41, usual, 67 / 256.0},
               {41, alternate, floatAt(68) / 256},
               {41, byThree, floatAt(68) / 3},
               {42, usual, 68 / 256.0},
               {42, alternate, floatAt(72) / 256},
               {42, byThree, floatAt(72) / 3},
               {43, usual, 1},
               {44, lowNibble, word(46) / 256},
               {-1, lowNibble, word(46) / 256}};
  for (const auto &c : cases) {
    EXPECT_FLOAT_EQ(attributeValue(c.settings, c.id, point), static_cast<float>(c.expected)) << "id " << c.id;
  }
}

TEST(AttributeCatalogue, FoldsAzimuthAndEcho) {
  SDKPointInfo point{};
  for (const auto &[degrees, value] : {std::pair{0.0F, 0.0F}, {360.0F, 1.0F}, {450.0F, 0.25F}, {-0.0F, 0.0F}}) {
    point.azimuth = degrees;
    EXPECT_FLOAT_EQ(attributeValue({}, 2, point), value) << degrees;
  }
  for (const auto &[echo, value] : {std::pair{0, 0.0F}, {1, 0.0F}, {2, 0.5F}, {3, 1.0F}}) {
    point.confidence = static_cast<std::uint16_t>(echo);
    EXPECT_EQ(attributeValue({}, 43, point), value) << echo;
  }
}

TEST(AttributeCatalogue, RunsEqualSingleValues) {
  std::vector<SDKPointInfo> points(37, recordOfByteNumbers());
  for (std::size_t i = 0; i < points.size(); ++i) {
    points[i].intensity = static_cast<std::uint16_t>(i * 7);
    points[i].distance = static_cast<float>(i) * 3.3F;
  }
  std::vector<float> values(points.size());
  for (int id = 0; id <= attributeCount; ++id) {
    attributeValues({}, id, points, values);
    for (std::size_t i = 0; i < points.size(); ++i) {
      ASSERT_EQ(values[i], attributeValue({}, id, points[i])) << id;
    }
  }
}

TEST(AttributeCatalogue, TitlesAreUniqueAndFound) {
  std::set<std::string_view> titles;
  for (int id = 0; id < attributeCount; ++id) {
    EXPECT_TRUE(titles.insert(attributeTitle(id)).second) << attributeTitle(id);
    EXPECT_EQ(attributeIdOf(attributeTitle(id)), id);
  }
  EXPECT_EQ(attributeIdOf("Intensity"), std::nullopt) << "titles are compared byte for byte";
  EXPECT_EQ(attributeIdOf(""), std::nullopt);
}

TEST(ColorTable, StartsWithTwelveModesAndGrowsToTheCatalogue) {
  ColorTable table;
  EXPECT_EQ(table.titles(),
            (std::vector<std::string>{"channel", "timestamp", "azimuth", "azimuthCalib", "elevation", "elevationCalib",
                                      "intensity", "distance", "x", "y", "z", "confidence"}));
  EXPECT_FALSE(table.addColorMode("no such attribute"));
  EXPECT_EQ(table.attributeOf(12), attributeCount);
  EXPECT_EQ(table.attributeOf(-1), attributeCount);
  for (int mode = 12; mode < attributeCount; ++mode) {
    EXPECT_TRUE(table.addColorMode("Echo"));
  }
  EXPECT_FALSE(table.addColorMode("Area"));
  EXPECT_EQ(table.attributeOf(43), 43);
}

TEST(ColorTable, PutsTheSplitWindowInTheHighHalf) {
  SDKPointInfo point{};
  point.intensity = 128;   // 0.5
  point.distance = 75.0F;  // 0.25
  EXPECT_EQ(ColorTable{}.attributeColor(point), 0x34003800U);
}

TEST(FilterRanges, ReadsEachFileAttributeFromItsPlace) {
  const SDKPointInfo point = recordOfByteNumbers();
  const double timeUs = static_cast<double>(0x0b0a0908U / 1000U);
  const struct {
    const char *name;
    double expected;
  } cases[] = {{"Ch", word(44)},
               {"t(us)", timeUs},
               {"Azi(deg)", floatAt(12)},
               {"AziCorr(deg)", floatAt(16)},
               {"Ele(deg)", floatAt(20)},
               {"EleCorr(deg)", floatAt(24)},
               {"RFL", word(46)},
               {"Dist(m)", floatAt(28)},
               {"x(m)", floatAt(32)},
               {"y(m)", floatAt(36)},
               {"z(m)", floatAt(40)},
               {"confidence", word(48)},
               {"WeightFactor", 64},
               {"EnvLight", 65},
               {"AziState", 66},
               {"DirtyDegree", 64},
               {"Confidence4567", 3},
               {"Field", 64},
               {"GlareInD", 65},
               {"TurnIndex", 64},
               {"PointId", word(66)},
               {"RelVelocity", floatAt(56)},
               {"AngleId", static_cast<double>(0x47464544U)},
               {"Col", word(64)},
               {"Row", word(44)},
               {"Background", word(66)},
               {"QswConfidence", word(68)},
               {"DirtyLevel", 67},
               {"NoiseLevel", 68},
               {"RawIntensity", 66},
               {"Area", word(70)},
               {"Peak", 74}};
  int id = 0;
  for (const auto &c : cases) {
    ASSERT_EQ(FilterRanges::attributeIdOf(c.name), id) << c.name;
    EXPECT_FLOAT_EQ(FilterRanges::valueOf(id, point), static_cast<float>(c.expected)) << c.name;
    ++id;
  }
  EXPECT_EQ(FilterRanges::attributeIdOf("rfl"), std::nullopt);
}

TEST(FilterRanges, TheFirstRangeThatHoldsThePointDecides) {
  FilterRanges ranges;
  SDKPointInfo point{};
  point.channel = 4;
  point.intensity = 10;
  EXPECT_EQ(ranges.outcomeOf(point), RangeOutcome::None);
  ranges.byAttribute[6] = {{10, 10, false}, {0, 20, true}};
  EXPECT_EQ(ranges.outcomeOf(point), RangeOutcome::Highlight) << "both ends belong to a range";
  ranges.byAttribute[0] = {{5, 1, false}, {1, 4, true}};
  EXPECT_EQ(ranges.outcomeOf(point), RangeOutcome::Hide) << "a lower attribute comes first, turned ranges hold nothing";
}

}  // namespace
}  // namespace tarvo::skarnvisor
