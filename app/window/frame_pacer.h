#pragma once

#include <QQuickWindow>
#include <atomic>

namespace tarvo::skarnvisor::app {

/// Keeps the GUI thread from waiting for the scene graph's thread. That thread takes up the next state of the window
/// when it has drawn the last one, and whoever asks earlier is held until then; this object puts off the asking
/// instead. Where the window is drawn on the GUI thread it has nothing to do. GUI thread; lives as long as the window.
class FramePacer : public QObject {
 public:
  explicit FramePacer(QQuickWindow &window);

 protected:
  bool eventFilter(QObject *window, QEvent *event) override;

 private:
  std::atomic<bool> m_drawing{false};
  bool m_putOff = false;  ///< an update waits for the end of the drawing
};

}  // namespace tarvo::skarnvisor::app
