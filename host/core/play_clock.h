#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <utility>

#include "contracts/host/time.h"

namespace tarvo::skarnvisor {

/// Where the cursor should be: an anchor on the timeline that moves on with a steady clock, times the speed.
class PlayClock {
 public:
  using Moment = std::chrono::steady_clock::time_point;
  using Source = std::function<Moment()>;

  static Source steadySource() {
    return [] { return std::chrono::steady_clock::now(); };
  }

  explicit PlayClock(Source source) : m_source(std::move(source)), m_anchorMoment(m_source()) {}

  [[nodiscard]] Moment now() const { return m_source(); }
  [[nodiscard]] double speed() const { return m_speed; }
  [[nodiscard]] TimePoint target() const {
    const std::chrono::duration<double> passed = now() - m_anchorMoment;
    return m_anchor + ticksFromSeconds(passed.count() * m_speed);
  }

  void anchor(TimePoint cursor) {
    m_anchor = cursor;
    m_anchorMoment = now();
  }
  void setSpeed(double speed) {
    anchor(target());
    m_speed = speed;
  }
  /// How far, in time of the clock, `cursor` lies behind the target; negative before it.
  [[nodiscard]] double lagSeconds(TimePoint cursor) const { return secondsFromTicks(target() - cursor) / m_speed; }

 private:
  Source m_source;
  Moment m_anchorMoment;
  TimePoint m_anchor;
  double m_speed = 1.0;
};

}  // namespace tarvo::skarnvisor
