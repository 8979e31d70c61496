#include <CLI/CLI.hpp>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <algorithm>
#include <cstdio>
#include <set>
#include <utility>
#include <vector>

#include "app/cli/capture_options.h"
#include "app/cli/capture_rows.h"
#include "app/cli/picture_maker.h"
#include "app/cli/play_options.h"
#include "app/cli/progress_bar.h"
#include "app/cli/stack_option.h"
#include "app/render/cloud_statistics.h"
#include "app/session/capture_session.h"
#include "app/session/frame_stack.h"

namespace tarvo::skarnvisor::app {
namespace {

/// Plays, counts, and takes pictures at the frames that were chosen for it.
class Player {
 public:
  Player(CaptureSession &session, const PlayOptions &options)
      : m_session(session),
        m_options(options),
        m_stack(session),
        m_maker(session, options.look),
        m_bar(QStringLiteral("playing")) {}

  QString run();

 private:
  void choosePictures();
  QString beginStack();
  VertexCloud uncounted();
  QString playEachFrame();
  QString playByClock();
  QString preparePoints();
  QString takeUpFrame(int frame);
  void count(int frame, const VertexCloud &cloud);
  [[nodiscard]] bool pictureDue(int frame) const;
  /// A single frame with no point to show leaves the picture of the one before, and nothing is told of it.
  [[nodiscard]] bool mayLeaveFramesEmpty() const { return m_options.points.any() && m_options.stack <= 1; }
  QString finish();

  CaptureSession &m_session;
  const PlayOptions &m_options;
  FrameStack m_stack;
  bool m_isNew = true;  ///< the canvas has points that are not counted yet
  PictureMaker m_maker;
  ProgressBar m_bar;
  int m_planned = 0;
  std::set<int> m_pictureFrames;
  int m_frames = 0;
  int m_lastFrame = -1;
  int m_announced = 0;    ///< frames that the pipeline has told of
  int m_framesEmpty = 0;  ///< without a point to show
  int m_pictures = 0;
  PointCounts m_points;
  qint64 m_playedNs = 0;
  QElapsedTimer m_clock;
  QObject m_context;
};

QString Player::run() {
  const int limit = m_options.frameLimit;
  m_planned = limit > 0 ? std::min(limit, m_session.frameCount()) : m_session.frameCount();
  if (!m_options.pictureFolder.isEmpty()) {
    if (!QDir().mkpath(m_options.pictureFolder))
      return QStringLiteral("the folder %1 cannot be made").arg(m_options.pictureFolder);
    const QString fault = m_maker.selectColor();
    if (!fault.isEmpty()) return fault;
    choosePictures();
  }
  if (const QString fault = preparePoints(); !fault.isEmpty()) return fault;
  const bool paced = m_options.byTime || m_options.speed > 0;
  if (m_options.stack > 1) {
    const QString fault = beginStack();
    if (!fault.isEmpty()) return fault;
  }
  const QString fault = paced ? playByClock() : playEachFrame();
  return fault.isEmpty() ? finish() : fault;
}

QString Player::preparePoints() {
  if (!m_options.points.any()) return {};
  QString fault = m_session.showFrame(0);
  if (fault.isEmpty()) fault = applyPointOptions(m_session, m_options.points);
  if (fault.isEmpty() && !m_session.waitForPicture()) fault = QStringLiteral("the first frame could not be shown");
  QObject::connect(&m_session, &CaptureSession::frameShown, &m_context, [this] { ++m_announced; });
  return fault;
}

/// The middle of each of `pictureCount` equal shares of the frames.
void Player::choosePictures() {
  const int count = std::min(m_options.pictureCount, m_planned);
  for (int i = 0; i < count; ++i) m_pictureFrames.insert(static_cast<int>((2LL * i + 1) * m_planned / (2LL * count)));
}

QString Player::beginStack() {
  const QString fault = m_stack.request(m_options.stack);
  if (!fault.isEmpty()) return fault;
  m_isNew = false;
  QObject::connect(&m_session, &CaptureSession::frameShown, &m_stack, [this] { m_isNew = true; });
  // By the clock the stack begins with the playing.
  return m_options.speed > 0 ? QString() : m_stack.begin(0);
}

/// Of a stack the group that came last, once: each of its points is met a single time.
VertexCloud Player::uncounted() {
  return std::exchange(m_isNew, m_options.stack <= 1) ? m_session.view().newestCloud() : VertexCloud();
}

void Player::count(int frame, const VertexCloud &cloud) {
  const PointCounts counts = countPoints(cloud);
  m_points.shown += counts.shown;
  m_points.hidden += counts.hidden;
  m_points.highlighted += counts.highlighted;
  // Of a stack, only the steps that bring a group come here by the clock.
  m_frames += m_options.stack > 1 ? std::max(frame - m_lastFrame, 0) : 1;
  m_lastFrame = frame;
  m_playedNs += m_clock.nsecsElapsed();
  m_clock.restart();
  m_bar.show(frame + 1, m_planned);
}

bool Player::pictureDue(int frame) const { return !m_pictureFrames.empty() && frame >= *m_pictureFrames.begin(); }

/// Counts the frame on the canvas, and draws it if its turn for a picture has come.
QString Player::takeUpFrame(int frame) {
  count(frame, uncounted());
  QString fault;
  if (pictureDue(frame)) {
    m_pictureFrames.erase(m_pictureFrames.begin(), m_pictureFrames.upper_bound(frame));
    const QString name = QStringLiteral("frame-%1.png").arg(frame, 4, 10, QLatin1Char('0'));
    fault = m_maker.write(QDir(m_options.pictureFolder).filePath(name));
    ++m_pictures;
  }
  // Drawing is no part of what is measured.
  m_clock.restart();
  return fault;
}

QString Player::playEachFrame() {
  m_clock.start();
  // A stack has played its first frames already.
  const int begin = m_options.stack > 1 ? std::clamp(m_session.timeline().frame(), 0, m_planned - 1) : 0;
  QString fault = m_session.seekFrame(begin);
  for (int frame = begin; fault.isEmpty() && frame < m_planned; ++frame) {
    const int announced = m_announced;
    fault = m_session.waitForFrame(frame);
    if (!fault.isEmpty()) break;
    const QString damage = m_session.frameFault();
    const bool empty = damage.isEmpty() && frame > begin && m_announced == announced && mayLeaveFramesEmpty();
    m_framesEmpty += empty ? 1 : 0;
    m_frames += empty ? 1 : 0;
    const bool counts = damage.isEmpty() && !empty && !pictureDue(frame);
    const VertexCloud cloud = counts ? uncounted() : VertexCloud();
    if (!damage.isEmpty())  // the next frame may be good
      std::fprintf(stderr, "skarnvisor: frame %d: %s\n", frame, damage.toLocal8Bit().constData());
    else if (!counts && !empty)
      fault = takeUpFrame(frame);
    // The next frame is made while this one is counted.
    if (fault.isEmpty() && frame + 1 < m_planned) fault = m_session.seekFrame(frame + 1);
    if (counts) count(frame, cloud);
  }
  return fault;
}

QString Player::playByClock() {
  Timeline &timeline = m_session.timeline();
  m_session.view().setPlayByFrame(!m_options.byTime);
  timeline.first();
  if (!m_session.waitForPicture()) return QStringLiteral("the first frame was not decoded");
  m_clock.start();
  QString fault = takeUpFrame(std::max(timeline.frame(), 0));
  if (m_options.speed > 0) timeline.setSpeed(m_options.speed);
  QEventLoop loop;
  QObject::connect(&m_session, &CaptureSession::frameShown, &loop, [&] {
    fault = takeUpFrame(std::max(m_session.shownFrame(), 0));
    if (!fault.isEmpty() || (m_options.frameLimit > 0 && m_frames >= m_options.frameLimit)) loop.quit();
  });
  QObject::connect(&timeline, &Timeline::playingChanged, &loop, [&] {
    if (!timeline.isPlaying()) loop.quit();
  });
  QObject::connect(&m_session, &CaptureSession::closing, &loop, &QEventLoop::quit);
  timeline.play();
  if (fault.isEmpty() && timeline.isPlaying()) loop.exec();
  timeline.pause();
  m_session.waitForPicture();
  return fault;
}

QString Player::finish() {
  const double seconds = std::max(static_cast<double>(m_playedNs) * 1e-9, 1e-9);
  Report report;
  addCaptureRows(report, m_session);
  if (!m_stack.message().isEmpty()) report.add("stack", m_stack.message());
  report.add("frames played", grouped(m_frames));
  if (m_options.speed > 0 && !m_options.byTime)
    report.add("frames skipped", grouped(m_session.timeline().skippedFrames()));
  report.add("points", grouped(m_points.shown + m_points.hidden));
  report.add("points shown", grouped(m_points.shown));
  report.add("points hidden", grouped(m_points.hidden));
  if (m_options.points.marks() || m_points.highlighted > 0)
    report.add("points highlighted", grouped(m_points.highlighted));
  if (m_framesEmpty > 0) report.add("frames without a point", grouped(m_framesEmpty));
  report.add("seconds played", QString::number(seconds, 'f', 3));
  report.add("frames a second", QString::number(m_frames / seconds, 'f', 1));
  report.add("points a second", grouped(static_cast<double>(m_points.shown + m_points.hidden) / seconds));
  if (m_pictures > 0) report.add("pictures", QStringLiteral("%1 in %2").arg(m_pictures).arg(m_options.pictureFolder));
  report.print();
  if (m_points.shown == 0) return QStringLiteral("no point was shown in %1 frames").arg(m_frames);
  return m_options.summaryFile.isEmpty() ? QString() : report.write(m_options.summaryFile);
}

/// Refuses what would be passed over: some options are for live sources, others for what is not.
void checkTogether(const PlayOptions &options) {
  const bool live = isLive(options);
  const auto refuse = [live](const char *name, bool given) {
    if (given) throw CLI::ValidationError(name, live ? "is not for a live source" : "is for a live source");
  };
  refuse("--seconds", !live && options.seconds > 0);
  refuse("--soak", !live && options.soak);
  refuse("--speed", live && options.speed > 0);
  refuse("--pictures", live && !options.pictureFolder.isEmpty());
}

QString run(CaptureSession &session, const PlayOptions &options) {
  return isLive(options) ? runLivePlay(session, options) : Player(session, options).run();
}

}  // namespace

void addPlayCommand(CommandLine &line) {
  const auto options = std::make_shared<PlayOptions>();
  CLI::App &command =
      addSourceCommand(line, "play", "Play a capture without a window and print what it held and how fast it went",
                       options, run, Opening::CaptureOrLive);
  addFile(command, options->file, Sources::Any)->required();
  addSensorPort(command, options->sensorPort);
  addSeconds(command, options->seconds);
  command.add_flag("--soak", options->soak,
                   "With a live source: change settings ten times a second and print a line every ten seconds");
  CLI::Option *const byTime = command.add_flag(
      "--by-time", options->byTime, "Follow the clock, showing what lies before the cursor, instead of every frame");
  addStackOption(command, options->stack)->excludes(byTime);
  command
      .add_option("--speed", options->speed,
                  "Times real time, 0.1 to 10; without it frames follow as fast as they come")
      ->check(numberFrom(0.1, 10.0));
  command.add_option("--frames-limit", options->frameLimit, "Stop after so many frames")->check(wholeFrom(1));
  CLI::Option *const pictures =
      addText(command, "--pictures", options->pictureFolder, "Write pictures frame-NNNN.png into this folder");
  const std::size_t before = command.get_options().size();
  command.add_option("--count", options->pictureCount, "How many pictures, spread over the capture (5)")
      ->check(CLI::Range(1, 10000));
  addLook(command, options->look);
  const std::vector<CLI::Option *> all = command.get_options();
  for (std::size_t i = before; i < all.size(); ++i) all[i]->needs(pictures);
  addText(command, "--summary", options->summaryFile, "Write what was found to this file");
  addPointOptions(command, options->points);
  command.parse_complete_callback([options] { checkTogether(*options); });
}

}  // namespace tarvo::skarnvisor::app
