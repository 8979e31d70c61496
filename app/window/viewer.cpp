#include "app/window/viewer.h"

#include <QFileInfo>
#include <QLocale>
#include <algorithm>
#include <tuple>
#include <utility>

#include "app/session/live_address.h"
#include "contracts/runtime/sv_sdk_runtime.h"

namespace tarvo::skarnvisor::app {
namespace {

constexpr int healthIntervalMs = 500;

template <typename Number>
QString grouped(Number number) {
  return QLocale(QLocale::English).toString(static_cast<qlonglong>(number));
}

}  // namespace

Viewer::Viewer(QObject *parent)
    : QObject(parent),
      m_bufferCalls(m_background, this),
      m_colors(ColorHalf::Main, m_bufferCalls, this),
      m_sideColors(ColorHalf::SplitWindow, m_bufferCalls, this) {
  connect(&m_session, &CaptureSession::opened, this, &Viewer::takeUpCapture);
  connect(&m_session, &CaptureSession::failed, this, &Viewer::tellWhatElseToOpen);
  connect(&m_session, &CaptureSession::frameFailed, this, &Viewer::noteFrame);
  connect(&m_session, &CaptureSession::frameShown, this, &Viewer::readFrame);
  connect(&m_session, &CaptureSession::pictureChanged, this, &Viewer::readPicture);
  connect(&m_session, &CaptureSession::closing, this, &Viewer::drop);
  connect(&m_session.host(), &HostCore::openingChanged, this, &Viewer::openingChanged);
  connect(&m_jobs, &Jobs::failed, this, &Viewer::fail);
  connect(&m_jobs, &Jobs::succeeded, this, &Viewer::tell);
  m_jobs.setFaultSource([this] { return m_session.runtimeFault(); });
  m_jobs.setCutWatch([this](auto tell) {
    if (auto *const runtime = m_session.runtime()) runtime->WatchCuts(std::move(tell));
  });
  for (ColorScale *scale : {&m_colors, &m_sideColors}) {
    connect(scale, &ColorScale::changed, this, [this] {
      m_scene.main = m_colors.colors();
      m_scene.side = m_sideColors.colors();
      Q_EMIT lookChanged();
    });
    connect(scale, &ColorScale::fitRequested, this, &Viewer::takePicture);
    connect(scale, &ColorScale::modeTaken, this, &Viewer::readPicture);
  }
  connect(&m_healthTimer, &QTimer::timeout, this, &Viewer::lookAtHealth);
  m_healthTimer.start(healthIntervalMs);
  m_scene.splitView = m_preferences.splitWindow();
  m_sinceRate.start();
}

void Viewer::start(const QString &pluginPath) {
  const QString fault = m_session.loadPlugin(pluginPath);
  setError(fault.isEmpty() ? fault : fault + QStringLiteral("; install the program again, nothing opens without it."));
}

void Viewer::tellWhatElseToOpen(const QString &fault) {
  if (std::exchange(m_cancelsOpening, false)) return tell(QStringLiteral("The opening was cancelled"));
  const QString clause = fault.endsWith(QLatin1Char('.')) ? fault.chopped(1) : fault;
  const QString way = namesLiveSource(m_requested)     ? QStringLiteral("; try again with Ctrl+L.")
                      : QFileInfo(m_requested).isDir() ? QStringLiteral("; open another folder with Ctrl+Shift+O.")
                                                       : QStringLiteral("; open another file with Ctrl+O.");
  setError(clause + way);
}

void Viewer::open(const QString &source) {
  m_session.setSensorPort(0);
  m_requested = source;
  openRequested();
}

void Viewer::openRequested() {
  setError({});
  m_cancelsOpening = false;
  m_session.open(m_requested);
}

void Viewer::showSensor(int index) {
  if (index < 0 || index >= static_cast<int>(m_sensors.size())) return;
  m_session.setSensorPort(m_sensors[static_cast<std::size_t>(index)].port);
  openRequested();
}

void Viewer::close() {
  cancelOpening();
  m_session.host().closeAll();
}

void Viewer::cancelOpening() {
  m_cancelsOpening = isOpening();
  m_session.host().cancelOpening();
  // One that has not begun goes without a word.
  if (m_cancelsOpening && !isOpening()) tellWhatElseToOpen({});
}

QString Viewer::openingText() const {
  return namesLiveSource(m_requested) ? QStringLiteral("Waiting for packets at %1 \u2026").arg(m_requested)
                                      : QStringLiteral("Opening \u2026");
}

void Viewer::showAgain() {
  m_bufferCalls.run([this, closed = m_sourcesClosed.load()] {
    QMetaObject::invokeMethod(
        this,
        [this, closed] {
          Pipeline *const pipeline = m_session.pipeline();
          if (closed == m_sourcesClosed && pipeline != nullptr && !pipeline->isLive())
            pipeline->show(m_session.timeline().cursor());
        },
        Qt::QueuedConnection);
  });
}

bool Viewer::isOpenSource(const QUrl &file) const {
  const QString path = QFileInfo(file.toLocalFile()).canonicalFilePath();
  return isReady() && !path.isEmpty() && path == m_openPath;
}

void Viewer::takeUpCapture() {
  setError({});
  m_measured = false;
  m_bufferCalls.takeUp();
  const QFileInfo file(m_requested);
  m_openPath = file.canonicalFilePath();  // empty for a live source
  m_preferences.addRecent(file.exists() ? file.absoluteFilePath() : m_requested);
  m_session.view().setPlayByFrame(m_playByFrame);
  m_files = namedFiles(m_session.pipeline()->renderBuffer(), m_session.pipeline()->track());
  if (QObject *buffer = this->buffer()) {
    connect(buffer, SIGNAL(colorModeTitlesChanged()), this, SIGNAL(colorTitlesChanged()), Qt::QueuedConnection);
    for (ColorScale *scale : {&m_colors, &m_sideColors}) {
      connect(buffer, SIGNAL(colorModeTitlesChanged()), scale, SLOT(refresh()), Qt::QueuedConnection);
      connect(buffer, SIGNAL(colorModeChanged()), scale, SLOT(refresh()), Qt::QueuedConnection);
      connect(buffer, SIGNAL(colorModeSplitWindowChanged()), scale, SLOT(refresh()), Qt::QueuedConnection);
    }
    if (buffer->metaObject()->indexOfSignal("rgbOverlayVertexChanged()") >= 0)
      connect(buffer, SIGNAL(rgbOverlayVertexChanged()), this, SLOT(readOverlay()), Qt::QueuedConnection);
    connect(buffer, SIGNAL(renderStateChanged()), this, SLOT(readPlacement()), Qt::QueuedConnection);
  }
  readPlacement();
  Q_EMIT captureChanged();
  Q_EMIT colorTitlesChanged();
  m_colors.takeUp(m_session.view());
  m_sideColors.takeUp(m_session.view());
  readPicture();
  lookAtHealth();
}

void Viewer::drop() {
  ++m_sourcesClosed;
  m_bufferCalls.drop();
  m_jobs.stop();
  m_tableRows.stop();
  m_background.finish();
  m_reading = m_frameDue = m_allDue = m_refilterWaits = m_overlayWaits = false;
  m_feed.clear();
  m_picture = {};
  m_scene.canvases.clear();
  m_statusText.clear();
  m_overlay = QImage();
  Q_EMIT pictureChanged();
  Q_EMIT overlayChanged();
  // The session forgets the capture after this signal.
  QMetaObject::invokeMethod(
      this,
      [this] {
        m_colors.takeUp(m_session.view());
        m_sideColors.takeUp(m_session.view());
        if (m_session.pipeline() == nullptr) m_files = NamedFiles();
        Q_EMIT captureChanged();
        Q_EMIT pictureChanged();  // no points to count any more
        Q_EMIT colorTitlesChanged();
        lookAtHealth();
      },
      Qt::QueuedConnection);
}

QString Viewer::title() const {
  return QFileInfo(source()).fileName().isEmpty() ? source() : QFileInfo(source()).fileName();
}

QString Viewer::countText() const {
  if (!isReady()) return {};
  const PointCounts counts = m_picture.counts();
  QString text = QStringLiteral("%1 points shown, %2 hidden").arg(grouped(counts.shown), grouped(counts.hidden));
  if (counts.highlighted > 0) text += QStringLiteral(", %1 selected").arg(grouped(counts.highlighted));
  return text;
}

void Viewer::lookAtHealth() {
  const qint64 elapsed = m_sinceRate.restart();
  m_pictureRate = elapsed > 0 ? 1000.0 * m_picturesSinceRate / static_cast<double>(elapsed) : 0;
  m_picturesSinceRate = 0;
  const lidar::CaptureReport report = m_session.captureReport();
  m_recording = report.recording;
  m_indexShare = report.share > 0 ? report.share : -1;
  noteSensors(report.sensors);
  m_lossText = m_session.pipeline() != nullptr ? m_session.healthText() : QString();
  Q_EMIT healthChanged();
}

void Viewer::noteSensors(const std::vector<lidar::CaptureSensor> &sensors) {
  const auto row = [](const lidar::CaptureSensor &sensor) { return std::tie(sensor.port, sensor.type, sensor.shown); };
  const auto equal = [&](const auto &a, const auto &b) { return row(a) == row(b); };
  if (std::equal(sensors.begin(), sensors.end(), m_sensors.begin(), m_sensors.end(), equal)) return;
  m_sensors = sensors;
  Q_EMIT sensorsChanged();
}

QStringList Viewer::sensors() const {
  QStringList names;
  if (m_sensors.size() < 2) return names;
  for (const lidar::CaptureSensor &sensor : m_sensors)
    names << QStringLiteral("%1, port %2").arg(QString::fromLocal8Bit(sensor.type.c_str())).arg(sensor.port);
  return names;
}

int Viewer::sensor() const {
  const auto shown = std::find_if(m_sensors.begin(), m_sensors.end(), [](const auto &sensor) { return sensor.shown; });
  return shown == m_sensors.end() ? -1 : static_cast<int>(shown - m_sensors.begin());
}

void Viewer::stopReading() {
  ClipBuffer *const open = m_session.pipeline() != nullptr ? m_session.pipeline()->clip() : nullptr;
  if (open == nullptr || m_session.runtime() == nullptr) return close();
  open->setLoading(false);
  tell(QStringLiteral("Reading stopped; open the capture again to read the rest"));
}

bool Viewer::isIndexing() const {
  const QObject *clip = this->clip();
  return clip != nullptr && !isLive() && clip->property("pcapLoading").toBool();
}

QString Viewer::recordingText() const {
  if (!m_recording.running) return {};
  const double megabytes = static_cast<double>(m_recording.bytes) / 1e6;
  return QStringLiteral("Recording, %1 packets, %2 MB").arg(grouped(m_recording.packets)).arg(megabytes, 0, 'f', 1);
}

void Viewer::record(bool on) {
  bool done = false;
  if (QObject *target = clip())
    QMetaObject::invokeMethod(target, "setRecord", Qt::DirectConnection, Q_RETURN_ARG(bool, done), Q_ARG(bool, on));
  lookAtHealth();
  if (!on && done) tell(QStringLiteral("The recording has ended"));
  if (on && done && !m_recording.running) fail(m_session.runtimeFault());
}

void Viewer::setCanvasColors(const QColor &background, const QColor &grid) {
  m_scene.background = background;
  m_scene.gridTint = grid;
  Q_EMIT lookChanged();
}

QUrl Viewer::panelFile(const QString &name) { return programFile(name); }

void Viewer::setPointSize(double pixels) {
  m_scene.pointPixels = static_cast<float>(pixels);
  Q_EMIT lookChanged();
}

void Viewer::setGridVisible(bool visible) {
  m_scene.grid = visible;
  Q_EMIT lookChanged();
}

void Viewer::setSplitView(bool split) {
  m_scene.splitView = split;
  m_preferences.setSplitWindow(split);
  Q_EMIT lookChanged();
}

void Viewer::setPlayByFrame(bool byFrame) {
  m_playByFrame = byFrame;
  m_session.view().setPlayByFrame(byFrame);
  Q_EMIT playByFrameChanged();
}

void Viewer::fail(const QString &error) {
  m_passingError = error;
  setError(error);
}

void Viewer::noteFrame(const QString &fault) {
  if (fault.isEmpty() && m_error == m_frameError) setError({});
  m_frameError = fault;
  if (!fault.isEmpty()) setError(fault);
}

void Viewer::tell(const QString &notice) {
  if (m_error == m_passingError) setError({});
  m_notice = notice;
  Q_EMIT noticeChanged();
}

void Viewer::setError(const QString &error) {
  if (error == m_error) return;
  m_error = error;
  Q_EMIT errorChanged();
}

}  // namespace tarvo::skarnvisor::app
