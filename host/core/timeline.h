#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>
#include <optional>

#include "host/core/play_clock.h"
#include "host/core/timeline_track.h"

namespace tarvo::skarnvisor {

/// Owns the cursor: playing, stepping, following. Each move of the cursor goes to every track, which then runs its
/// chain. Lives on the GUI thread.
///
/// Tracks with a frame index are played frame by frame: the cursor goes from one frame's start to the next, when its
/// time has come and every such track has shown what it was last asked for. So no frame is shown twice and none is left
/// out; a speed that the machine can't hold is not held. Tracks without one follow the clock, and skip what they have
/// no time for. Steps and the frame number are those of the leading track, the one added or chosen last.
class Timeline : public QObject {
  Q_OBJECT
  Q_PROPERTY(double cursorSeconds READ cursorSeconds WRITE seekSeconds NOTIFY cursorChanged)
  Q_PROPERTY(QString cursorText READ cursorText NOTIFY cursorChanged)
  Q_PROPERTY(double beginSeconds READ beginSeconds NOTIFY extentChanged)
  Q_PROPERTY(double endSeconds READ endSeconds NOTIFY extentChanged)
  Q_PROPERTY(int frame READ frame WRITE seekFrame NOTIFY cursorChanged)
  Q_PROPERTY(int frameCount READ frameCount NOTIFY extentChanged)
  Q_PROPERTY(bool playing READ isPlaying WRITE setPlaying NOTIFY playingChanged)
  Q_PROPERTY(double speed READ speed WRITE setSpeed NOTIFY speedChanged)
  Q_PROPERTY(bool loop READ loop WRITE setLoop NOTIFY loopChanged)
  Q_PROPERTY(bool follow READ follow WRITE setFollow NOTIFY followChanged)
  Q_PROPERTY(int skippedFrames READ skippedFrames NOTIFY cursorChanged)

 public:
  static constexpr double minSpeed = 0.1;
  static constexpr double maxSpeed = 10.0;

  explicit Timeline(QObject *parent = nullptr, PlayClock::Source clock = PlayClock::steadySource());
  ~Timeline() override;

  /// The track is observed until `removeTrack` and becomes the leading one. If the cursor lies outside it, and nothing
  /// plays, the cursor goes to its begin; a live track makes the timeline follow and play.
  void addTrack(TimelineTrack *track);
  void removeTrack(TimelineTrack *track);
  void setLeadingTrack(TimelineTrack *track);
  /// A track's extent or frame count changed.
  void updateExtent();

  [[nodiscard]] TimePoint cursor() const { return m_cursor; }
  [[nodiscard]] double cursorSeconds() const { return secondsOf(m_cursor); }
  [[nodiscard]] QString cursorText() const { return timeText(m_cursor); }
  /// Over all tracks; both 0 while none is known.
  [[nodiscard]] double beginSeconds() const { return secondsOf(m_begin); }
  [[nodiscard]] double endSeconds() const { return secondsOf(m_end); }
  /// Of the leading track: -1 and 0 without a frame index.
  [[nodiscard]] int frame() const;
  [[nodiscard]] int frameCount() const;
  [[nodiscard]] bool isPlaying() const { return m_playing; }
  [[nodiscard]] double speed() const { return m_clock.speed(); }
  [[nodiscard]] bool loop() const { return m_loop; }
  [[nodiscard]] bool follow() const { return m_follow; }
  /// Frames of the leading track that were left out since playing began, because the machine could not hold the speed.
  [[nodiscard]] int skippedFrames() const { return m_skippedFrames; }

  /// At the end, playing starts over from the begin.
  void setPlaying(bool playing);
  /// Clamped to 0.1 .. 10.
  void setSpeed(double speed);
  void setLoop(bool loop);
  /// Keeps the cursor at the newest data of the live tracks while playing. Going elsewhere by hand ends it.
  void setFollow(bool follow);

 public Q_SLOTS:
  void play() { setPlaying(true); }
  void pause() { setPlaying(false); }
  void togglePlaying() { setPlaying(!m_playing); }
  /// Pauses, and goes by `count` frames of the leading track; by tenths of a second without a frame index.
  void stepFrames(int count);
  void first();
  void last();
  void seekSeconds(double seconds);
  void seekFrame(int frame);

  /// One turn of playing. Called by the timer; a test with a clock of its own calls it by hand.
  void advance();

 Q_SIGNALS:
  void cursorChanged();
  void extentChanged();
  void playingChanged();
  void speedChanged();
  void loopChanged();
  void followChanged();

 private:
  void moveCursor(TimePoint cursor);
  void seek(TimePoint cursor);
  void advanceFollowing();
  void reachEnd();
  void placeCursor();
  void skipGap();
  [[nodiscard]] bool isInsideAnyTrack(TimePoint time) const;
  [[nodiscard]] std::optional<TimePoint> nextFrameCursor() const;
  TimePoint frameDue(TimePoint next, TimePoint target);
  TimePoint newestFollowed(TimePoint newest);
  [[nodiscard]] bool hasLiveTrack() const;
  [[nodiscard]] bool isAtEnd() const;
  [[nodiscard]] TimePoint firstCursor(const TimelineTrack &track) const;
  [[nodiscard]] TimePoint lastCursor(const TimelineTrack &track) const;
  [[nodiscard]] TimePoint playBegin() const;
  [[nodiscard]] TimePoint playEnd() const;

  QList<TimelineTrack *> m_tracks;
  TimelineTrack *m_leading = nullptr;
  TimePoint m_cursor;
  TimePoint m_begin;
  TimePoint m_end;
  int m_frameCount = 0;
  TimelineTrack *m_unplaced = nullptr;  ///< added, its extent not known yet
  bool m_placedWithoutIndex = false;    ///< the cursor stands where we put it before the leading track had an index
  bool m_playing = false;
  bool m_loop = false;
  bool m_follow = false;
  bool m_following = false;  ///< the cursor has been at the newest data since follow or playing began
  int m_skippedFrames = 0;
  PlayClock m_clock;
  PlayClock::Moment m_lastGrowth;
  QTimer m_timer;
};

}  // namespace tarvo::skarnvisor
