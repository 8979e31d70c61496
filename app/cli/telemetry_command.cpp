#include <CLI/CLI.hpp>
#include <QAbstractItemModel>
#include <QList>
#include <QStringList>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "app/cli/source_command.h"
#include "app/session/capture_session.h"

namespace tarvo::skarnvisor::app {
namespace {

struct TelemetryOptions : SourceOptions {
  int frame = 0;
  QString csvFile;
};

constexpr int sourceBeganImu = 0;  ///< imuConfig once a sample came; below that none has come

/// What a text cell may hold beside letters would disturb a terminal.
QString printable(QString text) {
  std::replace_if(
      text.begin(), text.end(), [](QChar letter) { return !letter.isPrint(); }, QLatin1Char(' '));
  return text.trimmed();
}

QAbstractItemModel *tableOf(QObject &buffer, const char *property) {
  return qobject_cast<QAbstractItemModel *>(buffer.property(property).value<QObject *>());
}

/// The table in columns as wide as their widest value, under a line with its name.
QString tableText(const char *name, const QAbstractItemModel *table) {
  QString text = QStringLiteral("%1: ").arg(QLatin1String(name));
  const int rows = table != nullptr ? table->rowCount() : 0;
  if (rows == 0) return text + QStringLiteral("none\n");
  text += QStringLiteral("%1 rows\n").arg(rows);
  const int columns = table->columnCount();
  std::vector<QStringList> cells;
  std::vector<int> widths(static_cast<std::size_t>(columns), 0);
  for (int row = 0; row < rows; ++row) {
    QStringList line;
    for (int column = 0; column < columns; ++column) {
      line << printable(table->data(table->index(row, column)).toString());
      int &width = widths[static_cast<std::size_t>(column)];
      width = std::max(width, line.last().size());
    }
    cells.push_back(line);
  }
  for (const QStringList &line : cells) {
    QString shown = QStringLiteral("  ");
    for (int column = 0; column < columns; ++column)
      shown += line[column].leftJustified(widths[static_cast<std::size_t>(column)] + 2);
    text += shown.trimmed().prepend(QStringLiteral("  ")) + QLatin1Char('\n');
  }
  return text;
}

/// Status text line by line; its tabs are for a panel.
QString statusText(QString status) {
  status.replace(QStringLiteral("\t\t"), QStringLiteral("  ")).remove(QLatin1Char('\t'));
  QString text = QStringLiteral("status:\n");
  for (const QString &line : status.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
    text += QStringLiteral("  %1\n").arg(line.trimmed());
  return text;
}

QString imuText(const QObject &buffer, bool sent) {
  if (!sent) return QStringLiteral("imu: none\n");
  QStringList axes;
  for (const double value : buffer.property("imuData").value<QList<double>>()) axes << QString::number(value, 'f', 6);
  return QStringLiteral("imu: acceleration as a unit vector %1\n").arg(axes.join(QLatin1Char(' ')));
}

QString writeCsv(QAbstractItemModel *monitor, const QString &file) {
  bool written = false;
  QMetaObject::invokeMethod(monitor, "exportMonitorInfo", Qt::DirectConnection, Q_RETURN_ARG(bool, written),
                            Q_ARG(QString, file));
  return written ? QString() : QStringLiteral("%1 could not be written").arg(file);
}

QString run(CaptureSession &session, const TelemetryOptions &options) {
  QObject *const buffer = session.view().buffer();
  if (buffer == nullptr || buffer->metaObject()->indexOfProperty("faultmessageModel") < 0)
    return QStringLiteral("%1 is no capture of a lidar: it says nothing of a device").arg(options.file);
  QString fault = session.showFrame(options.frame);
  if (fault.isEmpty()) fault = session.frameFault();
  if (!fault.isEmpty()) return fault;
  // The views open when the frame stands, so that the faults are those of this frame and of none before it.
  const bool imuSent = buffer->property("imuConfig").toInt() >= sourceBeganImu;
  for (const char *view : {"monitorViewEnabled", "faultmessageViewEnabled"}) buffer->setProperty(view, true);
  if (imuSent) buffer->setProperty("imuConfig", 1);
  if (!session.waitForPicture()) return QStringLiteral("frame %1 was not decoded again").arg(options.frame);
  if (!session.frameFault().isEmpty()) return session.frameFault();

  QAbstractItemModel *const monitor = tableOf(*buffer, "monitorModel");
  QString text = QStringLiteral("type: %1\nframe: %2\n").arg(session.lidarType()).arg(options.frame);
  text += statusText(buffer->property("status").toString());
  text += imuText(*buffer, imuSent);
  text += tableText("monitor", monitor);
  text += tableText("faults", tableOf(*buffer, "faultmessageModel"));
  std::fputs(text.toLocal8Bit().constData(), stdout);
  std::fflush(stdout);
  return options.csvFile.isEmpty() ? QString() : writeCsv(monitor, options.csvFile);
}

}  // namespace

void addTelemetryCommand(CommandLine &line) {
  const auto options = std::make_shared<TelemetryOptions>();
  CLI::App &command =
      addSourceCommand(line, "telemetry", "Print what the lidar says of itself at one frame", options, run);
  addFile(command, options->file, Sources::Captures)->required();
  addSensorPort(command, options->sensorPort);
  command.add_option("--frame", options->frame, "Frame, counted from 0 (0)")->check(wholeFrom(0));
  addText(command, "--csv", options->csvFile, "Write the monitor table to this file too");
}

}  // namespace tarvo::skarnvisor::app
