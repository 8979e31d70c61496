// The frame stack: from a request for a depth to a ring of canvases that has the memory for it.
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include "contracts/host/log.h"
#include "contracts/runtime/decoded_frame_resize.h"
#include "contracts/runtime/sdk_source.h"
#include "contracts/runtime/sv_sdk_runtime.h"
#include "default/pipeline/announcements.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

SKARN_LOG_SOURCE("default/default_sdk_parser");

namespace tarvo::skarnvisor {

namespace {

double gib(double bytes) { return bytes / static_cast<double>(std::uint64_t{1} << 30); }
double gib(std::uint64_t bytes) { return gib(static_cast<double>(bytes)); }

}  // namespace

bool DefaultSDKFrameRenderBuffer::setFrameNumber(int n) {
  if (n < 1) return false;
  if (n > StackLimits::frames) {
    SKARN_LOG(LogLevel::Warning, "Frame number %d exceeds absolute limit %d, rejecting", n, StackLimits::frames);
    announceAllocationFinished(false, QStringLiteral("Rejected: max allowed is %1 frames").arg(StackLimits::frames));
    return false;
  }
  if (m_flow.frameAllocationBusy.exchange(true)) {
    SKARN_LOG(LogLevel::Warning, "Frame allocation already in progress, ignoring request for %d frames", n);
    return false;
  }
  if (m_ring.internalCache && n > 1) return requestStack(n);
  leaveStack(n);
  m_flow.frameAllocationBusy = false;
  announceStackChange();
  return true;
}

bool DefaultSDKFrameRenderBuffer::requestStack(int n) {
  const std::size_t single = framePoints();
  const MemoryFigures memory = freeMemory();
  const QuickTest test = quickTest(n, single, memory.availableBytes);
  if (!test.passed) {
    SKARN_LOG(LogLevel::Warning, "Frame number %d requires ~%.2f GB, but only %.2f GB available. Suggested max: %d", n,
              gib(test.neededBytes), gib(memory.availableBytes), test.suggestedFrames);
    endAllocation(false, QStringLiteral("Rejected: requires ~%1 GB, available ~%2 GB. Try <= %3 frames")
                             .arg(gib(test.neededBytes), 0, 'f', 1)
                             .arg(gib(memory.availableBytes), 0, 'f', 1)
                             .arg(test.suggestedFrames));
    return false;
  }
  announce(&DefaultSDKFrameRenderBuffer::frameAllocationStarted);
  m_stackAllocation.run([this, plan = planStack(n, single)] { allocateStack(plan); });
  return true;
}

DefaultSDKFrameRenderBuffer::StackResult DefaultSDKFrameRenderBuffer::planStack(int n, std::size_t single) {
  std::uint64_t held = 0;
  const MemoryFigures memory = freeMemory(&held);
  const double usable = usableBytes(memory, held);
  const int best = deepestStack(single, usable);
  int frames = stackDepth(n);
  const bool limited = frames > best;
  if (limited) {
    SKARN_LOG(LogLevel::Notice,
              "Memory calculation: system_available=%.2f GB, current_allocated=%.2f GB, total_available=%.2f GB, "
              "usable(%.0f%%)=%.2f GB, parser_single_max=%zu",
              gib(memory.availableBytes), gib(held), gib(memory.availableBytes + held),
              usableShare(memory.totalBytes) * 100.0, gib(usable), single);
    SKARN_LOG(LogLevel::Warning, "Frame number %d exceeds memory limit (max %d), clamping", frames, best);
    frames = best;
  }
  StackResult plan;
  plan.shape = stackShape(frames);
  // What a decode frame for a group can't hold, the worker finds out.
  const std::size_t points = single * static_cast<std::size_t>(plan.shape.framesPerCanvas);
  plan.pointsPerCanvas = points <= std::numeric_limits<int>::max() ? static_cast<int>(points) : 0;
  plan.message = limited ? QStringLiteral("Memory limited, set to %1 frames").arg(frames)
                         : QStringLiteral("Successfully allocated %1 frames").arg(frames);
  SKARN_LOG(LogLevel::Notice, "Stack frames: parser_single_max=%zu, fpc=%d, canvases=%d, canvas_pts=%d", single,
            plan.shape.framesPerCanvas, plan.shape.canvases, plan.pointsPerCanvas);
  return plan;
}

void DefaultSDKFrameRenderBuffer::allocateStack(StackResult plan) {
  // A parse or a pass that began before the request is over then, and the GUI thread will not wait for it.
  { const std::scoped_lock passing(m_parseMutex, m_picture.frameMutex); }
  const auto goesOn = [this](double share) {
    m_stackAllocation.progress = share;
    return !m_stackAllocation.cancelled();
  };
  try {
    if (m_stackAllocation.beforeSizing) m_stackAllocation.beforeSizing();
    // Beside the arrays in use: until a page is written it costs nothing, and a request given up has changed nothing.
    plan.arrays = FramePicture::makeStack(plan.shape.canvases, static_cast<std::size_t>(plan.pointsPerCanvas), goesOn);
    if (plan.arrays && goesOn(1.0)) {
      plan.decodeFrameSized = true;
      if (!sizeDecodeFrame(plan.shape.framesPerCanvas)) throw std::bad_alloc();
      plan.success = true;
    }
  } catch (const std::bad_alloc &failure) {
    plan.message = QStringLiteral("Memory allocation failed: %1").arg(QString::fromLatin1(failure.what()));
    SKARN_LOG(LogLevel::Error, "Memory allocation failed for %d frames: %s", plan.shape.frames, failure.what());
  }
  // The arrays go along, so that no copy of the result keeps those that they replace.
  QMetaObject::invokeMethod(
      this, [this, result = std::move(plan)]() mutable { applyStack(std::move(result)); }, Qt::QueuedConnection);
}

void DefaultSDKFrameRenderBuffer::cancelFrameAllocation() {
  if (m_flow.frameAllocationBusy) m_stackAllocation.cancel();
}

void DefaultSDKFrameRenderBuffer::applyStack(StackResult result) {
  if (!m_ring.internalCache) {
    if (result.success) result.message = QStringLiteral("Frame stack dropped: the cache was switched off meanwhile");
    result.success = false;
  } else if (m_stackAllocation.cancelled()) {
    dropStackRequest(result);
    return;
  }
  if (result.success)
    takeUpStack(result);
  else
    leaveStack(1);
  announceStackChange();
  endAllocation(result.success, result.message);
}

void DefaultSDKFrameRenderBuffer::takeUpStack(StackResult &result) {
  const FramePicture::Held held = m_picture.held();
  {
    const std::scoped_lock lock(m_parseMutex, m_picture.frameMutex);
    m_reparseOwed = false;
    m_picture.takeStackLocked(*result.arrays);
    m_ring.shape(result.shape, result.pointsPerCanvas);
    m_picture.pointCapacity = static_cast<std::size_t>(result.pointsPerCanvas);
  }
  m_stackAllocation.release(std::move(result.arrays), held.bytes - held.untouchedBytes);
}

void DefaultSDKFrameRenderBuffer::dropStackRequest(const StackResult &result) {
  if (result.decodeFrameSized) sizeDecodeFrame(m_ring.active() ? m_ring.framesPerCanvas : m_ring.frameNumber);
  SKARN_LOG(LogLevel::Notice, "Frame allocation for %d frames cancelled", result.shape.frames);
  endAllocation(false, QStringLiteral("Cancelled: still %1 frames").arg(frameNumber()));
}

void DefaultSDKFrameRenderBuffer::leaveStack(int frames) {
  sizeDecodeFrame(frames);
  const FramePicture::Held held = m_picture.held();
  std::shared_ptr<void> dropped;
  {
    const std::scoped_lock lock(m_parseMutex, m_picture.frameMutex);
    m_ring.leave(frames);
    dropped = m_picture.dropStackLocked();
    m_reparseOwed = false;
  }
  m_stackAllocation.release(std::move(dropped), held.bytes - held.untouchedBytes);
}

void DefaultSDKFrameRenderBuffer::clearMultiCanvas() {
  if (m_flow.frameAllocationBusy) {
    SKARN_LOG(LogLevel::Warning, "clearMultiCanvas ignored: frame allocation in progress");
    return;
  }
  const int depth = m_ring.frameNumber;
  m_flow.cacheResetRequested = true;
  setFrameNumber(1);
  if (depth >= 2) setFrameNumber(depth);
}

void DefaultSDKFrameRenderBuffer::setInternalCacheFlag(bool flag) {
  m_ring.internalCache = flag;
  if (m_flow.frameAllocationBusy) {
    // The worker is sizing the arrays: they are dropped, or become the ring, when its result comes.
    const std::lock_guard lock(m_picture.frameMutex);
    m_ring.leave(1);
  } else {
    leaveStack(1);
  }
  announce(&DefaultSDKFrameRenderBuffer::allSignalReceived);
  announce(&DefaultSDKFrameRenderBuffer::someSignalReceived);
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::announceStackChange() {
  announce(&DefaultSDKFrameRenderBuffer::frameNumberChanged);
  announce(&DefaultSDKFrameRenderBuffer::allSignalReceived);
  announce(&DefaultSDKFrameRenderBuffer::someSignalReceived);
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::endAllocation(bool success, const QString &message) {
  AnnouncementScope::announce([this, success, message] {
    m_flow.frameAllocationBusy = false;
    const bool runOwed = m_reparseOwed;  // a run that stood aside has left its frame
    announceAllocationFinished(success, message);
    if (runOwed) announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
  });
}

void DefaultSDKFrameRenderBuffer::announceAllocationFinished(bool success, const QString &message) {
  AnnouncementScope::announce(
      [this, success, message] { Q_EMIT frameAllocationFinished(success, frameNumber(), message); });
}

MemoryFigures DefaultSDKFrameRenderBuffer::freeMemory(std::uint64_t *heldBytes) const {
  const FramePicture::Held held = m_picture.held();
  if (heldBytes != nullptr) *heldBytes = held.bytes;
  MemoryFigures memory = m_stackAllocation.memory();
  // The system still counts as free what a stack was promised and has not written to.
  const std::uint64_t free = memory.availableBytes + m_stackAllocation.releasingBytes();
  memory.availableBytes = free - std::min<std::uint64_t>(free, held.untouchedBytes);
  return memory;
}

std::size_t DefaultSDKFrameRenderBuffer::framePoints() const {
  auto *const decoder = runtime();
  auto *const frame = decoder != nullptr ? decoder->DecodeFrame() : nullptr;
  if (frame == nullptr) return 0;
  // A decode holds the lock from begin to end. What the parser saw last is as good, and no wait.
  std::unique_lock lock(frame->mutex, std::try_to_lock);
  if (!lock.owns_lock()) {
    if (const std::size_t known = m_framePoints) return known;
    lock.lock();
  }
  return std::size_t{frame->packetsPerFrame} * frame->pointsPerPacket;
}

bool DefaultSDKFrameRenderBuffer::sizeDecodeFrame(int frames) {
  auto *const decoder = runtime();
  auto *const frame = decoder != nullptr ? decoder->DecodeFrame() : nullptr;
  return frame == nullptr || tarvo::lidar::resizeDecodedFrame(*frame, frames);
}

}  // namespace tarvo::skarnvisor
