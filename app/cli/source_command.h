#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "app/cli/command_line.h"

namespace tarvo::skarnvisor::app {

class CaptureSession;

/// What a command on an opened source is asked for at least.
struct SourceOptions {
  QString file;
  int sensorPort = 0;  ///< of a capture with several sensors; 0: the first found
};

/// How far things are opened when a command begins.
enum class Opening {
  Plugin,         ///< the plug-in is loaded, no source is open
  Capture,        ///< the source is open and its frames are known to the last; a live one is refused
  CaptureOrLive,  ///< the same, or a live source from its first frame on
};

bool isLive(const SourceOptions &options);
/// What a command says of a live source that it cannot work on.
QString liveRefusal();

/// Opens and has `work` done. An empty string, or one sentence saying what failed.
QString onSource(const CommandLine &line, const SourceOptions &options, Opening opening,
                 const std::function<QString(CaptureSession &)> &work);

/// Adds a command that works on an opened source; `Options` is a SourceOptions with more.
template <typename Options>
CLI::App &addSourceCommand(CommandLine &line, const char *name, const char *help,
                           const std::shared_ptr<Options> &options, QString (*run)(CaptureSession &, const Options &),
                           Opening opening = Opening::Capture) {
  return line.add(name, help, [&line, options, run, opening] {
    return onSource(line, *options, opening, [&](CaptureSession &session) { return run(session, *options); });
  });
}

/// What a command can work on: captures alone, point files too, live sources as well.
enum class Sources { Captures, Files, Any };
/// Adds the source itself.
CLI::Option *addFile(CLI::App &command, QString &file, Sources sources);
/// Adds "--port".
void addSensorPort(CLI::App &command, int &port);

}  // namespace tarvo::skarnvisor::app
