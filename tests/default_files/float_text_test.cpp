// The fast texts of numbers against those of the standard stream and of QString, byte for byte.
#include "default/files/float_text.h"

#include <QString>

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace tarvo::skarnvisor::test {
namespace {

template <typename Write>
std::string textOf(const Write &write) {
  std::array<char, longestNumberText> out;
  return {out.data(), write(out.data())};
}

class FloatText : public testing::Test {
 protected:
  FloatText() { m_fixed << std::fixed, m_fixed.precision(6); }

  void check(float value) {
    const std::string where = "bits " + std::to_string(std::bit_cast<std::uint32_t>(value));
    ASSERT_EQ(textOf([&](char *out) { return writeGeneral(out, value); }), streamed(m_general, value)) << where;
    ASSERT_EQ(textOf([&](char *out) { return writeSixDecimals(out, value); }), streamed(m_fixed, value)) << where;
    for (const int decimals : {3, 5, 6}) checkDecimals(value, decimals);
  }

  void checkDouble(double value) {
    ASSERT_EQ(textOf([&](char *out) { return writeSixDecimals(out, value); }), streamed(m_fixed, value)) << value;
    checkDecimals(value, 3);
  }

 private:
  static void checkDecimals(double value, int decimals) {
    ASSERT_EQ(textOf([&](char *out) { return writeDecimals(out, value, decimals); }),
              QStringLiteral("%1").arg(value, 0, 'f', decimals, QLatin1Char(' ')).toStdString())
        << decimals << " decimals of " << std::to_string(std::bit_cast<std::uint64_t>(value));
  }
  template <typename Number>
  static std::string streamed(std::ostringstream &stream, Number value) {
    stream.str({});
    stream << value;
    return stream.str();
  }

  std::ostringstream m_general;
  std::ostringstream m_fixed;
};

TEST_F(FloatText, EqualsTheStreamsTextForAnyBits) {
  std::mt19937 random(7);
  for (int i = 0; i < 60'000 && !HasFatalFailure(); ++i)
    check(std::bit_cast<float>(static_cast<std::uint32_t>(random())));
}

TEST_F(FloatText, EqualsTheStreamsTextAtEveryEdge) {
  using Limits = std::numeric_limits<float>;
  std::vector<float> edges{
      0.0F,         Limits::min(), Limits::denorm_min(), Limits::max(), Limits::infinity(), Limits::quiet_NaN(),
      8'388'608.0F, 16'777'216.0F, 999'999.5F,           999'999.0F};
  for (int power = -12; power <= 12; ++power)
    for (const double digit : {1.0, 5.0, 9.9999949, 9.9999951, 9.99999, 9.999995})
      edges.push_back(static_cast<float>(digit * std::pow(10.0, power)));
  for (int power = 1; power < 40; ++power)  // exact halves of the last decimal among them
    for (const int odd : {1, 3, 5, 7, 1001, 12345, 1048577})
      edges.push_back(std::ldexp(static_cast<float>(odd), -power));
  for (const float edge : edges)
    for (const float near :
         {edge, std::nextafter(edge, Limits::infinity()), std::nextafter(edge, -Limits::infinity())}) {
      check(near);
      check(-near);
      if (HasFatalFailure()) return;
    }
}

TEST_F(FloatText, EqualsTheStreamsTextForDoubles) {
  std::mt19937_64 random(9);
  std::uniform_real_distribution<double> seconds(0.0, 2e9);
  for (int i = 0; i < 20'000 && !HasFatalFailure(); ++i) {
    checkDouble(seconds(random));
    checkDouble(std::bit_cast<double>(random()));
  }
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
