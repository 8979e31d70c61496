#include "default/pipeline/default_sdk_producer.h"

#include <algorithm>
#include <utility>

#include "contracts/host/log.h"
#include "contracts/runtime/parallel_isp_engine.h"
#include "contracts/runtime/sdk_source.h"
#include "default/pipeline/decode_scope.h"
#include "default/pipeline/default_sdk_net_buffer.h"

SKARN_LOG_SOURCE("default/default_sdk_producer");

namespace tarvo::skarnvisor {

namespace {

constexpr Ticks windowMargin{10'000};  // 1 ms
constexpr int largestLag = 30;         // frames
constexpr int forcedPullTimeoutMs = 5000;

}  // namespace

DefaultSDKProducer::DefaultSDKProducer(QObject *parent)
    : Functor(parent), m_timeCursorToggle(new TimeCursorToggle(this)), m_trackBuffer(new DefaultSDKTrackBuffer(this)) {}

DefaultSDKProducer::DefaultSDKProducer() : DefaultSDKProducer(nullptr) {}

DefaultSDKProducer::~DefaultSDKProducer() = default;

void DefaultSDKProducer::setRenderBuffer(DefaultSDKFrameRenderBuffer *renderBuffer) {
  m_renderBuffer = renderBuffer;
  m_trackBuffer->setRenderBuffer(renderBuffer);
}

void DefaultSDKProducer::operator()() {
  if (!clipActive()) {
    skip();
  } else if (!m_renderBuffer->playByFrame()) {
    decodeTimeWindow();
  } else {
    decodeByFrame();
  }
}

bool DefaultSDKProducer::clipActive() const {
  const SDKSource *source = m_renderBuffer ? m_renderBuffer->source() : nullptr;
  return source && source->clipActive;
}

void DefaultSDKProducer::skip() {
  if (m_renderBuffer) m_renderBuffer->flow().skipParse = true;
}

bool DefaultSDKProducer::isCaptureFile() const {
  return m_renderBuffer->source()->driverParam.sourceKind == static_cast<int>(lidar::SourceKind::CaptureFile);
}

void DefaultSDKProducer::decodeTimeWindow() {
  const Ticks span = Ticks(m_renderBuffer->settings().frameTicks.load()) + windowMargin;
  m_trackBuffer->setLastFrameId(-1);
  const TimePoint end = m_timeCursorToggle->timeCursor();
  const TimePoint begin = m_timeCursorToggle->timeCursor() - span;
  m_trackBuffer->iterate(begin, end);
}

void DefaultSDKProducer::decodeByFrame() {
  const int id = m_trackBuffer->findFrameID(m_timeCursorToggle->timeCursor());
  const std::shared_ptr<lidar::PlayState> playState = m_renderBuffer->source()->playState;
  const StackSettings stack = m_renderBuffer->stackSettings();
  const bool playing = playState->playing;
  if (imageSignalStep(id, playing)) return;
  const bool stale = stackChanged(stack, playing);
  const bool resetAsked = m_renderBuffer->flow().cacheResetRequested.exchange(false);
  if ((resetAsked || stale) && stack.cached) restartStack(id, stack);
  if (id < 0 || (playing && id == m_trackBuffer->lastFrameId())) {
    skip();
  } else if (!stack.cached) {
    m_trackBuffer->setLastFrameId(id);
    m_trackBuffer->iterate(id - stack.frames + 1, stack.frames);
  } else {
    overlayStep(id, stack.framesPerCanvas, playing);
  }
}

bool DefaultSDKProducer::stackChanged(const StackSettings &stack, bool playing) {
  const bool depthChanged = std::exchange(m_lastFrameNumber, stack.frames) != stack.frames;
  const bool playBegan = !std::exchange(m_lastPlaying, playing) && playing;
  return depthChanged || (playBegan && stack.cached);
}

void DefaultSDKProducer::restartStack(int id, const StackSettings &stack) {
  m_renderBuffer->restartRing();
  if (isCaptureFile()) {
    const int start = std::max(id - stack.frames + 1, 0);
    m_trackBuffer->setLastFrameId(start - start % stack.framesPerCanvas);
    m_resyncPending = true;
  } else {
    m_trackBuffer->setLastFrameId(id);
  }
}

void DefaultSDKProducer::overlayStep(int id, int groupFrames, bool playing) {
  if (wentBack(id)) {
    m_trackBuffer->setLastFrameId(isCaptureFile() ? 0 : id);
    m_resyncPending = true;
  }
  if (overlayWaits(id, groupFrames, playing)) {
    skip();
    return;
  }
  m_resyncPending = false;
  overlayGroup(id, groupFrames);
}

// While the cursor catches up with a group that reached beyond it, the position is ahead and nobody went back: the
// group would otherwise enter the ring once for each of its frames.
bool DefaultSDKProducer::wentBack(int id) const {
  const int position = m_trackBuffer->lastFrameId();
  return id < position && !(m_ahead.position == position && id >= m_ahead.cursor);
}

// A restart waits for playback, and then begins at once; otherwise a group must be complete.
bool DefaultSDKProducer::overlayWaits(int id, int groupFrames, bool playing) {
  if (m_resyncPending) return !playing;
  return id < m_trackBuffer->lastFrameId() + groupFrames;
}

void DefaultSDKProducer::overlayGroup(int id, int groupFrames) {
  const int first = m_trackBuffer->lastFrameId();
  m_trackBuffer->iterate(first, groupFrames);
  if (!m_renderBuffer->source()->frameReady) {
    SKARN_LOG(LogLevel::Warning, "[Overlay] iterate(id=%d) failed (trimmed), resync last_frameID %d -> %d", first,
              first, id);
    m_trackBuffer->setLastFrameId(id);
    skip();
    return;
  }
  const int next = first + groupFrames;
  m_ahead = {id, next};
  const int lag = id - next;
  if (lag > largestLag)
    SKARN_LOG(LogLevel::Warning, "[Overlay] lag=%d exceeds threshold, resync last_frameID %d -> %d", lag, next, id);
  m_trackBuffer->setLastFrameId(lag > largestLag ? id : next);
}

bool DefaultSDKProducer::imageSignalStep(int id, bool playing) {
  SDKSource *source = m_renderBuffer->source();
  if (!source->ispEngine || !source->ispEngine->Enabled()) return false;
  if (id < 0 || !(playing || source->ispEngine->ConsumeForcePull() || source->ispEngine->LastDisplayedSeq() != id)) {
    skip();
    return true;
  }
  const bool done = pullImageSignal(id, playing);
  m_renderBuffer->flow().skipParse = !done;
  if (done) showDisplayedSequence();
  return true;
}

bool DefaultSDKProducer::pullImageSignal(int id, bool playing) {
  SDKSource *source = m_renderBuffer->source();
  lidar::ParallelIspEngine &engine = *source->ispEngine;
  if (playing) startOverAtCaptureEnd(id);
  const DecodeScope scope(*m_renderBuffer);
  const bool filled = playing ? engine.DisplayPullAndFill(source, !engine.IsMipiRawAbsoluteMode())
                              : engine.DisplayPullTargetAndFill(source, id, forcedPullTimeoutMs);
  return filled && source->pointCount >= 1;
}

// A track that tells its frame total has the capture played from its begin again. Raw frames are never skipped, so
// the engine is the one that runs past the end there, not the cursor.
void DefaultSDKProducer::startOverAtCaptureEnd(int id) {
  lidar::ParallelIspEngine &engine = *m_renderBuffer->source()->ispEngine;
  int total = 0;
  m_trackBuffer->parallelIspDisplayedSeq(&total, nullptr, nullptr);
  if (total < 2 || !engine.IsMipiRawAbsoluteMode()) return;
  const std::int64_t displayed = engine.LastDisplayedSeq();
  const std::int64_t lastButOne = total - 2;
  const bool wrapped = id <= 1 && (displayed >= lastButOne || m_imageSignalTarget >= lastButOne);
  if (engine.NextDisplaySeq() >= total || wrapped) {
    engine.ClearAll(0);
    m_imageSignalTarget = 0;
  } else {
    m_imageSignalTarget = displayed < 0 ? id : std::min<std::int64_t>(id, displayed + 1);
  }
}

void DefaultSDKProducer::showDisplayedSequence() {
  const auto sequence = static_cast<int>(m_renderBuffer->source()->ispEngine->LastDisplayedSeq());
  if (sequence < 0) return;
  if (DefaultSDKNetBuffer *clip = m_trackBuffer->onlyClip()) {
    const int frames = clip->frameCount();
    clip->showFrame(frames >= 1 ? std::min(sequence, frames - 1) : sequence);
  }
  m_trackBuffer->setLastFrameId(sequence);
}

}  // namespace tarvo::skarnvisor
