// "cut" and "record": they need a runtime, and neither plug-in nor picture.

#include <QElapsedTimer>
#include <QFile>
#include <chrono>
#include <cstring>
#include <functional>
#include <thread>

#include "app/cli/capture_rows.h"
#include "app/cli/commands.h"
#include "app/cli/interrupt.h"
#include "app/cli/progress_bar.h"
#include "contracts/runtime/parallel_isp_engine.h"
#include "contracts/runtime/runtime_factory.h"
#include "contracts/runtime/sv_sdk_runtime.h"

namespace tarvo::skarnvisor::app {
namespace {

using lidar::CaptureReport;
using lidar::SvSdkRuntime;

constexpr std::chrono::milliseconds lookInterval{20};
constexpr qint64 silenceLimitMs = 30'000;

QString fromRuntime(const std::string &text) { return QString::fromLocal8Bit(text.c_str()); }

template <std::size_t size>
void copyAddress(std::array<char, size> &target, const QString &address) {
  std::strncpy(target.data(), address.toLatin1().constData(), size - 1);
}

/// Looks every now and then until `done`; false when the user interrupted.
bool waitUntil(const std::function<bool()> &done) {
  while (!done()) {
    if (Interrupt::came()) return false;
    std::this_thread::sleep_for(lookInterval);
  }
  return true;
}

/// Waits until the runtime knows its lidar. An empty string, or why it never will; `silence` is said after the limit.
QString waitForLidar(SvSdkRuntime &runtime, const QString &silence) {
  QElapsedTimer clock;
  clock.start();
  const bool waited = waitUntil([&] {
    return runtime.GetInitFinish(SvSdkInitFinish::Ready) || runtime.GetInitFinish(SvSdkInitFinish::Failed) ||
           (!silence.isEmpty() && clock.elapsed() > silenceLimitMs);
  });
  if (!waited) return QStringLiteral("interrupted");
  if (runtime.GetInitFinish(SvSdkInitFinish::Failed)) return fromRuntime(runtime.InitError());
  return runtime.GetInitFinish(SvSdkInitFinish::Ready) ? QString() : silence;
}

}  // namespace

QString runCut(const Options &options) {
  const Interrupt interrupt;
  const QSharedPointer<SDKSource> source = createSdkSource();
  SvSdkRuntime &runtime = *source->runtime;
  source->driverParam.sourceKind = static_cast<std::int32_t>(SourceKind::CaptureFile);
  source->driverParam.sensorPort = options.capture.sensorPort;
  source->driverParam.capturePath = QFile::encodeName(options.file).toStdString();
  runtime.Init(source->driverParam);
  QString fault = waitForLidar(runtime, {});
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
  const auto &frames = options.capture.frames;
  const auto &seconds = options.capture.secondSpan;
  const int before = runtime.GetFrameCount();
  const bool cut = frames ? runtime.CutPcap(target, frames->first, frames->last)
                          : runtime.CutPcap(target, begin + seconds->first, begin + seconds->last);
  if (!cut) return fromRuntime(runtime.CaptureError());
  Report report;
  report.add("capture", QStringLiteral("%1, %2 frames").arg(options.file, grouped(before)));
  report.add("cut", options.out);
  report.add("size", QStringLiteral("%1 bytes").arg(grouped(QFile(options.out).size())));
  report.print();
  return {};
}

QString runRecord(const Options &options) {
  const Interrupt interrupt;
  const LiveOptions &live = options.capture.live;
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
    const double limit = options.capture.seconds;
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

}  // namespace tarvo::skarnvisor::app
