#include "default/point_files/readers/number_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

namespace tarvo::skarnvisor {
namespace {

/// With nothing behind the line that may be looked at, and with the next line there: both must read the same.
template <typename Number>
bool parse(const std::string &text, Number &value) {
  const std::string longer = text + "\n" + std::string(24, '8');
  Number other = value;
  const bool good = NumberLine(text.data(), text.data() + text.size()).read(value);
  EXPECT_EQ(NumberLine(longer.data(), longer.data() + text.size(), 25).read(other), good) << text;
  EXPECT_EQ(std::memcmp(&other, &value, sizeof value), 0) << text;
  return good;
}

TEST(NumberText, FloatsReadAsTheStandardLibraryReadsThem) {
  std::mt19937 random(7);
  const char *const formats[] = {"%g", "%.9g", "%.3f", "%.7e", "%.12f", "%.17g", "%.25g", "+%.8g"};
  char text[128];
  for (int i = 0; i < 200000; ++i) {
    auto wide = static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(random())));
    if (!std::isfinite(wide)) continue;
    if (i % 3 != 0)
      wide = std::ldexp(wide, -std::ilogb(wide == 0.0 ? 1.0 : wide) + static_cast<int>(random() % 20) - 8);
    const char *const format = formats[static_cast<std::size_t>(i) % std::size(formats)];
    if (*format == '+' && wide < 0) wide = -wide;
    std::snprintf(text, sizeof text, format, wide);
    const float expected = std::strtof(text, nullptr);
    if (std::isinf(expected)) continue;
    float value = -77.0F;
    ASSERT_TRUE(parse(text, value)) << text;
    ASSERT_EQ(std::bit_cast<std::uint32_t>(value), std::bit_cast<std::uint32_t>(expected)) << text;
  }
}

TEST(NumberText, HalfwayCasesRoundOnce) {
  // Between two floats by less than a double can show: rounding to a double first would go the wrong way.
  for (const char *text : {"1.00000005960464477539062500000001", "1.000000059604644775390625", "16777217", "16777219",
                           "9007199791611905", "7.0064923216240861e-46", "1.17549432e-38"}) {
    float value = 0.0F;
    ASSERT_TRUE(parse(text, value)) << text;
    EXPECT_EQ(value, std::strtof(text, nullptr)) << text;
  }
}

TEST(NumberText, OddSpellings) {
  struct Case {
    const char *text;
    bool good;
    float value;
  };
  const Case cases[] = {{"1.", true, 1.0F},
                        {".5", true, 0.5F},
                        {"-.5e1", true, -5.0F},
                        {"+2", true, 2.0F},
                        {"1e-400", true, 0.0F},
                        {"0e999999", true, 0},
                        {"1e40", false, 0},
                        {"1e999999", false, 0},
                        {"", false, 0},
                        {".", false, 0},
                        {"-", false, 0},
                        {"+-1", false, 0},
                        {"--1", false, 0},
                        {"++1", false, 0},
                        {"1e", false, 0},
                        {"1e+", false, 0},
                        {"1,5", false, 0},
                        {"1.2.3", false, 0},
                        {"0x10", false, 0},
                        {"abc", false, 0},
                        {"0.0000000000000000000000000000000000000000000000000000000001", true, 0.0F}};
  for (const Case &c : cases) {
    float value = 0.0F;
    EXPECT_EQ(parse(c.text, value), c.good) << c.text;
    EXPECT_EQ(value, c.value) << c.text;
  }
  float value = 0.0F;
  EXPECT_FALSE(parse(std::string("1\0002", 3), value)) << "a NUL inside a number";
  for (const char *text : {"nan", "NaN", "-nan"}) {
    value = 0.0F;
    EXPECT_TRUE(parse(text, value) && std::isnan(value)) << text;
  }
  for (const char *text : {"inf", "Infinity", "-INF"}) {
    value = 0.0F;
    EXPECT_TRUE(parse(text, value) && std::isinf(value) && (value < 0) == (*text == '-')) << text;
  }
}

TEST(NumberText, WholeNumbersOfEveryLength) {
  const std::pair<const char *, int> cases[] = {
      {"0", 0},      {"7", 7},      {"42", 42},     {"00042", 42},       {"65535", 65535},
      {"65536", -1}, {"99999", -1}, {"123456", -1}, {"000000000001", 1}, {"-1", 65535},
      {"1.5", -1},   {"1x", -1},    {"", -1}};
  for (const auto &[text, expected] : cases) {
    std::uint16_t value = 0;
    EXPECT_EQ(parse(text, value), expected >= 0) << text;
    if (expected >= 0) {
      EXPECT_EQ(value, expected) << text;
    }
  }
}

TEST(NumberText, ALineOfManyNumbers) {
  const std::string line = "-12.3456789 0.5 -0 7 1234567 12345678 .25 -.5 100000.25 1e3 123456789012.5 3.";
  const std::string text = line + "\n" + std::string(24, '9');
  const float expected[] = {-12.3456789F, 0.5F,  -0.0F,      7.0F, 1234567.0F,      12345678.0F,
                            0.25F,        -0.5F, 100000.25F, 1e3F, 123456789012.5F, 3.0F};
  NumberLine numbers(text.data(), text.data() + line.size(), 25);
  for (const float wanted : expected) {
    float value = -1.0F;
    ASSERT_TRUE(numbers.read(value)) << wanted;
    EXPECT_EQ(std::bit_cast<std::uint32_t>(value), std::bit_cast<std::uint32_t>(wanted));
  }
  float value = 0.0F;
  EXPECT_FALSE(numbers.read(value)) << "the next line is not this one's";
}

}  // namespace
}  // namespace tarvo::skarnvisor
