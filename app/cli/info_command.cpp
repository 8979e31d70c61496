#include <QFileInfo>
#include <cstdio>

#include "app/cli/capture_rows.h"
#include "app/cli/commands.h"
#include "app/cli/point_file_rows.h"
#include "app/cli/report.h"
#include "app/render/cloud_statistics.h"
#include "app/session/capture_session.h"

namespace tarvo::skarnvisor::app {

QString runInfo(CaptureSession &session, const Options &options) {
  QString fault = session.showFrame(0);
  if (fault.isEmpty()) fault = session.frameFault();
  if (!fault.isEmpty()) return fault;
  const PointCounts counts = countPoints(session.view().cloud());
  Report report;
  addCaptureRows(report, session);
  report.add("channels", grouped(session.view().channelCount()));
  report.add("points of the first frame", grouped(counts.shown + counts.hidden));
  report.add("points shown", grouped(counts.shown));
  const QStringList pointFiles = pointFilesOf(session);
  const qint64 bytes = pointFiles.isEmpty() ? QFileInfo(options.file).size() : sizeOf(pointFiles);
  report.add("size", QStringLiteral("%1 bytes").arg(grouped(bytes)));
  if (pointFiles.isEmpty()) addHealthRows(report, session.captureReport());
  report.print();
  return {};
}

}  // namespace tarvo::skarnvisor::app
