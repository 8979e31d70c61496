#pragma once

#include <QDateTime>
#include <QString>
#include <chrono>
#include <cstdint>
#include <ratio>

namespace tarvo::skarnvisor {

/// The one unit of time of the timeline: 100 ns, 10,000,000 to the second.
using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
/// Ticks since 1970-01-01 00:00 UTC.
using TimePoint = std::chrono::time_point<std::chrono::system_clock, Ticks>;

inline constexpr std::int64_t ticksPerSecond = Ticks::period::den;

/// Seconds to ticks, truncated towards zero. Values that don't fit, and NaN, give the nearest end of the range, NaN 0.
[[nodiscard]] Ticks ticksFromSeconds(double seconds);
[[nodiscard]] inline double secondsFromTicks(Ticks ticks) {
  return static_cast<double>(ticks.count()) / static_cast<double>(ticksPerSecond);
}
[[nodiscard]] inline double secondsOf(TimePoint time) { return secondsFromTicks(time.time_since_epoch()); }
[[nodiscard]] inline TimePoint timeFromSeconds(double seconds) { return TimePoint(ticksFromSeconds(seconds)); }

/// Local time, cut down to whole milliseconds.
[[nodiscard]] QDateTime toQDateTime(TimePoint time);
/// An invalid date gives the epoch.
[[nodiscard]] TimePoint fromQDateTime(const QDateTime &dateTime);

/// The text that the timeline shows for a moment: "yyyy-MM-dd HH:mm:ss.zzz" in local time.
[[nodiscard]] QString timeText(TimePoint time);
/// Reads the text of `timeText`. The fraction may be left out or have up to seven digits; a 'T' may stand for the
/// blank. Text that is no such time gives the epoch.
[[nodiscard]] TimePoint dateMsTimeString2Time(const QString &text);

}  // namespace tarvo::skarnvisor
