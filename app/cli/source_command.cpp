#include "app/cli/source_command.h"

#include <CLI/CLI.hpp>

#include "app/cli/progress_bar.h"
#include "app/session/capture_session.h"
#include "app/session/live_address.h"

namespace tarvo::skarnvisor::app {

bool isLive(const SourceOptions &options) { return namesLiveSource(options.file); }

QString onSource(const CommandLine &line, const SourceOptions &options, Opening opening,
                 const std::function<QString(CaptureSession &)> &work) {
  const bool live = isLive(options);
  if (live && opening != Opening::CaptureOrLive) return QStringLiteral("a live source can be played or recorded only");
  CaptureSession session;
  session.setSensorPort(options.sensorPort);
  QString fault = session.loadPlugin(line.pluginPath());
  if (fault.isEmpty() && opening != Opening::Plugin) fault = session.openAndWait(options.file);
  if (fault.isEmpty() && opening != Opening::Plugin && !live) {
    ProgressBar bar(QStringLiteral("reading, frames found:"));
    fault = session.waitForIndex([&bar](int frames) { bar.show(frames, 0); });
  }
  return fault.isEmpty() ? work(session) : fault;
}

void addFile(CLI::App &command, SourceOptions &options) {
  addText(command, "file", options.file,
          "Capture (pcap, pcapng), folder of point files (pcd, ply, bin), one of them, or udp://[address]:port")
      ->required();
}

void addSensorPort(CLI::App &command, int &port) {
  command.add_option("--port", port, "UDP port of the sensor, for a capture with several (the first found)")
      ->check(CLI::Range(1, 65535));
}

}  // namespace tarvo::skarnvisor::app
