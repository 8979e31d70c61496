#include "app/cli/program.h"

#include <QApplication>
#include <QFile>
#include <cstdio>

#include "app/cli/commands.h"
#include "app/cli/progress_bar.h"
#include "app/cli/types_command.h"
#include "app/session/capture_session.h"
#include "app/session/live_address.h"
#include "app/window/window.h"
#include "contracts/host/log.h"

SKARN_LOG_SOURCE("app/program");

namespace tarvo::skarnvisor::app {
namespace {

constexpr int failure = 1;

int fail(const QString &reason) {
  std::fprintf(stderr, "skarnvisor: %s\n", reason.toLocal8Bit().constData());
  return failure;
}

/// Qt's own messages go through the log as everything does, so that standard error stays the program's.
void logQtMessage(QtMsgType type, const QMessageLogContext &, const QString &message) {
  const bool information = type == QtDebugMsg || type == QtInfoMsg;
  const LogLevel level = information            ? LogLevel::Information
                         : type == QtWarningMsg ? LogLevel::Warning
                                                : LogLevel::Error;
  SKARN_LOG(level, "%s", qPrintable(message));
  if (type == QtFatalMsg) Logger::GetInstance().flush();
}

QString pluginPath(const Options &options) {
  return options.plugin.isEmpty() ? CaptureSession::defaultPluginPath() : options.plugin;
}

int runWithoutWindow(const Options &options) {
  if (options.command == Command::Cut || options.command == Command::Record) {
    const QString fault = options.command == Command::Cut ? runCut(options) : runRecord(options);
    return fault.isEmpty() ? 0 : fail(fault);
  }
  CaptureSession session;
  session.setSensorPort(options.capture.sensorPort);
  const bool live = namesLiveSource(options.file);
  if (live && options.command != Command::Play)
    return fail(QStringLiteral("a live source can be played or recorded only"));
  QString fault = session.loadPlugin(pluginPath(options));
  if (options.command == Command::Types) {
    if (fault.isEmpty()) fault = runTypes(options);
    return fault.isEmpty() ? 0 : fail(fault);
  }
  if (fault.isEmpty()) fault = session.openAndWait(options.file);
  if (fault.isEmpty() && !live) {
    ProgressBar bar(QStringLiteral("reading, frames found:"));
    fault = session.waitForIndex([&bar](int frames) { bar.show(frames, 0); });
  }
  if (fault.isEmpty()) {
    switch (options.command) {
      case Command::Info:
        fault = runInfo(session, options);
        break;
      case Command::Render:
        fault = runRender(session, options);
        break;
      case Command::Play:
        fault = live ? runLivePlay(session, options) : runPlay(session, options);
        break;
      case Command::Convert:
        fault = runConvert(session, options);
        break;
      case Command::Telemetry:
        fault = runTelemetry(session, options);
        break;
      case Command::Calibration:
        fault = runCalibration(session, options.calibration);
        break;
      case Command::Export:
        fault = runExport(session, options);
        break;
      case Command::Cut:
      case Command::Record:
      case Command::Types:
      case Command::View:
        break;
    }
  }
  return fault.isEmpty() ? 0 : fail(fault);
}

bool hasDisplay() {
  return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
         !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

}  // namespace

int runProgram(int argc, char **argv) {
  const ParsedOptions parsed = parseOptions(argc, argv);
  if (!parsed.proceed) return parsed.exitCode;
  const Options &options = parsed.options;
  const bool window = options.command == Command::View;
  if (window && !hasDisplay())
    return fail(QStringLiteral("there is no display for the window; \"render\" and \"play\" need none"));
  if (!window) qputenv("QT_QPA_PLATFORM", "offscreen");
  // A failure is told in one sentence; the log lines around it are for those who ask.
  Logger::GetInstance().setConsoleMask(options.verbose ? logEverythingMask : window ? logDefaultMask : 0);
  qInstallMessageHandler(logQtMessage);

  int ownArguments = 1;
  QApplication application(ownArguments, argv);
  QApplication::setApplicationName(QStringLiteral("skarnvisor"));
  return window ? runWindow({pluginPath(options), options.file, options.shotFile}) : runWithoutWindow(options);
}

}  // namespace tarvo::skarnvisor::app
