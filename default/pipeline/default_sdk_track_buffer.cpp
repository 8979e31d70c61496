#include "default/pipeline/default_sdk_track_buffer.h"

#include <QThread>

#include <thread>

#include "contracts/host/log.h"
#include "contracts/runtime/parallel_isp_engine.h"
#include "contracts/runtime/sdk_source.h"
#include "default/pipeline/decode_scope.h"
#include "default/pipeline/default_sdk_net_buffer.h"

SKARN_LOG_SOURCE("default/default_sdk_track_buffer");

namespace tarvo::skarnvisor {

namespace {

constexpr std::chrono::milliseconds pausePerPoll{5};
constexpr int pollsPerWait = 1000;

// Whole microseconds: what is finer than that does not reach the runtime.
double runtimeSeconds(TimePoint time) {
  const auto whole = std::chrono::duration_cast<std::chrono::microseconds>(time.time_since_epoch());
  return static_cast<double>(whole.count()) / 1'000'000.0;
}

}  // namespace

DefaultSDKTrackBuffer::DefaultSDKTrackBuffer(QObject *parent)
    : TrackBuffer(parent), m_pause([](std::chrono::milliseconds pause) { std::this_thread::sleep_for(pause); }) {}

DefaultSDKTrackBuffer::~DefaultSDKTrackBuffer() = default;

QString DefaultSDKTrackBuffer::trackPointSource() const { return QStringLiteral("DefaultTrackPointXYZI.qml"); }

int DefaultSDKTrackBuffer::parallelIspDisplayedSeq(int *, double *, double *) { return -1; }

void DefaultSDKTrackBuffer::setDetailExport(bool on, int type, QUrl url) {
  if (m_renderBuffer) m_renderBuffer->setDetailExport(on, type, url);
}

void DefaultSDKTrackBuffer::setPort(int port) {
  const auto stored = static_cast<quint16>(port);
  if (stored == m_port) return;
  m_port = stored;
  Q_EMIT metaChanged();
}

void DefaultSDKTrackBuffer::setLidarName(const QString &name) {
  if (name == m_lidarName) return;
  m_lidarName = name;
  Q_EMIT metaChanged();
}

DefaultSDKNetBuffer *DefaultSDKTrackBuffer::onlyClip() const {
  const QList<ClipBuffer *> all = clips();
  return all.size() == 1 ? qobject_cast<DefaultSDKNetBuffer *>(all.constFirst()) : nullptr;
}

int DefaultSDKTrackBuffer::findFrameID(TimePoint time) {
  DefaultSDKNetBuffer *clip = onlyClip();
  if (!clip || !m_runtime) {
    SKARN_LOG(LogLevel::Error, "error: sdk buffer loader is null\n");
    return -1;
  }
  const int id = m_runtime->FindFrameId(runtimeSeconds(time));
  const SDKSource *source = m_renderBuffer ? m_renderBuffer->source() : nullptr;
  if (!(source && source->ispEngine && source->ispEngine->Enabled())) clip->showFrame(id);
  return id;
}

void DefaultSDKTrackBuffer::iterate(TimePoint begin, TimePoint end) {
  decode([&] { return m_runtime->Iterate(runtimeSeconds(begin), runtimeSeconds(end)); });
}

void DefaultSDKTrackBuffer::iterate(int first, int count) {
  decode([&] { return m_runtime->Iterate(first, count); });
}

void DefaultSDKTrackBuffer::decode(const std::function<bool()> &start) {
  SDKSource *source = m_renderBuffer ? m_renderBuffer->source() : nullptr;
  if (!source || !m_runtime) return;
  const DecodeScope scope(*m_renderBuffer);
  source->frameReady = false;
  if (start()) awaitFrame();
}

void DefaultSDKTrackBuffer::awaitFrame() {
  const SDKSource &source = *m_renderBuffer->source();
  if (source.frameReady) return;
  for (int poll = 0; poll < pollsPerWait; ++poll) {
    m_pause(pausePerPoll);
    if (source.frameReady) return;
    // The pipeline is being closed: the GUI thread waits for this stage.
    if (QThread::currentThread()->isInterruptionRequested()) {
      m_renderBuffer->flow().skipParse = true;
      return;
    }
  }
  m_pause(pausePerPoll);
  SKARN_LOG(LogLevel::Warning, "error: parser over timeout 5000 ms");
  m_renderBuffer->flow().skipParse = true;
}

}  // namespace tarvo::skarnvisor
