#include "contracts/host/track_buffer.h"

#include <algorithm>

namespace tarvo::skarnvisor {

TrackBuffer::TrackBuffer(QObject *parent) : TimeIntervalBuffer(parent) {}
TrackBuffer::~TrackBuffer() = default;

void TrackBuffer::addClip(ClipBuffer *clip) {
  {
    const std::lock_guard lock(m_mutex);
    if (clip == nullptr || m_clips.contains(clip)) return;
    m_clips.append(clip);
  }
  connect(clip, &TimeIntervalBuffer::changed, this, &TrackBuffer::updateTimeInterval);
  // Direct: the clip must be gone from the list before its memory is.
  connect(
      clip, &QObject::destroyed, this,
      [this, clip] {
        const std::lock_guard lock(m_mutex);
        m_clips.removeAll(clip);
      },
      Qt::DirectConnection);
  updateTimeInterval();
}

void TrackBuffer::removeClip(ClipBuffer *clip) {
  {
    const std::lock_guard lock(m_mutex);
    if (m_clips.removeAll(clip) == 0) return;
  }
  disconnect(clip, nullptr, this, nullptr);
  updateTimeInterval();
}

QList<ClipBuffer *> TrackBuffer::clips() const {
  const std::lock_guard lock(m_mutex);
  return m_clips;
}

void TrackBuffer::updateTimeInterval() {
  TimePoint first = TimePoint::max();
  TimePoint last = TimePoint::min();
  for (const ClipBuffer *clip : clips()) {
    if (!clip->isKnown()) continue;
    first = std::min(first, clip->begin());
    last = std::max(last, clip->end());
  }
  if (first > last) first = last = TimePoint();
  if (first == begin() && last == end()) return;
  setBegin(first);
  setEnd(last);
  Q_EMIT changed();
}

int TrackBuffer::parallelIspDisplayedSeq(int *, double *, double *) { return -1; }

void TrackBuffer::setTrackBody(const QString &qmlFile) {
  {
    const std::lock_guard lock(m_mutex);
    if (m_trackBody == qmlFile) return;
    m_trackBody = qmlFile;
  }
  Q_EMIT trackBodyChanged();
}

QString TrackBuffer::trackBody() const {
  const std::lock_guard lock(m_mutex);
  return m_trackBody;
}

void TrackBuffer::setControlSelected(bool selected) { Q_EMIT controlSelectedNotify(selected); }

}  // namespace tarvo::skarnvisor
