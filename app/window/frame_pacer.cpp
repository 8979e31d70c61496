#include "app/window/frame_pacer.h"

#include <QEvent>
#include <utility>

namespace tarvo::skarnvisor::app {
namespace {

constexpr int longestWaitMs = 50;

}  // namespace

FramePacer::FramePacer(QQuickWindow &window) : QObject(&window), m_window(window) {
  m_putOff.setSingleShot(true);
  m_putOff.setTimerType(Qt::PreciseTimer);
  connect(&m_putOff, &QTimer::timeout, this, [this] {
    m_waited = true;
    m_window.requestUpdate();
  });
  // Both signals come from the thread that draws.
  connect(
      &window, &QQuickWindow::beforeRendering, this, [this] { m_drawing = true; }, Qt::DirectConnection);
  connect(
      &window, &QQuickWindow::frameSwapped, this, [this] { m_drawing = false; }, Qt::DirectConnection);
  connect(
      &window, &QQuickWindow::frameSwapped, this,
      [this] {
        // The clock goes on until an update passes: the next drawing may have begun already.
        if (m_putOff.isActive()) m_window.requestUpdate();
      },
      Qt::QueuedConnection);
  window.installEventFilter(this);
}

bool FramePacer::eventFilter(QObject *, QEvent *event) {
  if (event->type() != QEvent::UpdateRequest) return false;
  const bool waited = std::exchange(m_waited, false);
  if (!waited && m_drawing) {
    if (!m_putOff.isActive()) m_putOff.start(longestWaitMs);
    return true;
  }
  m_putOff.stop();
  return false;
}

}  // namespace tarvo::skarnvisor::app
