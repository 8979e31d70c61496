#include "contracts/host/time.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tarvo::skarnvisor {
namespace {

TEST(Time, SecondsBecomeTicksTruncatedAndNeverOverflow) {
  struct Case {
    double seconds;
    std::int64_t ticks;
  };
  constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
  for (const Case &row : {Case{0.0, 0},
                          {1.0, 10'000'000},
                          {0.00000019, 1},
                          {-0.00000019, -1},
                          {1e30, largest},
                          {-1e30, std::numeric_limits<std::int64_t>::min()},
                          {std::nan(""), 0}}) {
    EXPECT_EQ(ticksFromSeconds(row.seconds).count(), row.ticks) << row.seconds;
  }
}

TEST(Time, TheTextOfAMomentReadsBackToTheMillisecond) {
  for (const std::int64_t ticks : {std::int64_t{16'999'999'991'234'567}, std::int64_t{0}, std::int64_t{-15'000'001}}) {
    const TimePoint time{Ticks(ticks)};
    const TimePoint back = dateMsTimeString2Time(timeText(time));
    EXPECT_LE(back, time);
    EXPECT_LT(time - back, Ticks(10'000)) << timeText(time).toStdString();
  }
}

TEST(Time, TextIsReadToTheTickAndOtherTextIsTheEpoch) {
  const TimePoint whole = dateMsTimeString2Time(QStringLiteral("2024-02-29 12:34:56"));
  ASSERT_NE(whole, TimePoint());
  struct Case {
    const char *text;
    std::int64_t beyondWhole;
  };
  for (const Case &row : {Case{"2024-02-29 12:34:56.789", 7'890'000},
                          {"2024-02-29T12:34:56.7", 7'000'000},
                          {" 2024-02-29 12:34:56.0000001 ", 1}}) {
    EXPECT_EQ((dateMsTimeString2Time(QLatin1String(row.text)) - whole).count(), row.beyondWhole) << row.text;
  }
  for (const char *text : {"", "2023-02-29 12:34:56", "2024-02-29 24:00:00", "2024-02-29",
                           "2024-02-29 12:34:56.12345678", "12:34:56 2024-02-29"}) {
    EXPECT_EQ(dateMsTimeString2Time(QLatin1String(text)), TimePoint()) << text;
  }
}

TEST(Time, ADateTimeKeepsMilliseconds) {
  const TimePoint time{Ticks(16'999'999'991'234'567)};
  EXPECT_EQ(fromQDateTime(toQDateTime(time)), TimePoint(Ticks(16'999'999'991'230'000)));
  EXPECT_EQ(fromQDateTime(QDateTime()), TimePoint());
}

}  // namespace
}  // namespace tarvo::skarnvisor
