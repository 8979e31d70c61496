#pragma once

#include <QObject>
#include <QQuickWindow>
#include <QString>

namespace tarvo::skarnvisor::app {

class MainWindow;
class Viewer;

/// Saves the window as it looks with the first frame on it, then ends the program: exit code 0, or 1 with a sentence on
/// standard error if there is no frame to show or the file cannot be written.
class WindowShot : public QObject {
 public:
  WindowShot(MainWindow &main, QString file);

 private:
  void countSwap();
  void finish(const QString &fault);

  MainWindow &m_main;
  Viewer &m_viewer;
  QQuickWindow &m_window;
  QString m_file;
  int m_swaps = 0;
  bool m_finished = false;
};

}  // namespace tarvo::skarnvisor::app
