#include <CLI/CLI.hpp>
#include <QByteArray>
#include <QFileInfo>
#include <cstdio>

#include "app/cli/capture_rows.h"
#include "app/cli/point_file_rows.h"
#include "app/cli/report.h"
#include "app/cli/source_command.h"
#include "app/render/cloud_statistics.h"
#include "app/session/capture_session.h"

namespace tarvo::skarnvisor::app {
namespace {

/// Shows frame 0, or of a folder the first whose file can be read; those before it are named.
QString showFirstReadable(CaptureSession &session, const QStringList &pointFiles, int &frame) {
  for (frame = 0;; ++frame) {
    QString fault = session.showFrame(frame);
    if (!fault.isEmpty()) return fault;
    fault = session.frameFault();
    if (fault.isEmpty() || frame + 1 >= pointFiles.size()) return fault;
    std::fprintf(stderr, "skarnvisor: %s: %s\n", pointFiles.at(frame).toLocal8Bit().constData(),
                 fault.toLocal8Bit().constData());
  }
}

QString run(CaptureSession &session, const SourceOptions &options) {
  const QStringList pointFiles = pointFilesOf(session);
  int frame = 0;
  const QString fault = showFirstReadable(session, pointFiles, frame);
  if (!fault.isEmpty()) return fault;
  const PointCounts counts = countPoints(session.view().cloud());
  Report report;
  addCaptureRows(report, session);
  report.add("channels", grouped(session.view().channelCount()));
  const QByteArray which =
      frame == 0 ? QByteArray("the first frame") : QByteArray("frame ") + QByteArray::number(frame);
  const QByteArray title = QByteArray("points of ") + which;
  report.add(title.constData(), grouped(counts.shown + counts.hidden));
  report.add("points shown", grouped(counts.shown));
  const qint64 bytes = pointFiles.isEmpty() ? QFileInfo(options.file).size() : sizeOf(pointFiles);
  report.add("size", QStringLiteral("%1 bytes").arg(grouped(bytes)));
  if (pointFiles.isEmpty()) addHealthRows(report, session.captureReport());
  report.print();
  return {};
}

}  // namespace

void addInfoCommand(CommandLine &line) {
  const auto options = std::make_shared<SourceOptions>();
  CLI::App &command =
      addSourceCommand(line, "info", "Print lidar type, port, channels, frames, points, times and size", options, run);
  addFile(command, options->file, Sources::Files)->required();
  addSensorPort(command, options->sensorPort);
}

}  // namespace tarvo::skarnvisor::app
