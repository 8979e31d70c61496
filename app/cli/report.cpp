#include "app/cli/report.h"

#include <QSaveFile>
#include <cstdio>

#include "app/cli/point_file_rows.h"
#include "app/session/capture_session.h"

namespace tarvo::skarnvisor::app {

QString Report::text() const {
  QString lines;
  for (const auto &[name, value] : m_rows) lines += QStringLiteral("%1: %2\n").arg(name, value);
  return lines;
}

void Report::print() const {
  std::fputs(text().toLocal8Bit().constData(), stdout);
  std::fflush(stdout);
}

QString Report::write(const QString &file) const {
  QSaveFile target(file);
  const bool written =
      target.open(QIODevice::WriteOnly) && target.write(text().toUtf8()) >= 0 && target.flush() && target.commit();
  return written ? QString() : QStringLiteral("%1 could not be written: %2").arg(file, target.errorString());
}

void addCaptureRows(Report &report, CaptureSession &session) {
  if (const QStringList files = pointFilesOf(session); !files.isEmpty())
    return addPointFileRows(report, session, files);
  const Timeline &timeline = session.timeline();
  report.add("type", session.lidarType());
  report.add("port", QString::number(session.port()));
  report.add("frames", grouped(session.frameCount()));
  report.add("time span", QStringLiteral("%1 to %2")
                              .arg(timeText(timeFromSeconds(timeline.beginSeconds())),
                                   timeText(timeFromSeconds(timeline.endSeconds()))));
  report.add("duration", QStringLiteral("%1 s").arg(timeline.endSeconds() - timeline.beginSeconds(), 0, 'f', 3));
}

}  // namespace tarvo::skarnvisor::app
