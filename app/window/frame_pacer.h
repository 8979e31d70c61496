#pragma once

#include <QQuickWindow>
#include <QTimer>
#include <atomic>

namespace tarvo::skarnvisor::app {

/// Keeps the GUI thread from waiting for the scene graph's thread. That thread takes up the next state of the window
/// when it has drawn the last one, and whoever asks earlier is held until then; this object puts off the asking until
/// the drawing has ended. It is put off once: an animation of that thread's own draws without a pause. Where the window
/// is drawn on the GUI thread it has nothing to do. GUI thread; lives as long as the window.
class FramePacer : public QObject {
 public:
  explicit FramePacer(QQuickWindow &window);

 protected:
  bool eventFilter(QObject *window, QEvent *event) override;

 private:
  /// Asks for the update that was put off.
  void goOn();

  QQuickWindow &m_window;
  std::atomic<bool> m_drawing{false};
  QTimer m_putOff;        ///< runs while an update is put off
  bool m_goesOn = false;  ///< the next update is not put off
};

}  // namespace tarvo::skarnvisor::app
