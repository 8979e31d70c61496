#include "app/session/health_text.h"

#include <QStringList>
#include <utility>

namespace tarvo::skarnvisor::app {

QString healthText(const lidar::CaptureReport &health, int skippedFrames) {
  const std::pair<std::uint64_t, const char *> counts[]{
      {health.lost, "packets lost"},
      {health.kernelDrops, "of them dropped by this machine"},
      {health.disordered, "out of order"},
      {health.repeated, "repeated"},
      {health.late, "too late"},
      {health.damaged, "damaged"},
      {health.unreadable, "unreadable"},
      {health.clockJumps, "jumps of the clock"},
      {health.shapeChanges, "changes of the frame size"},
      {static_cast<std::uint64_t>(skippedFrames), "frames skipped"},
  };
  QStringList parts;
  for (const auto &[count, what] : counts)
    if (count != 0) parts << QStringLiteral("%1 %2").arg(count).arg(QLatin1String(what));
  if (health.stoppedShort) parts << QStringLiteral("read in part only");
  if (health.truncated) parts << QStringLiteral("the file is cut short");
  if (!health.recording.fault.empty()) parts << QString::fromLocal8Bit(health.recording.fault.c_str());
  return parts.join(QStringLiteral(", "));
}

}  // namespace tarvo::skarnvisor::app
