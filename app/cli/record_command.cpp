#include <CLI/CLI.hpp>
#include <QElapsedTimer>
#include <QFile>
#include <cstring>
#include <memory>

#include "app/cli/capture_options.h"
#include "app/cli/capture_rows.h"
#include "app/cli/command_line.h"
#include "app/cli/interrupt.h"
#include "app/cli/progress_bar.h"
#include "app/cli/runtime_wait.h"
#include "contracts/runtime/parallel_isp_engine.h"
#include "contracts/runtime/runtime_factory.h"
#include "contracts/runtime/sv_sdk_runtime.h"
#include "host/core/host_core.h"

namespace tarvo::skarnvisor::app {
namespace {

using lidar::CaptureReport;
using lidar::SvSdkRuntime;

struct RecordOptions {
  LiveOptions live;
  double seconds = 0;  ///< 0: until interrupted
  QString out;
};

template <std::size_t size>
void copyAddress(std::array<char, size> &target, const QString &address) {
  std::strncpy(target.data(), address.toLatin1().constData(), size - 1);
}

QString run(const RecordOptions &options) {
  const Interrupt interrupt;
  const LiveOptions &live = options.live;
  const QSharedPointer<SDKSource> source = createSdkSource();
  SvSdkRuntime &runtime = *source->runtime;
  DriverParam &param = source->driverParam;
  param.sourceKind = static_cast<std::int32_t>(SourceKind::Live);
  param.liveUdpPort = live.udpPort;
  copyAddress(param.multicastGroup, live.multicastGroup);
  copyAddress(param.bindAddress, live.bindAddress);
  runtime.Init(param);
  const QString fault =
      waitForLidar(runtime, QStringLiteral("no packet of a known lidar came on UDP port %1 within %2 s")
                                .arg(live.udpPort)
                                .arg(silenceLimitMs / 1000));
  if (!fault.isEmpty()) return fault;
  if (!runtime.StartRecordPcap(QFile::encodeName(options.out).toStdString()))
    return fromRuntime(runtime.CaptureError());
  QElapsedTimer clock;
  clock.start();
  ProgressBar bar(QStringLiteral("recording, packets:"));
  waitUntil([&] {
    const lidar::RecordingReport recording = runtime.GetCaptureReport().recording;
    bar.show(static_cast<int>(recording.packets), 0);
    const double limit = options.seconds;
    return !recording.running || (limit > 0 && static_cast<double>(clock.elapsed()) >= limit * 1000);
  });
  runtime.StopRecordPcap();
  const CaptureReport health = runtime.GetCaptureReport();
  Report report;
  report.add("type", fromRuntime(runtime.GetLidarType()));
  report.add("recorded", options.out);
  report.add("packets written", grouped(health.recording.packets));
  report.add("packets left out", grouped(health.recording.missed));
  report.add("size", QStringLiteral("%1 bytes").arg(grouped(health.recording.bytes)));
  addHealthRows(report, health);
  report.print();
  return fromRuntime(health.recording.fault);
}

}  // namespace

void addRecordCommand(CommandLine &line) {
  const auto options = std::make_shared<RecordOptions>();
  CLI::App &command = line.add("record", "Write what a lidar sends to a capture", [options] { return run(*options); });
  LiveOptions &live = options->live;
  addText(command, "--out", options->out, "Capture to write")->required();
  command.add_option("--port", live.udpPort, "UDP port that the lidar sends to")
      ->required()
      ->check(CLI::Range(1, 65535));
  addText(command, "--group", live.multicastGroup, "Multicast group to join");
  addText(command, "--bind", live.bindAddress, "Address of the interface to listen on (all)");
  addSeconds(command, options->seconds);
}

}  // namespace tarvo::skarnvisor::app
