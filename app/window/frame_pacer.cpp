#include "app/window/frame_pacer.h"

#include <QEvent>
#include <utility>

namespace tarvo::skarnvisor::app {

FramePacer::FramePacer(QQuickWindow &window) : QObject(&window) {
  // Both signals come from the thread that draws; each drawing that begins ends with a swap.
  connect(
      &window, &QQuickWindow::beforeRendering, this, [this] { m_drawing = true; }, Qt::DirectConnection);
  connect(
      &window, &QQuickWindow::frameSwapped, this, [this] { m_drawing = false; }, Qt::DirectConnection);
  connect(
      &window, &QQuickWindow::frameSwapped, this,
      [this, &window] {
        if (std::exchange(m_putOff, false)) window.requestUpdate();
      },
      Qt::QueuedConnection);
  window.installEventFilter(this);
}

bool FramePacer::eventFilter(QObject *, QEvent *event) {
  if (event->type() != QEvent::UpdateRequest || !m_drawing) return false;
  m_putOff = true;
  return true;
}

}  // namespace tarvo::skarnvisor::app
