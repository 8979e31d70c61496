#include "app/window/named_files.h"

#include <QFile>

#include "contracts/host/log.h"
#include "contracts/host/render_buffer.h"
#include "contracts/host/track_buffer.h"

SKARN_LOG_SOURCE("app/named_files");

namespace tarvo::skarnvisor::app {
namespace {

const QString plainRender = QStringLiteral("parts/CloudLegends.qml");
const QString plainTrackBody = QStringLiteral("parts/TrackLane.qml");
const QString plainTrackPoint = QStringLiteral("parts/TrackPoint.qml");

QUrl fileOr(const QString &name, const QString &plain) {
  const QUrl file = programFile(name);
  if (!file.isEmpty()) return file;
  if (!name.isEmpty())
    SKARN_LOG(LogLevel::Warning, "The plug-in names %s, which this program does not have: %s is shown.",
              qPrintable(name), qPrintable(plain));
  return programFile(plain);
}

}  // namespace

QUrl programFile(const QString &name) {
  const QString path = QStringLiteral(":/skarnvisor/") + name;
  return name.isEmpty() || !QFile::exists(path) ? QUrl() : QUrl(QStringLiteral("qrc") + path);
}

NamedFiles::NamedFiles() : trackBody(programFile(plainTrackBody)), trackPoint(programFile(plainTrackPoint)) {}

NamedFiles namedFiles(const RenderBuffer *buffer, const TrackBuffer *track) {
  NamedFiles files;
  files.render = fileOr(buffer != nullptr ? buffer->renderSource() : QString(), plainRender);
  files.trackBody = fileOr(track != nullptr ? track->trackBody() : QString(), plainTrackBody);
  files.trackPoint = fileOr(track != nullptr ? track->trackPointSource() : QString(), plainTrackPoint);
  return files;
}

}  // namespace tarvo::skarnvisor::app
