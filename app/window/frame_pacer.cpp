#include "app/window/frame_pacer.h"

#include <QEvent>
#include <QRunnable>
#include <functional>
#include <utility>

namespace tarvo::skarnvisor::app {
namespace {

/// Only for a drawing whose end is never told.
constexpr int longestWaitMs = 1000;

/// Calls when it is destroyed, by the thread that draws once it is through with its drawing, or at once by who drops
/// it.
class AtEnd : public QRunnable {
 public:
  explicit AtEnd(std::function<void()> call) : m_call(std::move(call)) {}
  ~AtEnd() override { m_call(); }
  void run() override {}

 private:
  std::function<void()> m_call;
};

}  // namespace

FramePacer::FramePacer(QQuickWindow &window) : QObject(&window), m_window(window) {
  m_putOff.setSingleShot(true);
  m_putOff.setTimerType(Qt::PreciseTimer);
  connect(&m_putOff, &QTimer::timeout, this, &FramePacer::goOn);
  // Both signals come from the thread that draws.
  connect(
      &window, &QQuickWindow::beforeRendering, this, [this] { m_drawing = true; }, Qt::DirectConnection);
  connect(
      &window, &QQuickWindow::afterRendering, this,
      [this] {
        // A grab ends without a swap of the buffers, which may take longer than all the rest; the job comes after both.
        m_window.scheduleRenderJob(new AtEnd([this] {
                                     m_drawing = false;
                                     QMetaObject::invokeMethod(
                                         this,
                                         [this] {
                                           if (m_putOff.isActive()) goOn();
                                         },
                                         Qt::QueuedConnection);
                                   }),
                                   QQuickWindow::NoStage);
      },
      Qt::DirectConnection);
  window.installEventFilter(this);
}

void FramePacer::goOn() {
  m_putOff.stop();
  m_goesOn = true;
  m_window.requestUpdate();
}

bool FramePacer::eventFilter(QObject *, QEvent *event) {
  if (event->type() != QEvent::UpdateRequest) return false;
  if (std::exchange(m_goesOn, false) || !m_drawing) {
    m_putOff.stop();
    return false;
  }
  if (!m_putOff.isActive()) m_putOff.start(longestWaitMs);
  return true;
}

}  // namespace tarvo::skarnvisor::app
