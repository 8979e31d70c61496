#include <CLI/CLI.hpp>
#include <QAbstractItemModel>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QMatrix4x4>
#include <QRegularExpression>
#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "app/cli/capture_options.h"
#include "app/cli/interrupt.h"
#include "app/cli/progress_bar.h"
#include "app/cli/source_command.h"
#include "app/cli/tool_options.h"
#include "app/session/capture_session.h"

namespace tarvo::skarnvisor::app {
namespace {

struct ExportOptions : SourceOptions {
  std::optional<Span<int>> frames;
  QString format;      ///< "pcd" or "csv"
  QStringList fields;  ///< empty: those that are on by default, or every column
  QString out;
  QString selectionFile;  ///< empty: all visible points
  std::vector<ToolChoice> tools;
};

/// Begins with the frame's number for people, and tells its time as a folder of point files reads it: the digits around
/// the first dot are seconds.
QString fileName(int frame, double seconds, const QString &format) {
  return QStringLiteral("frame-%1_%2.%3").arg(frame, 4, 10, QLatin1Char('0')).arg(seconds, 0, 'f', 6).arg(format);
}

QStringList namesOf(QObject &object, const char *function) {
  QStringList names;
  QMetaObject::invokeMethod(&object, function, Qt::DirectConnection, Q_RETURN_ARG(QStringList, names));
  return names;
}

/// Sixteen numbers, row by row: the matrix that turns a point into the selection's box.
QString readMatrix(const QString &path, QMatrix4x4 &matrix) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
    return QStringLiteral("%1 cannot be read: %2").arg(path, file.errorString());
  constexpr qint64 most = 64 * 1024;
  const QStringList words =
      QString::fromLatin1(file.read(most)).split(QRegularExpression(QStringLiteral("[\\s,;]+")), Qt::SkipEmptyParts);
  std::array<float, 16> numbers{};
  bool good = words.size() == static_cast<int>(numbers.size());
  for (std::size_t i = 0; good && i < numbers.size(); ++i) numbers[i] = words[static_cast<int>(i)].toFloat(&good);
  matrix = QMatrix4x4(numbers.data());
  return good ? QString() : QStringLiteral("%1: a matrix is sixteen numbers, row by row").arg(path);
}

/// Waits for the plug-in's writing of one file.
class ExportWait : public QObject {
  Q_OBJECT

 public:
  explicit ExportWait(QObject *work) : m_work(work) {
    connect(work, SIGNAL(finished(bool, QString)), this, SLOT(end(bool, QString)));
    connect(work, SIGNAL(progressChanged()), this, SLOT(look()));
  }

  /// Empty, or why the file was not written.
  QString write(QObject &buffer, const QString &file, const QStringList &titles) {
    m_ended = false;
    bool started = false;
    QMetaObject::invokeMethod(&buffer, "startExport", Qt::DirectConnection, Q_RETURN_ARG(bool, started),
                              Q_ARG(QString, file), Q_ARG(QStringList, titles));
    if (!started) return QStringLiteral("another export is under way");
    if (!m_ended) m_loop.exec();
    return m_fault;
  }

 private Q_SLOTS:
  void end(bool written, const QString &reason) {
    m_ended = true;
    m_fault = written ? QString() : reason.isEmpty() ? QStringLiteral("interrupted") : reason;
    m_loop.quit();
  }
  void look() {
    if (Interrupt::came()) QMetaObject::invokeMethod(m_work, "cancel", Qt::DirectConnection);
  }

 private:
  QObject *m_work;
  QEventLoop m_loop;
  QString m_fault;
  bool m_ended = false;
};

/// The frames of a span, each into a file of its own.
class Exporter {
 public:
  Exporter(CaptureSession &session, const ExportOptions &options)
      : m_session(session), m_options(options), m_buffer(*session.view().buffer()) {}

  QString run();

 private:
  bool asTable() const { return m_options.format == QLatin1String("csv"); }
  QString takeSpan();
  QString takeSelection();
  QString takeFields();
  QString takeColumns();
  double secondsOf(int frame) const;
  QString writeFrames();
  QString finish(int planned) const;

  CaptureSession &m_session;
  const ExportOptions &m_options;
  QObject &m_buffer;
  Span<int> m_span;
  QStringList m_titles;
  int m_written = 0;
  int m_empty = 0;
  int m_unread = 0;
};

QString Exporter::takeSpan() {
  m_span = m_options.frames.value_or(Span<int>{0, m_session.frameCount() - 1});
  if (m_span.last < m_session.frameCount()) return {};
  return QStringLiteral("there is no frame %1: the capture has frames 0 to %2")
      .arg(m_span.last)
      .arg(m_session.frameCount() - 1);
}

QString Exporter::takeSelection() {
  if (m_options.selectionFile.isEmpty()) return {};
  QMatrix4x4 matrix;
  const QString fault = readMatrix(m_options.selectionFile, matrix);
  if (!fault.isEmpty()) return fault;
  m_buffer.setProperty("selectionMatrix", matrix);
  m_buffer.setProperty("selectEnabled", true);
  return {};
}

QString Exporter::takeFields() {
  const QStringList names = namesOf(m_buffer, "getPcdFieldListString");
  for (const QString &field : m_options.fields)
    if (!names.contains(field))
      return QStringLiteral("there is no field \"%1\"; this lidar has %2").arg(field, names.join(QStringLiteral(", ")));
  for (int i = 0; i < names.size() && !m_options.fields.isEmpty(); ++i)
    QMetaObject::invokeMethod(&m_buffer, "setPcdFieldEnabled", Qt::DirectConnection, Q_ARG(int, i),
                              Q_ARG(bool, m_options.fields.contains(names[i])));
  return {};
}

/// A column goes by its title, or by what stands in front of the unit: "x" for "x(m)".
QString Exporter::takeColumns() {
  auto *const table = m_buffer.property("spreadSheetModel").value<QObject *>();
  if (table == nullptr) return QStringLiteral("this source has no point table");
  const QStringList titles = table->property("columnNames").toStringList();
  for (const QString &field : m_options.fields) {
    QString found;
    for (const QString &title : titles)
      if (found.isEmpty() && (title == field || title.startsWith(field + QLatin1Char('(')))) found = title;
    if (found.isEmpty())
      return QStringLiteral("there is no column \"%1\"; this lidar has %2")
          .arg(field, titles.join(QStringLiteral(", ")));
    m_titles.append(found);
  }
  table->setProperty("allDisplayed", m_options.selectionFile.isEmpty());
  m_buffer.setProperty("spreadSheetEnabled", true);
  return {};
}

double Exporter::secondsOf(int frame) const {
  double seconds = 0;
  QMetaObject::invokeMethod(m_session.pipeline()->clipObject(), "getFrameStartSeconds", Qt::DirectConnection,
                            Q_RETURN_ARG(double, seconds), Q_ARG(int, frame));
  return seconds;
}

QString Exporter::writeFrames() {
  const int planned = m_span.last - m_span.first + 1;
  ExportWait wait(m_buffer.property("pointExport").value<QObject *>());
  ProgressBar bar(QStringLiteral("exporting"));
  for (int frame = m_span.first; frame <= m_span.last; ++frame) {
    if (Interrupt::came()) return QStringLiteral("interrupted after %1 of %2 frames").arg(m_written).arg(planned);
    const QString fault = m_session.showFrame(frame);
    if (!fault.isEmpty()) return fault;
    if (!m_session.frameFault().isEmpty()) {
      // The next frame may be good.
      std::fprintf(stderr, "skarnvisor: frame %d: %s\n", frame, m_session.frameFault().toLocal8Bit().constData());
      ++m_unread;
    } else if (!m_buffer.property("showsFrame").toBool()) {
      ++m_empty;  // the picture is an earlier frame's
    } else {
      const QString file = QDir(m_options.out).filePath(fileName(frame, secondsOf(frame), m_options.format));
      const QString reason = wait.write(m_buffer, file, m_titles);
      if (!reason.isEmpty()) return QStringLiteral("%1 could not be written: %2").arg(file, reason);
      ++m_written;
    }
    bar.show(frame - m_span.first + 1, planned);
  }
  return {};
}

QString Exporter::finish(int planned) const {
  std::printf("%d of %d frames written to %s\n", m_written, planned,
              qPrintable(QDir::toNativeSeparators(m_options.out)));
  if (m_empty == planned) return QStringLiteral("no frame has a visible point");
  if (m_empty > 0) std::printf("%d frames have no visible point\n", m_empty);
  return m_unread == 0 ? QString() : QStringLiteral("%1 of %2 frames could not be read").arg(m_unread).arg(planned);
}

QString Exporter::run() {
  QString fault = takeSpan();
  if (fault.isEmpty() && !QDir().mkpath(m_options.out))
    fault = QStringLiteral("the folder %1 cannot be made").arg(m_options.out);
  if (fault.isEmpty()) fault = applyTools(m_session, m_options.tools);
  if (fault.isEmpty()) fault = takeSelection();
  if (fault.isEmpty()) fault = asTable() ? takeColumns() : takeFields();
  if (fault.isEmpty() && !m_session.waitForPicture()) fault = QStringLiteral("the first frame was not decoded");
  if (fault.isEmpty()) fault = writeFrames();
  return fault.isEmpty() ? finish(m_span.last - m_span.first + 1) : fault;
}

QString run(CaptureSession &session, const ExportOptions &options) {
  const QObject *const buffer = session.view().buffer();
  if (buffer == nullptr || buffer->metaObject()->indexOfProperty("showsFrame") < 0)
    return QStringLiteral("%1 is no capture of a lidar: point files are written by \"convert\"").arg(options.file);
  const Interrupt interrupt;
  return Exporter(session, options).run();
}

}  // namespace

void addExportCommand(CommandLine &line) {
  const auto options = std::make_shared<ExportOptions>();
  CLI::App &command =
      addSourceCommand(line, "export", "Write the points of frames as PCD or CSV files, one a frame", options, run);
  addFile(command, options->file, Sources::Captures)->required();
  addFrames(command, options->frames);
  addText(command, "--format", options->format, "Format to write")->required()->check(CLI::IsMember({"pcd", "csv"}));
  command
      .add_option_function<std::vector<std::string>>(
          "--fields",
          [&fields = options->fields](const std::vector<std::string> &names) {
            for (const std::string &name : names) fields.append(QString::fromStdString(name));
          },
          "PCD fields or table columns, separated by commas (ring,x,y,z,intensity; all columns)")
      ->delimiter(',')
      ->allow_extra_args(false);  // what follows may be the capture
  addText(command, "--out", options->out, "Folder for the files, named frame-NUMBER_SECONDS")->required();
  addText(command, "--selected", options->selectionFile,
          "Only points inside the box of this file's 4x4 matrix, row by row");
  addToolOption(command, options->tools);
  addSensorPort(command, options->sensorPort);
}

}  // namespace tarvo::skarnvisor::app

#include "export_command.moc"
