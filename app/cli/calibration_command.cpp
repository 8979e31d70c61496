// "calibration": what a capture or the default files brought, written out; files of the user's, taken in.
#include <CLI/CLI.hpp>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <array>

#include "app/cli/report.h"
#include "app/cli/source_command.h"
#include "app/session/capture_session.h"
#include "contracts/host/log.h"
#include "contracts/runtime/sv_sdk_runtime.h"

namespace tarvo::skarnvisor::app {
namespace {

using lidar::CalibrationTable;
using lidar::SvSdkRuntime;

/// What "calibration" is asked for; with nothing asked it lists the kinds.
struct CalibrationOptions : SourceOptions {
  QString exportFolder;
  QStringList imports;  ///< KIND=FILE each, in the order given
};

/// One kind of calibration file: its name on the command line, the render buffer's operation that takes one in, and the
/// runtime's that writes it (null: the buffer's `exporter`; the buffer then names the file that is in force).
struct Kind {
  const char *name;
  const char *importer;
  CalibrationTable table;
  int (*write)(SvSdkRuntime &runtime, const std::string &path, int channels);
  const char *exporter;
};

constexpr std::array kinds{
    Kind{"corrections", "importCorrectionsFile", CalibrationTable::Corrections,
         [](SvSdkRuntime &runtime, const std::string &path, int channels) {
           return runtime.ExportCorrectionsFile(path, channels);
         },
         nullptr},
    Kind{"firetimes", "importFiretimesFile", CalibrationTable::Firetimes,
         [](SvSdkRuntime &runtime, const std::string &path, int channels) {
           return runtime.ExportFiretimesFile(path, channels);
         },
         nullptr},
    Kind{"dcf", "importDcfFile", CalibrationTable::Dcf,
         [](SvSdkRuntime &runtime, const std::string &path, int) { return runtime.ExportDcfConfigFile(path); },
         nullptr},
    Kind{"nonlinear", "importNonlinearMappingFile", CalibrationTable::NonlinearMapping,
         [](SvSdkRuntime &runtime, const std::string &path, int) { return runtime.ExportNonlinearMappingFile(path); },
         nullptr},
    Kind{"channels", "importChannelConfigFile", CalibrationTable::ChannelConfig,
         [](SvSdkRuntime &runtime, const std::string &path, int) { return runtime.ExportChannelConfigFile(path); },
         nullptr},
    Kind{"gains", "importChannelEqFile", {}, nullptr, "exportChannelEqFile"},
};

const Kind *findKind(const QString &name) {
  for (const Kind &kind : kinds)
    if (name == QLatin1String(kind.name)) return &kind;
  return nullptr;
}

QString kindNames() {
  QStringList names;
  for (const Kind &kind : kinds) names << QString::fromLatin1(kind.name);
  return names.join(QStringLiteral(", "));
}

bool call(QObject *buffer, const char *operation, const QString &path) {
  bool done = false;
  const bool known = QMetaObject::invokeMethod(buffer, operation, Qt::DirectConnection, Q_RETURN_ARG(bool, done),
                                               Q_ARG(QString, path));
  return known && done;
}

/// Remembers where the log stands, and tells the first error written since that begins with `beginning`.
class LogWatch {
 public:
  LogWatch() {
    Logger::GetInstance().flush();
    m_begin = Logger::GetInstance().lastSequence();
  }
  QString firstError(const QString &beginning = {}) const {
    Logger::GetInstance().flush();
    for (const LogEntry &entry : Logger::GetInstance().entriesAfter(m_begin)) {
      const QString message = QString::fromLocal8Bit(entry.message.c_str());
      if (entry.level == LogLevel::Error && message.startsWith(beginning)) return message;
    }
    return {};
  }

 private:
  std::uint64_t m_begin = 0;
};

QString importOne(QObject *buffer, const QString &request) {
  const int cut = request.indexOf('=');
  const Kind *const kind = findKind(request.left(cut));
  const QString path = request.mid(cut + 1);
  if (cut < 0 || kind == nullptr)
    return QStringLiteral("\"%1\" is no KIND=FILE with a kind of: %2").arg(request, kindNames());
  if (!QFile::exists(path)) return QStringLiteral("%1 does not exist").arg(path);
  const LogWatch log;
  const bool taken = call(buffer, kind->importer, QFileInfo(path).absoluteFilePath());
  const QString reason = taken ? log.firstError(QStringLiteral("Unable to ")) : log.firstError();
  // The load ends with this program: a default that could not be written is a failure here.
  if (taken)
    return reason.isEmpty() ? QString() : QStringLiteral("%1 was not kept as the default: %2").arg(path, reason);
  return reason.isEmpty() ? QStringLiteral("%1 was not taken in as %2").arg(path, QLatin1String(kind->name)) : reason;
}

struct Written {
  bool loaded = true;
  QString fault;
};

Written writeOne(const Kind &kind, QObject *buffer, SvSdkRuntime &runtime, int channels, const QString &path) {
  const LogWatch log;
  const int result = kind.write != nullptr ? kind.write(runtime, QFile::encodeName(path).toStdString(), channels)
                     : call(buffer, kind.exporter, path) ? 0
                                                         : -1;
  if (result >= 0) return {};
  const QString reason = log.firstError();
  if (result == -1 && (kind.write != nullptr || reason.isEmpty())) return {false, {}};
  return {true, reason.isEmpty() ? QStringLiteral("%1 could not be written").arg(path) : reason};
}

bool isLoaded(const Kind &kind, const QObject &buffer, const SvSdkRuntime &runtime) {
  return kind.write != nullptr ? runtime.HasCalibration(kind.table)
                               : !buffer.property("channelEqFileDir").toString().isEmpty();
}

/// A row a kind: whether it is loaded.
void list(Report &report, const QObject &buffer, const SvSdkRuntime &runtime) {
  for (const Kind &kind : kinds)
    report.add(kind.name, isLoaded(kind, buffer, runtime) ? QStringLiteral("loaded") : QStringLiteral("not loaded"));
}

/// A row a kind: the file that it was written to. An empty string, or why one could not be written.
QString writeAll(Report &report, CaptureSession &session, const QDir &folder) {
  if (!QDir().mkpath(folder.path())) return QStringLiteral("the folder %1 cannot be made").arg(folder.path());
  for (const Kind &kind : kinds) {
    const QString path =
        folder.absoluteFilePath(QStringLiteral("%1_%2.csv").arg(session.lidarType(), QLatin1String(kind.name)));
    const Written written =
        writeOne(kind, session.view().buffer(), *session.runtime(), session.view().channelCount(), path);
    if (!written.fault.isEmpty()) return written.fault;
    report.add(kind.name, written.loaded ? path : QStringLiteral("not loaded"));
  }
  return {};
}

/// Imports first, then exports or lists.
QString run(CaptureSession &session, const CalibrationOptions &options) {
  QObject *const buffer = session.view().buffer();
  SvSdkRuntime *const runtime = session.runtime();
  if (buffer == nullptr || runtime == nullptr ||
      buffer->metaObject()->indexOfMethod("importCorrectionsFile(QString)") < 0)
    return QStringLiteral("this source has no calibration: only captures and lidars have");
  for (const QString &request : options.imports) {
    const QString fault = importOne(buffer, request);
    if (!fault.isEmpty()) return fault;
  }
  Report report;
  report.add("type", session.lidarType());
  if (options.exportFolder.isEmpty()) {
    list(report, *buffer, *runtime);
  } else if (const QString fault = writeAll(report, session, QDir(options.exportFolder)); !fault.isEmpty()) {
    return fault;
  }
  report.print();
  return {};
}

}  // namespace

void addCalibrationCommand(CommandLine &line) {
  const auto options = std::make_shared<CalibrationOptions>();
  CLI::App &command = addSourceCommand(
      line, "calibration", "List, write out or take in the calibration files of a capture and its lidar type", options,
      run);
  addFile(command, options->file, Sources::Captures)->required();
  addSensorPort(command, options->sensorPort);
  addText(command, "--export", options->exportFolder, "Write the kinds that are loaded into this folder");
  command
      .add_option_function<std::vector<std::string>>(
          "--import",
          [&imports = options->imports](const std::vector<std::string> &texts) {
            for (const std::string &text : texts) imports << fromArgument(text);
          },
          "Take in KIND=FILE and keep it as the default of the lidar type; KIND is one of " + kindNames().toStdString())
      ->allow_extra_args(false);
}

}  // namespace tarvo::skarnvisor::app
