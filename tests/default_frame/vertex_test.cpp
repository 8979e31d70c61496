#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "default/frame/half_float.h"
#include "default/frame/lanes.h"
#include "default/frame/vertex.h"

namespace tarvo::skarnvisor {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();

TEST(Vertex, RoundsMetresToMillimetresAwayFromZeroAndLimitsThem) {
  const struct {
    float metres;
    int millimetres;
  } cases[] = {{0.0F, 0},
               {-0.0F, 0},
               {0.0004F, 0},
               {-0.0004F, 0},
               {0.0006F, 1},
               {-0.0006F, -1},
               {1.2345F, 1235},
               {-1.2345F, -1235},
               {0.5F, 500},
               {1048.575F, 1048575},
               {2000.0F, 1048575},
               {-1048.576F, -1048576},
               {-2000.0F, -1048576},
               {infinity, 1048575},
               {-infinity, -1048576}};
  for (const auto &c : cases) {
    EXPECT_EQ(millimetresFromMetres(c.metres), c.millimetres) << c.metres;
  }
}

TEST(Vertex, PacksThreeCoordinatesBitByBit) {
  // x = 1 mm, y = -1 mm (21 ones), z = 2 mm: word 0 holds x and the low 11 bits of y.
  const Vertex vertex = packVertex(0.001F, -0.001F, 0.002F, 0x12345678U);
  EXPECT_EQ(vertex.low, 1U | 0x7ffU << 21);
  EXPECT_EQ(vertex.high, 0x3ffU | 2U << 10);
  EXPECT_EQ(vertex.color, 0x12345678U);
  EXPECT_EQ(packVertex(0, 0, -0.001F, 0).high >> 31, 0U) << "the top bit stays 0";
}

TEST(Vertex, GivesBackWhatWasPacked) {
  for (const float metres : {-1048.576F, -300.001F, -0.001F, 0.0F, 0.001F, 77.777F, 1048.575F}) {
    const int expected = static_cast<int>(std::lround(static_cast<double>(metres) * 1000.0));
    EXPECT_EQ(unpackPosition(packVertex(metres, 1, -1, 0)), (MillimetrePosition{expected, 1000, -1000}));
    EXPECT_EQ(unpackPosition(packVertex(-1, metres, 1, 0)), (MillimetrePosition{-1000, expected, 1000}));
    EXPECT_EQ(unpackPosition(packVertex(1, -1, metres, 0)), (MillimetrePosition{1000, -1000, expected}));
  }
}

TEST(HalfFloat, ReadsEveryHalfAsTheCompilerDoes) {
  for (unsigned bits = 0; bits < 65536; ++bits) {
    const auto half = static_cast<std::uint16_t>(bits);
    const auto expected = static_cast<float>(std::bit_cast<_Float16>(half));
    const float actual = floatFromHalf(half);
    if (std::isnan(expected)) {
      EXPECT_TRUE(std::isnan(actual)) << bits;
      EXPECT_TRUE(std::isnan(floatFromHalf(halfFromFloat(actual)))) << bits;
    } else {
      EXPECT_EQ(std::bit_cast<std::uint32_t>(actual), std::bit_cast<std::uint32_t>(expected)) << bits;
      EXPECT_EQ(halfFromFloat(actual), half) << bits;
    }
  }
}

TEST(HalfFloat, CutsOffWhatLiesBetweenTwoHalves) {
  for (unsigned bits = 0; bits < 0x7bff; ++bits) {
    const auto half = static_cast<std::uint16_t>(bits);
    const float above = floatFromHalf(static_cast<std::uint16_t>(bits + 1));
    const float justBelow = std::nextafter(above, 0.0F);
    ASSERT_EQ(halfFromFloat(justBelow), half) << bits;
    ASSERT_EQ(halfFromFloat(-justBelow), half | 0x8000U) << bits;
  }
}

TEST(HalfFloat, GoesToInfinityAndZeroAtTheEnds) {
  const struct {
    float value;
    unsigned half;
  } cases[] = {
      {-1.0F, 0xbc00},   {2.0F, 0x4000},    {65535.9F, 0x7bff}, {65536.0F, 0x7c00},
      {1e30F, 0x7c00},   {-1e30F, 0xfc00},  {infinity, 0x7c00}, {-infinity, 0xfc00},
      {5.9e-8F, 0x0000}, {6.0e-8F, 0x0001}, {-1e-30F, 0x8000},  {1e-40F, 0x0000},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(halfFromFloat(c.value), c.half) << c.value;
  }
  // A NaN whose payload sits in the low bits alone must not turn into an infinity.
  EXPECT_TRUE(std::isnan(floatFromHalf(halfFromFloat(std::bit_cast<float>(0x7f800001U)))));
}

TEST(Lanes, GiveWhatTheOneValueFormsGive) {
  std::vector<float> values{0.0F,      -0.0F,   infinity, -infinity, std::bit_cast<float>(0x7f800001U),
                            6.0e-8F,   1e-40F,  65535.9F, 65536.0F,  -1048.576F,
                            1048.575F, 2000.0F, 0.0005F,  -0.0006F};
  for (std::uint32_t bits = 0; bits < 0xff000000U; bits += 0x003fff1dU) {  // every exponent, both signs
    values.push_back(std::bit_cast<float>(bits));
  }
  const std::size_t n = values.size();
  for (std::size_t i = 0; i < n; ++i) {
    const std::array<float, 4> a{values[i], values[(i + 1) % n], values[(i + 2) % n], values[(i + 3) % n]};
    const std::array<float, 4> b{a[3], a[0], a[2], a[1]};
    const std::array<std::uint32_t, 4> colors{1, 2, 3, 4};
    std::array<std::uint32_t, 4> words;
    std::array<Vertex, 4> vertices;
    lanes::halfWords(a.data(), b.data(), words.data());
    lanes::packVertices(a.data(), b.data(), a.data(), colors.data(), vertices.data());
    for (std::size_t k = 0; k < 4; ++k) {
      ASSERT_EQ(words[k], halfFromFloat(b[k]) << 16 | halfFromFloat(a[k])) << a[k] << ' ' << b[k];
      ASSERT_EQ(vertices[k], packVertex(a[k], b[k], a[k], colors[k])) << a[k] << ' ' << b[k];
    }
  }
}

}  // namespace
}  // namespace tarvo::skarnvisor
