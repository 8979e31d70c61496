#include "app/cli/capture_rows.h"

namespace tarvo::skarnvisor::app {
namespace {

constexpr std::size_t gapsListed = 5;

QString gapText(const lidar::CaptureReport &health) {
  QString text = grouped(health.gapCount);
  const std::size_t listed = std::min(gapsListed, health.gaps.size());
  for (std::size_t i = 0; i < listed; ++i)
    text += QStringLiteral("%1 %2 s after frame %3")
                .arg(i == 0 ? QStringLiteral(":") : QStringLiteral(","))
                .arg(health.gaps[i].seconds, 0, 'f', 3)
                .arg(health.gaps[i].afterFrame);
  return health.gapCount > listed ? text + QStringLiteral(", ...") : text;
}

}  // namespace

void addHealthRows(Report &report, const lidar::CaptureReport &health) {
  report.add("packets", grouped(health.packets));
  report.add("packets lost", grouped(health.lost));
  report.add("packets out of order", grouped(health.disordered));
  report.add("packets repeated", grouped(health.repeated));
  report.add("gaps", gapText(health));
  const auto addIfAny = [&report](const char *name, std::uint64_t count) {
    if (count != 0) report.add(name, grouped(count));
  };
  addIfAny("packets dropped by this machine", health.kernelDrops);
  addIfAny("packets of frames that were over", health.late);
  addIfAny("damaged packets", health.damaged);
  addIfAny("packets of other sensors", health.foreign);
  addIfAny("unreadable records", health.unreadable);
  addIfAny("jumps of the clock", health.clockJumps);
  addIfAny("changes of the frame size", health.shapeChanges);
  if (health.truncated) report.add("end", QStringLiteral("the file ends inside a packet or is damaged"));
  for (const lidar::CaptureSensor &sensor : health.sensors)
    report.add("sensor", QStringLiteral("port %1, %2, %3 packets%4")
                             .arg(sensor.port)
                             .arg(sensor.type.empty() ? QStringLiteral("type unknown")
                                                      : QString::fromLocal8Bit(sensor.type.c_str()),
                                  grouped(sensor.packets), sensor.shown ? QStringLiteral(", shown") : QString()));
}

}  // namespace tarvo::skarnvisor::app
