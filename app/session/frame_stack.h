#pragma once

#include <QObject>
#include <QString>

namespace tarvo::skarnvisor::app {

class CaptureSession;

/// Has the plug-in show many frames at once. The functions wait, and serve the thread's events meanwhile; each returns
/// an empty string or one sentence for the user. Lives on the GUI thread.
class FrameStack : public QObject {
  Q_OBJECT

 public:
  explicit FrameStack(CaptureSession &session) : m_session(session) {}

  /// Asks for `frames` frames, 1 to 3000, and waits for what comes of it.
  QString request(int frames);
  /// What the plug-in said of the last request.
  const QString &message() const { return m_message; }
  /// Frames that the stack really has; it may be fewer than were asked for, or more.
  int depth() const;
  /// Frames that enter the stack together.
  int groupFrames() const;

  /// Plays from `frame` on until the first group of the stack is on the canvas, and pauses: a stack begins with
  /// playing, later groups enter with every step.
  QString begin(int frame);
  /// Shows the last whole groups before `frame`, as many as the stack holds and the capture has.
  QString showBefore(int frame);

 private Q_SLOTS:
  void takeAnswer(bool success, int actualFrames, const QString &message);

 private:
  bool hasGroup() const;

  CaptureSession &m_session;
  bool m_answered = false;
  bool m_granted = false;
  QString m_message;
};

}  // namespace tarvo::skarnvisor::app
