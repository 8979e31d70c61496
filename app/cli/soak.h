#pragma once

#include <QElapsedTimer>
#include <QTimer>

namespace tarvo::skarnvisor::app {

class CaptureSession;

/// Changes a setting ten times a second and prints frames, loss and memory every ten seconds, for as long as it lives.
class Soak {
 public:
  /// `frames` is read when a line is due; both outlive this.
  Soak(CaptureSession &session, const int &frames);

 private:
  void changeSetting();
  void printLine() const;

  CaptureSession &m_session;
  const int &m_frames;
  unsigned m_step = 0;
  QTimer m_change;
  QTimer m_line;
  QElapsedTimer m_clock;
};

}  // namespace tarvo::skarnvisor::app
