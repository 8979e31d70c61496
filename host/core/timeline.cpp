#include "host/core/timeline.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace tarvo::skarnvisor {
namespace {

using namespace std::chrono_literals;

constexpr auto turnPeriod = 4ms;
// Playing behind the clock by this much means that the machine can't hold the speed: the newest frame wins.
constexpr double slipSeconds = 0.25;
// An end that moved this recently is that of a capture still being indexed, and not the end.
constexpr auto growthPause = 500ms;
constexpr double stepSecondsWithoutIndex = 0.1;
constexpr Ticks beginMargin{100};  // as for frames: a cursor cut to just before the begin shows nothing

}  // namespace

Timeline::Timeline(QObject *parent, PlayClock::Source clock)
    : QObject(parent), m_clock(std::move(clock)), m_lastGrowth(m_clock.now()) {
  m_timer.setTimerType(Qt::PreciseTimer);
  m_timer.setInterval(turnPeriod);
  connect(&m_timer, &QTimer::timeout, this, &Timeline::advance);
}

Timeline::~Timeline() = default;

// ---- tracks ---------------------------------------------------------------------------------------------------------

void Timeline::addTrack(TimelineTrack *track) {
  m_tracks.append(track);
  m_leading = track;
  m_unplaced = track;
  track->setPlaying(m_playing);
  updateExtent();
  Q_EMIT cursorChanged();  // the frame number is another track's now
  if (track->isLive()) {
    setFollow(true);
    setPlaying(true);
  }
}

void Timeline::removeTrack(TimelineTrack *track) {
  if (!m_tracks.removeOne(track)) return;
  if (m_unplaced == track) m_unplaced = nullptr;
  if (m_leading == track) m_leading = m_tracks.isEmpty() ? nullptr : m_tracks.last();
  if (m_tracks.isEmpty()) {
    setPlaying(false);
    m_skippedFrames = 0;  // another source's
  }
  if (!hasLiveTrack()) setFollow(false);
  updateExtent();
  Q_EMIT cursorChanged();
}

void Timeline::setLeadingTrack(TimelineTrack *track) {
  if (m_leading == track || !m_tracks.contains(track)) return;
  m_leading = track;
  updateExtent();
  Q_EMIT cursorChanged();
}

void Timeline::updateExtent() {
  TimePoint first = TimePoint::max();
  TimePoint last = TimePoint::min();
  for (const TimelineTrack *track : std::as_const(m_tracks)) {
    if (!track->isKnown()) continue;
    first = std::min(first, track->begin());
    last = std::max(last, track->end());
  }
  if (first > last) first = last = TimePoint();
  const int frames = frameCount();
  if (last > m_end || frames > m_frameCount) m_lastGrowth = m_clock.now();
  if (first != m_begin || last != m_end || frames != m_frameCount) {
    m_begin = first;
    m_end = last;
    m_frameCount = frames;
    Q_EMIT extentChanged();
  }
  placeCursor();
}

void Timeline::placeCursor() {
  if (m_unplaced != nullptr && m_unplaced->isKnown()) {
    TimelineTrack *const track = std::exchange(m_unplaced, nullptr);
    const bool inside = track->begin() <= m_cursor && m_cursor <= track->end();
    if (m_playing || inside) {
      track->show(m_cursor);
    } else {
      moveCursor(firstCursor(*track));
      m_placedWithoutIndex = track->frames() == nullptr;
    }
  } else if (m_placedWithoutIndex && !m_playing && m_leading != nullptr && m_leading->frames() != nullptr) {
    moveCursor(firstCursor(*m_leading));
  }
}

bool Timeline::hasLiveTrack() const {
  return std::any_of(m_tracks.begin(), m_tracks.end(), [](const TimelineTrack *track) { return track->isLive(); });
}

bool Timeline::isInsideAnyTrack(TimePoint time) const {
  return std::any_of(m_tracks.begin(), m_tracks.end(), [time](const TimelineTrack *track) {
    return track->isKnown() && track->begin() <= time && time <= track->end();
  });
}

TimePoint Timeline::firstCursor(const TimelineTrack &track) const {
  const ClipFrames *const frames = track.frames();
  return frames != nullptr ? frames->cursorOf(0) : track.begin() + beginMargin;
}

TimePoint Timeline::lastCursor(const TimelineTrack &track) const {
  const ClipFrames *const frames = track.frames();
  return frames != nullptr ? frames->cursorOf(frames->count() - 1) : track.end();
}

// ---- the frame number and steps -----------------------------------------------------------------------------------

int Timeline::frame() const {
  const ClipFrames *const frames = m_leading != nullptr ? m_leading->index() : nullptr;
  return frames != nullptr ? frames->indexAt(m_cursor) : -1;
}

int Timeline::frameCount() const {
  const ClipFrames *const frames = m_leading != nullptr ? m_leading->index() : nullptr;
  return frames != nullptr ? frames->count() : 0;
}

void Timeline::stepFrames(int count) {
  setPlaying(false);
  if (m_leading == nullptr || !m_leading->isKnown()) return;
  if (const ClipFrames *const frames = m_leading->frames()) {
    const std::int64_t wanted = std::int64_t{frames->indexAt(m_cursor)} + count;
    seek(frames->cursorOf(static_cast<int>(std::clamp<std::int64_t>(wanted, 0, frames->count() - 1))));
  } else {
    seek(
        std::clamp(m_cursor + ticksFromSeconds(count * stepSecondsWithoutIndex), m_leading->begin(), m_leading->end()));
  }
}

void Timeline::first() {
  if (m_leading != nullptr && m_leading->isKnown()) seek(firstCursor(*m_leading));
}

void Timeline::last() {
  if (m_leading != nullptr && m_leading->isKnown()) seek(lastCursor(*m_leading));
}

void Timeline::seekSeconds(double seconds) {
  if (!m_tracks.isEmpty() && !std::isnan(seconds)) seek(std::clamp(timeFromSeconds(seconds), m_begin, m_end));
}

void Timeline::seekFrame(int frame) {
  const ClipFrames *const frames = m_leading != nullptr ? m_leading->frames() : nullptr;
  if (frames != nullptr) seek(frames->cursorOf(std::clamp(frame, 0, frames->count() - 1)));
}

void Timeline::seek(TimePoint cursor) {
  setFollow(false);
  m_clock.anchor(cursor);
  moveCursor(cursor);
}

void Timeline::moveCursor(TimePoint cursor) {
  m_placedWithoutIndex = false;
  m_cursor = cursor;
  for (TimelineTrack *track : std::as_const(m_tracks)) track->show(cursor);
  Q_EMIT cursorChanged();
}

// ---- playing
// ----------------------------------------------------------------------------------------------------------

void Timeline::setPlaying(bool playing) {
  if (playing == m_playing || (playing && m_tracks.isEmpty())) return;
  m_playing = playing;
  m_following = false;
  if (playing) m_skippedFrames = 0;
  for (TimelineTrack *track : std::as_const(m_tracks)) track->setPlaying(playing);
  if (playing) {
    if (isAtEnd()) moveCursor(playBegin());
    m_clock.anchor(m_cursor);
    m_timer.start();
  } else {
    m_timer.stop();
  }
  Q_EMIT playingChanged();
}

void Timeline::setSpeed(double speed) {
  if (std::isnan(speed)) return;
  const double taken = std::clamp(speed, minSpeed, maxSpeed);
  if (taken == m_clock.speed()) return;
  m_clock.setSpeed(taken);
  Q_EMIT speedChanged();
}

void Timeline::setLoop(bool loop) {
  if (std::exchange(m_loop, loop) != loop) Q_EMIT loopChanged();
}

void Timeline::setFollow(bool follow) {
  if (m_follow == follow) return;
  m_follow = follow;
  m_following = false;
  if (!follow) m_clock.anchor(m_cursor);
  Q_EMIT followChanged();
}

void Timeline::advance() {
  if (!m_playing) return;
  if (m_follow && hasLiveTrack()) return advanceFollowing();
  bool hasTimeTrack = false;
  for (const TimelineTrack *track : std::as_const(m_tracks)) {
    if (track->frames() == nullptr) {
      hasTimeTrack = true;
    } else if (track->isBusy()) {
      return;
    }
  }
  skipGap();
  const TimePoint target = m_clock.target();
  const std::optional<TimePoint> next = nextFrameCursor();
  if (next && target >= *next) {
    moveCursor(frameDue(*next, target));
  } else if (hasTimeTrack && std::min(target, m_end) > m_cursor) {
    moveCursor(std::min(target, m_end));
  }
  if (!next && target >= playEnd()) reachEnd();
}

/// The next frame, or the newest of the leading track that is due when playing has fallen too far behind.
TimePoint Timeline::frameDue(TimePoint next, TimePoint target) {
  if (m_clock.lagSeconds(next) <= slipSeconds) return next;
  const ClipFrames *const frames = m_leading->frames();
  const int newest = frames != nullptr ? frames->indexAt(target) : -1;
  const TimePoint cursor = newest >= 0 ? frames->cursorOf(newest) : next;
  if (cursor <= next) {
    m_clock.anchor(next);  // another track's frame
    return next;
  }
  m_skippedFrames += newest - frames->indexAt(m_cursor) - 1;
  return cursor;
}

void Timeline::advanceFollowing() {
  TimePoint newest = m_cursor;
  for (const TimelineTrack *track : std::as_const(m_tracks)) {
    if (!track->isLive() || !track->isKnown()) continue;
    if (track->isBusy()) return;
    newest = std::max(newest, track->end());
  }
  if (newest != m_cursor) moveCursor(newestFollowed(newest));
}

/// The newest data; the frame behind the shown one while only a few came at once.
TimePoint Timeline::newestFollowed(TimePoint newest) {
  const bool goesOn = std::exchange(m_following, true);
  const ClipFrames *const frames = m_leading != nullptr && m_leading->isLive() ? m_leading->frames() : nullptr;
  const int shown = frames != nullptr ? frames->indexAt(m_cursor) : -1;
  if (!goesOn || shown < 0) return newest;
  const int left = frames->indexAt(newest) - shown - 1;
  if (left < 1) return newest;
  const TimePoint next = frames->cursorOf(shown + 1);
  if (secondsFromTicks(newest - next) <= slipSeconds) return next;
  m_skippedFrames += left;
  return newest;
}

void Timeline::skipGap() {
  if (isInsideAnyTrack(m_clock.target())) return;
  std::optional<TimePoint> nearest;
  for (const TimelineTrack *track : std::as_const(m_tracks)) {
    if (!track->isKnown() || track->begin() <= m_clock.target()) continue;
    if (!nearest || firstCursor(*track) < *nearest) nearest = firstCursor(*track);
  }
  if (nearest) m_clock.anchor(*nearest);
}

std::optional<TimePoint> Timeline::nextFrameCursor() const {
  std::optional<TimePoint> nearest;
  for (const TimelineTrack *track : m_tracks) {
    const ClipFrames *const frames = track->frames();
    if (frames == nullptr) continue;
    const int next = frames->indexAt(m_cursor) + 1;
    if (next >= frames->count()) continue;
    const TimePoint cursor = frames->cursorOf(next);
    if (!nearest || cursor < *nearest) nearest = cursor;
  }
  return nearest;
}

TimePoint Timeline::playBegin() const {
  TimePoint begin = TimePoint::max();
  for (const TimelineTrack *track : m_tracks) {
    if (track->isKnown()) begin = std::min(begin, firstCursor(*track));
  }
  return begin == TimePoint::max() ? m_cursor : begin;
}

TimePoint Timeline::playEnd() const {
  TimePoint end = m_end;
  for (const TimelineTrack *track : m_tracks) {
    // The last frame stays as long as the one before it did, also where the clip ends with its start.
    const ClipFrames *const frames = track->frames();
    if (frames == nullptr || frames->count() < 2) continue;
    const TimePoint last = frames->cursorOf(frames->count() - 1);
    end = std::max(end, last + (last - frames->cursorOf(frames->count() - 2)));
  }
  return end;
}

bool Timeline::isAtEnd() const {
  return !hasLiveTrack() && std::all_of(m_tracks.begin(), m_tracks.end(), [this](const TimelineTrack *track) {
    return !track->isKnown() || m_cursor >= lastCursor(*track);
  });
}

void Timeline::reachEnd() {
  if (hasLiveTrack() || m_clock.now() - m_lastGrowth < growthPause) {
    m_clock.anchor(m_cursor);
  } else if (m_loop) {
    const TimePoint begin = playBegin();
    m_clock.anchor(begin);
    moveCursor(begin);
  } else {
    setPlaying(false);
  }
}

}  // namespace tarvo::skarnvisor
