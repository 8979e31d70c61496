#include "app/cli/point_file_rows.h"

#include <QFileInfo>
#include <QMap>

#include "app/session/capture_session.h"

namespace tarvo::skarnvisor::app {

QStringList pointFilesOf(CaptureSession &session) {
  QStringList files;
  QObject *const clip = session.pipeline() ? session.pipeline()->clip() : nullptr;
  if (clip != nullptr && clip->metaObject()->indexOfMethod("fileList()") >= 0)
    QMetaObject::invokeMethod(clip, "fileList", Qt::DirectConnection, Q_RETURN_ARG(QStringList, files));
  return files;
}

void addPointFileRows(Report &report, CaptureSession &session, const QStringList &files) {
  QMap<QString, int> kinds;
  for (const QString &file : files) ++kinds[QFileInfo(file).suffix().toLower()];
  QStringList parts;
  for (auto kind = kinds.cbegin(); kind != kinds.cend(); ++kind)
    parts.append(QStringLiteral("%1 %2").arg(grouped(kind.value()), kind.key()));
  report.add("type", QStringLiteral("point files"));
  report.add("files", parts.join(QStringLiteral(", ")));
  report.add("frames", grouped(session.frameCount()));
  const Timeline &timeline = session.timeline();
  // A file that was opened by itself may have a name without a time; it lies at the clock's zero then.
  if (timeline.beginSeconds() == 0.0 && files.size() == 1) return;
  report.add("time span", QStringLiteral("%1 to %2")
                              .arg(timeText(timeFromSeconds(timeline.beginSeconds())),
                                   timeText(timeFromSeconds(timeline.endSeconds()))));
  report.add("duration", QStringLiteral("%1 s").arg(timeline.endSeconds() - timeline.beginSeconds(), 0, 'f', 3));
}

qint64 sizeOf(const QStringList &files) {
  qint64 bytes = 0;
  for (const QString &file : files) bytes += QFileInfo(file).size();
  return bytes;
}

}  // namespace tarvo::skarnvisor::app
