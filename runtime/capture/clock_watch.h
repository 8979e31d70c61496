#pragma once

#include <algorithm>
#include <cstdint>

namespace tarvo::lidar {

/// Puts the starts of frames on a timeline that never goes back: it follows the sensor's clock, and goes on without the
/// step where that clock jumps. One thread.
class ClockWatch {
 public:
  struct Step {
    std::int64_t startNs = 0;  ///< of the frame, on the timeline
    bool jumped = false;
    std::int64_t gapNs = 0;  ///< from the frame in front, when that is more than two periods; else 0
  };

  /// The next frame begins at `sensorNs` by the sensor's clock; its first packet was captured at `stampNs`.
  Step frame(std::int64_t sensorNs, std::int64_t stampNs) {
    Step step;
    const std::int64_t advance = difference(sensorNs, sensorNs_);
    const std::int64_t received = difference(stampNs, stampNs_);
    if (started_) {
      // Without stamps that move, only a step that no pause explains is taken for a jump.
      const std::int64_t tolerance = received == 0 ? silentToleranceNs : toleranceNs;
      step.jumped = advance < 0 || difference(advance, std::max<std::int64_t>(received, 0)) > tolerance;
      if (step.jumped)
        shiftNs_ =
            difference(later(startNs_, received > 0 && received < toleranceNs ? received : fallbackNs), sensorNs);
      else
        step.gapNs = gapOf(advance);
    }
    started_ = true;
    sensorNs_ = sensorNs;
    stampNs_ = stampNs;
    startNs_ = step.startNs = time(sensorNs);
    return step;
  }
  /// A moment of the sensor's clock on the timeline.
  [[nodiscard]] std::int64_t time(std::int64_t sensorNs) const { return later(sensorNs, shiftNs_); }

 private:
  static constexpr std::int64_t toleranceNs = 1'000'000'000;
  static constexpr std::int64_t silentToleranceNs = 3'600 * toleranceNs;
  static constexpr std::int64_t fallbackNs = 100'000'000;

  static std::int64_t difference(std::int64_t a, std::int64_t b) {
    std::int64_t result = 0;
    return __builtin_sub_overflow(a, b, &result) ? (a < b ? INT64_MIN : INT64_MAX) : result;
  }

  static std::int64_t later(std::int64_t time, std::int64_t by) {
    std::int64_t sum = 0;
    return __builtin_add_overflow(time, by, &sum) ? (by < 0 ? INT64_MIN : INT64_MAX) : sum;
  }

  std::int64_t gapOf(std::int64_t advance) {
    const bool regular = periodNs_ == 0 || difference(advance, 2 * periodNs_) <= periodNs_ / 2;
    // Twice the same distance is the rate of the sensor.
    const std::int64_t change = difference(advance, lastAdvanceNs_);
    const bool repeated = std::max(change, -change) <= advance / 10;
    lastAdvanceNs_ = advance;
    if (!regular && !repeated) return advance;
    periodNs_ = std::min(advance, fallbackNs * 1000);
    return 0;
  }

  bool started_ = false;
  std::int64_t sensorNs_ = 0;
  std::int64_t stampNs_ = 0;
  std::int64_t startNs_ = 0;
  std::int64_t shiftNs_ = 0;
  std::int64_t periodNs_ = 0;
  std::int64_t lastAdvanceNs_ = 0;
};

}  // namespace tarvo::lidar
