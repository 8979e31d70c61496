#include <CLI/CLI.hpp>
#include <QFile>
#include <memory>

#include "app/cli/capture_options.h"
#include "app/cli/interrupt.h"
#include "app/cli/progress_bar.h"
#include "app/cli/report.h"
#include "app/cli/runtime_wait.h"
#include "app/cli/source_command.h"
#include "contracts/runtime/parallel_isp_engine.h"
#include "contracts/runtime/runtime_factory.h"
#include "contracts/runtime/sv_sdk_runtime.h"

namespace tarvo::skarnvisor::app {
namespace {

using lidar::SvSdkRuntime;

struct CutOptions : SourceOptions {
  QString out;
  std::optional<Span<int>> frames;
  std::optional<Span<double>> seconds;  ///< from the begin of the capture
};

QString run(const CutOptions &options) {
  if (isLive(options)) return liveRefusal();
  const Interrupt interrupt;
  const QSharedPointer<SDKSource> source = createSdkSource();
  SvSdkRuntime &runtime = *source->runtime;
  source->driverParam.sourceKind = static_cast<std::int32_t>(SourceKind::CaptureFile);
  source->driverParam.sensorPort = options.sensorPort;
  source->driverParam.capturePath = QFile::encodeName(options.file).toStdString();
  runtime.Init(source->driverParam);
  QString fault = waitForLidar(runtime);
  if (!fault.isEmpty()) return fault;
  {
    ProgressBar bar(QStringLiteral("reading, frames found:"));
    const bool whole = waitUntil([&] {
      bar.show(runtime.GetFrameCount(), 0);
      return runtime.GetCaptureReport().complete;
    });
    if (!whole) return QStringLiteral("interrupted");
  }
  const std::string target = QFile::encodeName(options.out).toStdString();
  const double begin = source->beginSeconds;
  const auto &frames = options.frames;
  const auto &seconds = options.seconds;
  const int before = runtime.GetFrameCount();
  bool cut = false;
  {
    ProgressBar bar(QStringLiteral("cutting, percent:"));
    runtime.WatchCuts([&bar](double share) {
      bar.show(static_cast<int>(share * 100), 100);
      return !Interrupt::came();
    });
    cut = frames ? runtime.CutPcap(target, frames->first, frames->last)
                 : runtime.CutPcap(target, begin + seconds->first, begin + seconds->last);
    runtime.WatchCuts({});
  }
  if (!cut) return Interrupt::came() ? QStringLiteral("interrupted") : fromRuntime(runtime.CaptureError());
  Report report;
  report.add("capture", QStringLiteral("%1, %2 frames").arg(options.file, grouped(before)));
  report.add("cut", options.out);
  report.add("size", QStringLiteral("%1 bytes").arg(grouped(QFile(options.out).size())));
  report.print();
  return {};
}

}  // namespace

void addCutCommand(CommandLine &line) {
  const auto options = std::make_shared<CutOptions>();
  CLI::App &command =
      line.add("cut", "Write a part of a capture to a capture of its own", [options] { return run(*options); });
  addFile(command, options->file, Sources::Captures)->required();
  addText(command, "--out", options->out, "Capture to write")->required();
  CLI::Option_group &what = *command.add_option_group("Part", "Which frames to take");
  addFrames(what, options->frames);
  addSecondSpan(what, options->seconds);
  what.require_option(1);
  addSensorPort(command, options->sensorPort);
}

}  // namespace tarvo::skarnvisor::app
