#include "app/cli/source_command.h"

#include <CLI/CLI.hpp>

#include "app/cli/progress_bar.h"
#include "app/session/capture_session.h"
#include "app/session/live_address.h"

namespace tarvo::skarnvisor::app {

bool isLive(const SourceOptions &options) { return namesLiveSource(options.file); }

QString liveRefusal() { return QStringLiteral("a live source can be played or recorded only"); }

QString onSource(const CommandLine &line, const SourceOptions &options, Opening opening,
                 const std::function<QString(CaptureSession &)> &work) {
  const bool live = isLive(options);
  if (live && opening != Opening::CaptureOrLive) return liveRefusal();
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

CLI::Option *addFile(CLI::App &command, QString &file, Sources sources) {
  const char *const help = sources == Sources::Captures ? "Capture (pcap, pcapng)"
                           : sources == Sources::Files
                               ? "Capture (pcap, pcapng), folder of point files (pcd, ply, bin) or one of them"
                               : "Capture (pcap, pcapng), folder of point files (pcd, ply, bin), one of them, or a "
                                 "live source as udp://[address]:port";
  return addText(command, "file", file, help);
}

void addSensorPort(CLI::App &command, int &port) {
  command.add_option("--port", port, "UDP port of the sensor, for a capture with several (the first found)")
      ->check(CLI::Range(1, 65535));
}

}  // namespace tarvo::skarnvisor::app
