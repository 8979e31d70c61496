#include "app/session/capture_session.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QTimer>
#include <thread>

#include "app/session/capture_check.h"
#include "app/session/health_text.h"
#include "app/session/live_address.h"
#include "contracts/runtime/sdk_source.h"
#include "contracts/runtime/sv_sdk_runtime.h"

namespace tarvo::skarnvisor::app {
namespace {

/// How often a condition without a signal of its own is looked at.
constexpr int lookIntervalMs = 1;
constexpr int attemptsAtEnd = 20;

}  // namespace

CaptureSession::CaptureSession(QObject *parent) : QObject(parent) {
  connect(&m_host, &HostCore::opened, this, &CaptureSession::takeUp);
  connect(&m_host, &HostCore::openFailed, this, &CaptureSession::failed);
  connect(&m_host, &HostCore::stopping, this, [this](Pipeline *pipeline) {
    if (pipeline != m_pipeline) return;
    Q_EMIT closing();
    m_view = RenderView();
    m_pipeline = nullptr;
  });
}

CaptureSession::~CaptureSession() { m_host.closeAll(); }

QString CaptureSession::defaultPluginPath() {
  return QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("libskarnvisor_default.so"));
}

QString CaptureSession::loadPlugin(const QString &path) {
  if (!QFileInfo::exists(path))
    return QStringLiteral("the plug-in %1 is missing: name the one to load with --plugin").arg(path);
  QString error;
  if (m_host.loadPlugin(path, &error)) return {};
  return error.isEmpty() ? QStringLiteral("the plug-in %1 cannot be loaded").arg(path) : error;
}

void CaptureSession::open(const QString &path) {
  if (namesLiveSource(path)) return openLive(path);
  const bool pointFiles = namesPointFiles(path);
  const QString fault = pointFiles ? QString() : captureFault(path);
  if (!fault.isEmpty()) {
    Q_EMIT failed(fault);
    return;
  }
  m_host.cancelOpening();
  m_host.closeAll();
  if (pointFiles)
    m_host.openFolder(path);
  else
    m_host.openCapture(path, m_sensorPort);
}

void CaptureSession::openLive(const QString &address) {
  const auto options = parseLiveAddress(address);
  if (!options) {
    Q_EMIT failed(QStringLiteral("%1 is no live source: udp://[address]:port was expected").arg(address));
    return;
  }
  m_host.cancelOpening();
  m_host.closeAll();
  m_host.openLive(*options);
}

lidar::SvSdkRuntime *CaptureSession::runtime() const {
  const Functor *const owner = m_pipeline ? m_pipeline->clipLoader() : nullptr;
  if (owner == nullptr) return nullptr;
  for (const QObject *child : owner->children())
    if (const auto *source = dynamic_cast<const lidar::SDKSource *>(child)) return source->runtime;
  return nullptr;
}

lidar::CaptureReport CaptureSession::captureReport() const {
  const lidar::SvSdkRuntime *const owner = runtime();
  return owner ? owner->GetCaptureReport() : lidar::CaptureReport{};
}

QString CaptureSession::runtimeFault() const {
  const lidar::SvSdkRuntime *const owner = runtime();
  return owner ? QString::fromLocal8Bit(owner->CaptureError().c_str()) : QString();
}

QString CaptureSession::healthText() { return app::healthText(captureReport(), timeline().skippedFrames()); }

QString CaptureSession::openAndWait(const QString &path) {
  QString reason;
  bool done = false;
  const auto onFailed = connect(this, &CaptureSession::failed, this, [&](const QString &text) {
    reason = text;
    done = true;
  });
  const auto onOpened = connect(this, &CaptureSession::opened, this, [&] { done = true; });
  open(path);
  const bool inTime = waitUntil([&] { return done; }, waitLimitMs);
  disconnect(onFailed);
  disconnect(onOpened);
  if (inTime) return reason;
  m_host.cancelOpening();
  const QString fault = namesLiveSource(path) ? QStringLiteral("no packet of a known lidar came on %1 within %2 s")
                                              : QStringLiteral("%1 could not be opened within %2 s");
  return fault.arg(path).arg(waitLimitMs / 1000);
}

void CaptureSession::takeUp(Pipeline *pipeline) {
  m_pipeline = pipeline;
  m_view = RenderView(pipeline->renderBuffer());
  m_frameFault.clear();
  if (!pipeline->chain().isEmpty())
    connect(pipeline->chain().last(), &Functor::finished, this, &CaptureSession::noteFrameEnd, Qt::QueuedConnection);
  QObject *const buffer = m_view.buffer();
  // The signals come from the pipeline's thread; the connection by name carries them over to this one.
  if (buffer && buffer->metaObject()->indexOfSignal("someSignalReceived()") < 0) {
    connect(buffer, SIGNAL(vertexChanged()), this, SIGNAL(frameShown()), Qt::QueuedConnection);
  } else if (buffer) {
    connect(buffer, SIGNAL(someSignalReceived()), this, SIGNAL(frameShown()), Qt::QueuedConnection);
    connect(buffer, SIGNAL(vertexChanged()), this, SIGNAL(pictureChanged()), Qt::QueuedConnection);
    connect(buffer, SIGNAL(allSignalReceived()), this, SIGNAL(pictureChanged()), Qt::QueuedConnection);
  }
  Q_EMIT opened();
}

void CaptureSession::noteFrameEnd(const QString &error) {
  Q_EMIT chainEnded();
  if (error == m_frameFault) return;
  m_frameFault = error;
  Q_EMIT frameFailed(error);
}

bool CaptureSession::waitUntil(const std::function<bool()> &done, int limitMs) {
  QEventLoop loop;
  QElapsedTimer clock;
  clock.start();
  QTimer look;
  look.setTimerType(Qt::PreciseTimer);
  connect(&look, &QTimer::timeout, &loop, [&] {
    if (done() || clock.elapsed() >= limitMs) loop.quit();
  });
  connect(this, &CaptureSession::chainEnded, &loop, [&] {
    // A stage tells its end an instant before it counts as over.
    for (int attempt = 0; attempt < attemptsAtEnd && !done(); ++attempt) std::this_thread::yield();
    if (done()) loop.quit();
  });
  if (!done()) {
    look.start(lookIntervalMs);
    loop.exec();
  }
  return done();
}

QString CaptureSession::waitForIndex(const std::function<void(int)> &progress) {
  QElapsedTimer sinceGrowth;
  sinceGrowth.start();
  int known = -1;
  const auto complete = [&] {
    if (!m_pipeline) return true;
    if (frameCount() != known) {
      known = frameCount();
      sinceGrowth.restart();
      if (progress) progress(known);
    }
    const ClipBuffer *clip = m_pipeline->clip();
    const bool loading = clip != nullptr && clip->pcapLoading();
    // The clip takes up what the runtime found a moment later.
    const bool takenUp = runtime() == nullptr || known >= runtime()->GetFrameCount();
    return (!loading && known > 0 && takenUp) || sinceGrowth.elapsed() > waitLimitMs;
  };
  while (!waitUntil(complete, waitLimitMs)) {
  }
  if (!m_pipeline) return QStringLiteral("the capture was closed");
  return frameCount() > 0 ? QString() : QStringLiteral("%1 holds no frame").arg(m_pipeline->title());
}

QString CaptureSession::showFrame(int frame) {
  const QString fault = seekFrame(frame);
  return fault.isEmpty() ? waitForFrame(frame) : fault;
}

QString CaptureSession::seekFrame(int frame) {
  if (frame < 0 || frame >= frameCount())
    return QStringLiteral("there is no frame %1: the capture has frames 0 to %2").arg(frame).arg(frameCount() - 1);
  timeline().seekFrame(frame);
  return {};
}

QString CaptureSession::waitForFrame(int frame) {
  if (waitForPicture()) return {};
  return QStringLiteral("frame %1 was not decoded within %2 seconds").arg(frame).arg(waitLimitMs / 1000);
}

bool CaptureSession::waitForPicture() {
  const bool idle = waitUntil([this] { return !m_pipeline || !m_pipeline->isBusy(); }, waitLimitMs);
  // What the pipeline announced last is still in the queue.
  QCoreApplication::sendPostedEvents(this);
  return idle && m_pipeline;
}

QString CaptureSession::lidarType() const {
  return m_pipeline && m_pipeline->track() ? m_pipeline->track()->property("lidarName").toString() : QString();
}

int CaptureSession::port() const {
  return m_pipeline && m_pipeline->track() ? m_pipeline->track()->property("port").toInt() : 0;
}

int CaptureSession::frameCount() const {
  return m_pipeline && m_pipeline->clip() ? m_pipeline->clip()->property("frameCount").toInt() : 0;
}

int CaptureSession::shownFrame() const {
  return m_pipeline && m_pipeline->clip() ? m_pipeline->clip()->property("frameID").toInt() : -1;
}

}  // namespace tarvo::skarnvisor::app
