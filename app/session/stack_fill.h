#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

namespace tarvo::skarnvisor::app {

class CaptureSession;

/// Fills the frame stack of a capture while nothing plays: after a stack was granted, and after the cursor went
/// elsewhere than to the next frame. The plug-in takes frames into a stack from the begin of playing on, so the
/// pipeline is told for one run that it plays, and then run until the groups up to the cursor are in; the timeline
/// stands still meanwhile. Playing ends it, another move of the cursor begins it anew; a request for another depth
/// breaks it off, and if that comes to nothing it begins anew too. Lives on the GUI thread.
class StackFill : public QObject {
  Q_OBJECT

 public:
  /// `isHeld` tells whether its turns have to wait: for others who work on the stack, or since each frame that runs
  /// would be saved.
  StackFill(CaptureSession &session, std::function<bool()> isHeld);

 private Q_SLOTS:
  void noteRequest();
  void noteAnswer(bool success);

 private:
  void takeUpSource();
  void noteCursor();
  void notePlaying();
  bool isWanted() const;
  void fillSoon();
  bool isUnderWay() const { return m_delay.isActive() || m_turn.isActive(); }
  void stop();
  void breakOff();
  void turn();
  bool begin(int frame);

  CaptureSession &m_session;
  std::function<bool()> m_isHeld;
  QTimer m_delay;  ///< until the cursor rests
  QTimer m_turn;
  int m_shown = -1;  ///< frame up to which the stack goes on, -1: none
  int m_next = 0;    ///< frame at which the pipeline runs next, group by group up to the cursor's
  int m_groupFrames = 1;
  int m_runsAtEnd = 0;  ///< to catch up
  bool m_begins = false;
  bool m_owed = false;   ///< broken off by a request for another depth
  bool m_empty = false;  ///< nothing has entered the stack since it was granted
};

}  // namespace tarvo::skarnvisor::app
