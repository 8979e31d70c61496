#pragma once

#include <QList>
#include <mutex>

#include "contracts/host/clip_buffer.h"

namespace tarvo::skarnvisor {

/// A row of the timeline: the clips of one pipeline. Its interval spans those of its clips.
class TrackBuffer : public TimeIntervalBuffer {
  Q_OBJECT
  Q_PROPERTY(QString trackBody READ trackBody NOTIFY trackBodyChanged)

 public:
  explicit TrackBuffer(QObject *parent = nullptr);
  ~TrackBuffer() override;

  /// Adds a clip, which stays the caller's; a clip that dies leaves the track. The track follows the clip's
  /// `changed()`. Callable from any thread, as is everything here that is not a QML file name.
  virtual void addClip(ClipBuffer *clip);
  virtual void removeClip(ClipBuffer *clip);
  [[nodiscard]] virtual QList<ClipBuffer *> clips() const;
  /// Takes the smallest begin and the largest end of the clips whose extent is known, and emits `changed()` if either
  /// moved.
  virtual void updateTimeInterval();
  /// Answers, for a track under image-signal processing, the frame total and the seconds of the displayed frame through
  /// those pointers that are not null. -1, as in the base: nothing was written.
  virtual int parallelIspDisplayedSeq(int *frameTotal, double *beginSeconds, double *endSeconds);

  /// QML file that the host shows as the track's body. Callable from any thread.
  void setTrackBody(const QString &qmlFile);
  [[nodiscard]] QString trackBody() const;

 public Q_SLOTS:
  /// The user selected or left this track.
  void setControlSelected(bool selected);

 Q_SIGNALS:
  void controlSelectedNotify(bool selected);
  void trackBodyChanged();

 private:
  mutable std::mutex m_mutex;  ///< guards the two fields below
  QList<ClipBuffer *> m_clips;
  QString m_trackBody;
};

}  // namespace tarvo::skarnvisor
