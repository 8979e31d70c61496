#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <optional>

#include "app/cli/capture_rows.h"
#include "app/cli/interrupt.h"
#include "app/cli/play_options.h"
#include "app/cli/progress_bar.h"
#include "app/cli/soak.h"
#include "app/render/cloud_statistics.h"
#include "app/session/capture_session.h"
#include "app/session/frame_stack.h"

namespace tarvo::skarnvisor::app {
namespace {

constexpr int lookIntervalMs = 20;

}  // namespace

/// The timeline follows a live source by itself; this counts what it shows.
QString runLivePlay(CaptureSession &session, const PlayOptions &options) {
  const bool stacked = options.stack > 1;
  FrameStack stack(session);
  if (stacked) {
    const QString fault = stack.request(options.stack);
    if (!fault.isEmpty()) return fault;
  }
  const Interrupt interrupt;
  ProgressBar bar(QStringLiteral("playing, frames:"));
  PointCounts points;
  int frames = 0;
  int last = -1;
  QString fault;
  session.view().setPlayByFrame(!options.byTime);
  QElapsedTimer clock;
  clock.start();
  QEventLoop loop;
  QObject::connect(&session, &CaptureSession::frameShown, &loop, [&] {
    if (frames == 0 && options.points.any()) fault = applyPointOptions(session, options.points);
    if (!fault.isEmpty()) return loop.quit();
    const int frame = session.shownFrame();
    if (frame == last && !options.byTime) return;
    const int passed = last >= 0 ? frame - last : 1;
    last = frame;
    const PointCounts counts = countPoints(session.view().newestCloud());
    points.shown += counts.shown;
    points.hidden += counts.hidden;
    // Of a stack the way of the cursor counts: a step brings a group, or none.
    frames += stacked ? std::max(passed, 0) : 1;
    bar.show(frames, options.frameLimit);
    if (options.frameLimit > 0 && frames >= options.frameLimit) loop.quit();
  });
  QObject::connect(&session, &CaptureSession::closing, &loop, &QEventLoop::quit);
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, &loop, [&] {
    const double limit = options.seconds;
    if (Interrupt::came() || (limit > 0 && static_cast<double>(clock.elapsed()) >= limit * 1000)) loop.quit();
  });
  look.start(lookIntervalMs);
  std::optional<Soak> soak;
  if (options.soak) soak.emplace(session, frames);
  session.timeline().play();
  loop.exec();
  soak.reset();
  session.timeline().pause();
  session.waitForPicture();
  if (!fault.isEmpty()) return fault;
  const double seconds = static_cast<double>(clock.elapsed()) / 1000;
  Report report;
  addCaptureRows(report, session);
  if (stacked) report.add("stack", stack.message());
  report.add("frames played", grouped(frames));
  if (!options.byTime && !stacked) report.add("frames skipped", grouped(session.timeline().skippedFrames()));
  report.add("points", grouped(points.shown + points.hidden));
  report.add("points shown", grouped(points.shown));
  report.add("seconds played", QString::number(seconds, 'f', 3));
  report.add("frames a second", QString::number(frames / std::max(seconds, 1e-3), 'f', 1));
  addHealthRows(report, session.captureReport());
  report.print();
  if (points.shown == 0) return QStringLiteral("no point was shown in %1 frames").arg(frames);
  return options.summaryFile.isEmpty() ? QString() : report.write(options.summaryFile);
}

}  // namespace tarvo::skarnvisor::app
