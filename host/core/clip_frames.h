#pragma once

#include <QMetaMethod>
#include <QMetaProperty>
#include <QObject>
#include <QPointer>

#include "contracts/host/time.h"

namespace tarvo::skarnvisor {

/// The frame index of a clip, read through its meta-object: the int property `frameCount` and the invokable
/// `double getFrameStartSeconds(int)`. A clip without them has 0 frames.
class ClipFrames {
 public:
  ClipFrames() = default;
  /// Observes `clip`; a clip that died has 0 frames.
  explicit ClipFrames(QObject *clip);

  [[nodiscard]] int count() const;
  /// The moment to put the cursor at for frame `index` (0 .. count - 1): its start and a little more, since both the
  /// seconds and the pipeline's own conversion cut, and a cursor just before the start shows the frame before.
  [[nodiscard]] TimePoint cursorOf(int index) const;
  /// The last frame that starts at or before `cursor`, -1 before the first.
  [[nodiscard]] int indexAt(TimePoint cursor) const;

 private:
  [[nodiscard]] TimePoint startOf(int index) const;

  QPointer<QObject> m_clip;
  QMetaProperty m_count;
  QMetaMethod m_startSeconds;
};

}  // namespace tarvo::skarnvisor
