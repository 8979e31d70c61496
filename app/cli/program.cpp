#include "app/cli/program.h"

#include <QApplication>

#include "app/cli/command_line.h"
#include "app/cli/command_table.h"
#include "contracts/host/log.h"

SKARN_LOG_SOURCE("app/program");

namespace tarvo::skarnvisor::app {
namespace {

/// Qt's own messages go through the log as everything does, so that standard error stays the program's.
void logQtMessage(QtMsgType type, const QMessageLogContext &, const QString &message) {
  const bool information = type == QtDebugMsg || type == QtInfoMsg;
  const LogLevel level = information            ? LogLevel::Information
                         : type == QtWarningMsg ? LogLevel::Warning
                                                : LogLevel::Error;
  SKARN_LOG(level, "%s", qPrintable(message));
  if (type == QtFatalMsg) Logger::GetInstance().flush();
}

bool hasDisplay() {
  return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
         !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

}  // namespace

int runProgram(int argc, char **argv) {
  CommandLine line;
  addCommands(line);
  if (const auto exitCode = line.parse(argc, argv)) return *exitCode;
  const bool window = line.opensWindow();
  if (window && !hasDisplay())
    return fail(QStringLiteral("there is no display for the window; \"render\" and \"play\" need none"));
  if (!window) qputenv("QT_QPA_PLATFORM", "offscreen");
  // A failure is told in one sentence; the log lines around it are for those who ask.
  Logger::GetInstance().setConsoleMask(line.verbose() ? logEverythingMask : window ? logDefaultMask : 0);
  qInstallMessageHandler(logQtMessage);

  // The size of the desktop's letters is the scale of the whole window.
  QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
  QApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
  int ownArguments = 1;
  QApplication application(ownArguments, argv);
  QApplication::setApplicationName(QStringLiteral("skarnvisor"));
  return line.run();
}

}  // namespace tarvo::skarnvisor::app
