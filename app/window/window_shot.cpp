#include "app/window/window_shot.h"

#include <QCoreApplication>
#include <QTimer>
#include <cstdio>

#include "app/window/main_window.h"

namespace tarvo::skarnvisor::app {
namespace {

constexpr int limitMs = 60000;
/// Drawn frames after the picture arrived: texts and labels follow it by one or two.
constexpr int settlingSwaps = 4;

}  // namespace

WindowShot::WindowShot(MainWindow &main, QString file)
    : m_main(main), m_viewer(main.viewer()), m_window(*main.window()), m_file(std::move(file)) {
  // The render thread announces the swaps.
  connect(&m_window, &QQuickWindow::frameSwapped, this, &WindowShot::countSwap, Qt::QueuedConnection);
  connect(&m_viewer, &Viewer::errorChanged, this, [this] {
    if (!m_viewer.error().isEmpty()) finish(m_viewer.error());
  });
  QTimer::singleShot(limitMs, this, [this] { finish(QStringLiteral("no frame was shown in time")); });
}

void WindowShot::countSwap() {
  if (m_finished || m_viewer.pointsShown() == 0) return;
  if (++m_swaps < settlingSwaps) {
    m_window.update();
    return;
  }
  const bool saved = m_main.grab().save(m_file);
  finish(saved ? QString() : QStringLiteral("%1 could not be written").arg(m_file));
}

void WindowShot::finish(const QString &fault) {
  if (m_finished) return;
  m_finished = true;
  if (!fault.isEmpty()) std::fprintf(stderr, "skarnvisor: %s\n", fault.toLocal8Bit().constData());
  QCoreApplication::exit(fault.isEmpty() ? 0 : 1);
}

}  // namespace tarvo::skarnvisor::app
