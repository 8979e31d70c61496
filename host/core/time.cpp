#include "contracts/host/time.h"

#include <QRegularExpression>
#include <QTime>
#include <cmath>
#include <limits>

namespace tarvo::skarnvisor {
namespace {

constexpr int fractionDigits = 7;  // a tick is the seventh decimal of a second
constexpr std::int64_t ticksPerMillisecond = ticksPerSecond / 1000;

std::int64_t floorToMilliseconds(std::int64_t ticks) {
  const std::int64_t quotient = ticks / ticksPerMillisecond;
  return ticks % ticksPerMillisecond < 0 ? quotient - 1 : quotient;
}

}  // namespace

Ticks ticksFromSeconds(double seconds) {
  using Limits = std::numeric_limits<Ticks::rep>;
  const double ticks = seconds * static_cast<double>(ticksPerSecond);
  if (std::isnan(ticks)) return Ticks(0);
  if (ticks >= static_cast<double>(Limits::max())) return Ticks(Limits::max());
  if (ticks <= static_cast<double>(Limits::min())) return Ticks(Limits::min());
  return Ticks(static_cast<Ticks::rep>(ticks));
}

QDateTime toQDateTime(TimePoint time) {
  return QDateTime::fromMSecsSinceEpoch(floorToMilliseconds(time.time_since_epoch().count()));
}

TimePoint fromQDateTime(const QDateTime &dateTime) {
  return dateTime.isValid() ? TimePoint(Ticks(dateTime.toMSecsSinceEpoch() * ticksPerMillisecond)) : TimePoint();
}

QString timeText(TimePoint time) { return toQDateTime(time).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")); }

TimePoint dateMsTimeString2Time(const QString &text) {
  static const QRegularExpression form(
      QStringLiteral("^\\s*(\\d{4}-\\d{2}-\\d{2})[ T](\\d{2}:\\d{2}:\\d{2})(?:\\.(\\d{1,7}))?\\s*$"));
  const QRegularExpressionMatch match = form.match(text);
  if (!match.hasMatch()) return {};
  const QDate date = QDate::fromString(match.captured(1), Qt::ISODate);
  const QTime clock = QTime::fromString(match.captured(2), QStringLiteral("HH:mm:ss"));
  if (!date.isValid() || !clock.isValid()) return {};
  const std::int64_t fraction = match.captured(3).leftJustified(fractionDigits, QLatin1Char('0')).toLongLong();
  return fromQDateTime(QDateTime(date, clock)) + Ticks(fraction);
}

}  // namespace tarvo::skarnvisor
