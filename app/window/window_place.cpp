#include "app/window/window_place.h"

#include <QGuiApplication>
#include <QScreen>

namespace tarvo::skarnvisor::app {
namespace {

constexpr int saveDelayMs = 500;
/// What a window manager may draw around a window; it is known only when the window stands.
constexpr QSize frameRoom(16, 40);

int shared(const QRect &a, const QRect &b) {
  const QRect both = a & b;
  return both.isEmpty() ? 0 : both.width() * both.height();
}

}  // namespace

WindowPlace::WindowPlace(QQuickWindow &window, Preferences &preferences)
    : m_window(window), m_preferences(preferences) {
  restore();
  m_saveTimer.setSingleShot(true);
  connect(&m_saveTimer, &QTimer::timeout, this, [this] { save(); });
  for (const auto change : {&QWindow::xChanged, &QWindow::yChanged, &QWindow::widthChanged, &QWindow::heightChanged})
    connect(&window, change, this, [this] { note(); });
  connect(&window, &QWindow::visibilityChanged, this, [this] { note(); });
}

WindowPlace::~WindowPlace() {
  if (m_saveTimer.isActive()) save();
}

QRect WindowPlace::onScreen(const QRect &wanted, const QVector<QRect> &screens) {
  if (screens.isEmpty()) return wanted;
  QRect screen = screens.first();
  for (const QRect &other : screens)
    if (shared(wanted, other) > shared(wanted, screen)) screen = other;
  QRect place(wanted.topLeft(), wanted.size().boundedTo(screen.size() - frameRoom));
  if (place.size() != wanted.size()) place.moveTopLeft(screen.topLeft());
  place.moveLeft(qBound(screen.left(), place.left(), screen.right() + 1 - place.width()));
  place.moveTop(qBound(screen.top(), place.top(), screen.bottom() + 1 - place.height()));
  return place;
}

void WindowPlace::restore() {
  QVector<QRect> screens;
  for (const QScreen *screen : QGuiApplication::screens()) screens << screen->availableGeometry();
  const QSize size(m_preferences.value(QStringLiteral("width"), m_window.width()).toInt(),
                   m_preferences.value(QStringLiteral("height"), m_window.height()).toInt());
  constexpr int unknown = -1000000;
  const QPoint corner(m_preferences.value(QStringLiteral("x"), unknown).toInt(),
                      m_preferences.value(QStringLiteral("y"), unknown).toInt());
  const bool placed = corner.x() != unknown && corner.y() != unknown;
  m_place = onScreen(QRect(placed ? corner : QPoint(), size), screens);
  m_window.resize(m_place.size());
  // Without a place of its own the window goes where the desktop puts it.
  if (placed) m_window.setFramePosition(m_place.topLeft());
  m_maximized = m_preferences.value(QStringLiteral("maximized"), false).toBool();
  if (m_maximized)
    m_window.showMaximized();
  else
    m_window.show();
}

void WindowPlace::note() {
  const QWindow::Visibility visibility = m_window.visibility();
  if (visibility == QWindow::Windowed) m_place = QRect(m_window.framePosition(), m_window.size());
  // Full screen passes; hidden and minimized say nothing of the place.
  if (visibility != QWindow::Windowed && visibility != QWindow::Maximized) return;
  m_maximized = visibility == QWindow::Maximized;
  m_saveTimer.start(saveDelayMs);
}

void WindowPlace::save() {
  m_preferences.setValue(QStringLiteral("x"), m_place.x());
  m_preferences.setValue(QStringLiteral("y"), m_place.y());
  m_preferences.setValue(QStringLiteral("width"), m_place.width());
  m_preferences.setValue(QStringLiteral("height"), m_place.height());
  m_preferences.setValue(QStringLiteral("maximized"), m_maximized);
}

}  // namespace tarvo::skarnvisor::app
