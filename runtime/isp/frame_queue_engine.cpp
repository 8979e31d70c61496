#include "runtime/isp/frame_queue_engine.h"

#include <algorithm>
#include <utility>

#include "contracts/runtime/sdk_source.h"
#include "contracts/runtime/sv_sdk_runtime.h"

namespace tarvo::lidar {
namespace {

bool before(const QueuedFrame &frame, std::int64_t sequence) { return frame.sequence < sequence; }

}  // namespace

void FrameQueueEngine::setFrameRequester(std::function<void(std::int64_t)> request) { request_ = std::move(request); }

void FrameQueueEngine::setEnabled(bool on) {
  {
    const std::lock_guard lock(mutex_);
    enabled_ = on;
    if (!on) frames_.clear();
  }
  arrived_.notify_all();
}

bool FrameQueueEngine::push(QueuedFrame frame) {
  {
    const std::lock_guard lock(mutex_);
    if (!enabled_) return false;
    if (frame.sequence < next_) {
      // Further back than the queue is long: the capture plays from its begin again.
      if (next_ - frame.sequence <= static_cast<std::int64_t>(capacity_)) return false;
      frames_.clear();
      next_ = frame.sequence;
    }
    const auto place = std::lower_bound(frames_.begin(), frames_.end(), frame.sequence, before);
    if (place != frames_.end() && place->sequence == frame.sequence) {
      *place = std::move(frame);
    } else {
      frames_.insert(place, std::move(frame));
      if (frames_.size() > capacity_) {
        frames_.pop_front();
        ++dropped_;
      }
    }
  }
  arrived_.notify_all();
  return true;
}

std::size_t FrameQueueEngine::size() const {
  const std::lock_guard lock(mutex_);
  return frames_.size();
}

std::uint64_t FrameQueueEngine::droppedCount() const {
  const std::lock_guard lock(mutex_);
  return dropped_;
}

bool FrameQueueEngine::Enabled() const {
  const std::lock_guard lock(mutex_);
  return enabled_;
}

std::int64_t FrameQueueEngine::LastDisplayedSeq() const {
  const std::lock_guard lock(mutex_);
  return lastDisplayed_;
}

std::int64_t FrameQueueEngine::NextDisplaySeq() const {
  const std::lock_guard lock(mutex_);
  return next_;
}

bool FrameQueueEngine::ConsumeForcePull() {
  const std::lock_guard lock(mutex_);
  return std::exchange(forcePull_, false);
}

void FrameQueueEngine::RequestForcePull() {
  const std::lock_guard lock(mutex_);
  forcePull_ = true;
}

// Takes a frame out for display; what is older will not be shown any more.
QueuedFrame FrameQueueEngine::takeLocked(std::deque<QueuedFrame>::iterator frame) {
  QueuedFrame taken = std::move(*frame);
  frames_.erase(frames_.begin(), frame + 1);
  lastDisplayed_ = taken.sequence;
  next_ = taken.sequence + 1;
  return taken;
}

bool FrameQueueEngine::DisplayPullAndFill(SDKSource *source, bool latest) {
  if (!source) return false;
  std::unique_lock lock(mutex_);
  if (!enabled_) return false;
  if (frames_.empty()) {
    const std::int64_t wanted = next_;
    lock.unlock();
    if (request_) request_(wanted);
    return false;
  }
  QueuedFrame frame = takeLocked(latest ? frames_.end() - 1 : frames_.begin());
  lock.unlock();
  fill(*source, std::move(frame));
  return true;
}

bool FrameQueueEngine::DisplayPullTargetAndFill(SDKSource *source, std::int64_t sequence, int timeoutMs) {
  if (!source || sequence < 0) return false;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(std::max(timeoutMs, 0));
  const auto held = [&] {
    const auto place = std::lower_bound(frames_.begin(), frames_.end(), sequence, before);
    return place != frames_.end() && place->sequence == sequence ? place : frames_.end();
  };
  std::unique_lock lock(mutex_);
  if (!enabled_) return false;
  next_ = sequence;  // a step back makes room for frames that were shown already
  if (held() == frames_.end()) {
    lock.unlock();
    if (request_) request_(sequence);
    lock.lock();
    arrived_.wait_until(lock, deadline, [&] { return !enabled_ || held() != frames_.end(); });
  }
  const auto place = held();
  if (!enabled_ || place == frames_.end()) return false;
  QueuedFrame frame = takeLocked(place);
  lock.unlock();
  fill(*source, std::move(frame));
  return true;
}

void FrameQueueEngine::ClearAll(std::int64_t sequence) {
  const std::lock_guard lock(mutex_);
  frames_.clear();
  next_ = std::max<std::int64_t>(sequence, 0);
  lastDisplayed_ = -1;
}

void FrameQueueEngine::fill(SDKSource &source, QueuedFrame &&frame) {
  const std::lock_guard lock(source.frameLock);
  if (DecodedFrame *const decoded = source.runtime != nullptr ? source.runtime->DecodeFrame() : nullptr) {
    // Its points are those that the source lets go of now.
    const std::lock_guard frameLock(decoded->mutex);
    decoded->points = nullptr;
    decoded->pointCount = 0;
  }
  source.pointCount = int(frame.points.size());
  source.points = std::move(frame.points);
  source.overlayPoints = std::move(frame.overlayPoints);
  source.overlayColumns = frame.overlayColumns;
  source.overlayRows = frame.overlayRows;
  source.laserPointCount = frame.laserPointCount;
  source.remakeWidth = std::max(frame.remakeWidth, 1);
  source.mergedFrames = 1;
  source.rgbMode = frame.rgbMode;
  source.frameTimestamp = frame.timestampSeconds;
  source.fastPathDone = false;
}

}  // namespace tarvo::lidar
