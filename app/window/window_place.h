#pragma once

#include <QObject>
#include <QQuickWindow>
#include <QTimer>
#include <QVector>

#include "app/window/preferences.h"

namespace tarvo::skarnvisor::app {

/// Shows the window where it was when the program ended, as far as the screens allow, and remembers where it goes.
/// GUI thread; the window outlives it.
class WindowPlace : public QObject {
 public:
  WindowPlace(QQuickWindow &window, Preferences &preferences);
  ~WindowPlace() override;

  /// `wanted` made to fit with its frame on the screen that holds most of it, the first one if none does, and moved
  /// onto it.
  static QRect onScreen(const QRect &wanted, const QVector<QRect> &screens);

 private:
  void restore();
  void note();
  void save();

  QQuickWindow &m_window;
  Preferences &m_preferences;
  QRect m_place;
  bool m_maximized = false;
  QTimer m_saveTimer;
};

}  // namespace tarvo::skarnvisor::app
