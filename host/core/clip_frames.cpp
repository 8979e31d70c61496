#include "host/core/clip_frames.h"

#include <algorithm>

namespace tarvo::skarnvisor {
namespace {

constexpr Ticks cursorMargin{100};  // 10 µs: above what the conversions cut, far below any frame's span

}  // namespace

ClipFrames::ClipFrames(QObject *clip) : m_clip(clip) {
  if (clip == nullptr) return;
  const QMetaObject *const meta = clip->metaObject();
  m_count = meta->property(meta->indexOfProperty("frameCount"));
  m_startSeconds = meta->method(meta->indexOfMethod("getFrameStartSeconds(int)"));
}

int ClipFrames::count() const {
  if (!m_clip || !m_count.isValid() || !m_startSeconds.isValid()) return 0;
  return std::max(0, m_count.read(m_clip).toInt());
}

TimePoint ClipFrames::startOf(int index) const {
  double seconds = 0.0;
  if (m_clip) m_startSeconds.invoke(m_clip, Qt::DirectConnection, Q_RETURN_ARG(double, seconds), Q_ARG(int, index));
  return timeFromSeconds(seconds);
}

TimePoint ClipFrames::cursorOf(int index) const { return startOf(index) + cursorMargin; }

int ClipFrames::indexAt(TimePoint cursor) const {
  int low = 0;
  int high = count();
  while (low < high) {
    const int middle = low + (high - low) / 2;
    if (startOf(middle) <= cursor) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low - 1;
}

}  // namespace tarvo::skarnvisor
