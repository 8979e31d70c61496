#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <vector>

#include "contracts/runtime/parallel_isp_engine.h"
#include "contracts/runtime/point_info.h"

namespace tarvo::lidar {

/// A decoded frame on its way to the display.
struct QueuedFrame {
  std::int64_t sequence = 0;  ///< frame id
  double timestampSeconds = 0.0;
  int rgbMode = 0;
  int laserPointCount = 0;
  int remakeWidth = 1;  ///< points of one row of the remake
  std::vector<SDKPointInfo> points;
  std::vector<SDKPointInfo> overlayPoints;
  int overlayColumns = 0;
  int overlayRows = 0;
};

/// The image-signal engine as a bounded queue: the decoder puts frames in, in order of their sequence, and the producer
/// pulls them. While it is switched off it holds nothing and is not Enabled. Any thread.
class FrameQueueEngine : public ParallelIspEngine {
 public:
  explicit FrameQueueEngine(std::size_t capacity = 8) : capacity_(capacity ? capacity : 1) {}

  /// Called with the sequence that a pull looks for and does not find, on the puller's thread and without the engine's
  /// lock: it has that frame decoded and pushed. Set before the first pull.
  void setFrameRequester(std::function<void(std::int64_t)> request);
  /// Switching off drops the frames held and ends every wait.
  void setEnabled(bool on);
  /// Puts a frame at its place in the order, in place of one of the same sequence. In a full queue the oldest frame
  /// gives way. False: the engine is off, or the frame is older than what the next pull may show. One that is older by
  /// more than the queue holds begins a new run: the frames held are dropped.
  bool push(QueuedFrame frame);
  /// Frames held.
  [[nodiscard]] std::size_t size() const;
  /// Frames that gave way since the start.
  [[nodiscard]] std::uint64_t droppedCount() const;

  [[nodiscard]] bool Enabled() const override;
  [[nodiscard]] std::int64_t LastDisplayedSeq() const override;
  [[nodiscard]] std::int64_t NextDisplaySeq() const override;
  [[nodiscard]] bool IsMipiRawAbsoluteMode() const override { return false; }
  [[nodiscard]] bool ConsumeForcePull() override;
  void RequestForcePull() override;
  bool DisplayPullAndFill(SDKSource *source, bool latest) override;
  bool DisplayPullTargetAndFill(SDKSource *source, std::int64_t sequence, int timeoutMs) override;
  void ClearAll(std::int64_t sequence) override;

 private:
  QueuedFrame takeLocked(std::deque<QueuedFrame>::iterator frame);
  static void fill(SDKSource &source, QueuedFrame &&frame);

  const std::size_t capacity_;
  std::function<void(std::int64_t)> request_;
  mutable std::mutex mutex_;  // guards every member below
  std::condition_variable arrived_;
  std::deque<QueuedFrame> frames_;  // by rising sequence
  bool enabled_ = false;
  bool forcePull_ = false;
  std::int64_t lastDisplayed_ = -1;
  std::int64_t next_ = 0;
  std::uint64_t dropped_ = 0;
};

}  // namespace tarvo::lidar
