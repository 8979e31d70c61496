#pragma once

#include <QQmlApplicationEngine>
#include <QQuickTextDocument>
#include <QQuickWindow>
#include <memory>

#include "app/window/file_calls.h"
#include "app/window/log_view.h"
#include "app/window/tool_list.h"
#include "app/window/viewer.h"
#include "app/window/window_place.h"

namespace tarvo::skarnvisor::app {

/// The window with what it binds to. Needs a QApplication; GUI thread.
class MainWindow : public QObject {
  Q_OBJECT
  Q_PROPERTY(QString version READ version CONSTANT)

 public:
  MainWindow();
  ~MainWindow() override;

  /// Null if the window could not be made.
  QQuickWindow *window() const { return m_window; }
  Viewer &viewer() { return m_viewer; }
  LogModel &log() { return m_log; }

  /// The application's palette follows the window's theme.
  Q_INVOKABLE void setDark(bool dark);
  /// The window with the newest picture of the cloud.
  QImage grab();
  static QString version();
  /// See manual_page.h.
  Q_INVOKABLE static QString manualPage(const QString &name);
  Q_INVOKABLE static void fitPage(QQuickTextDocument *page, int width, const QColor &links);
  /// Saves the window as it looks, as PNG where the name tells no other format; false if the file cannot be written.
  Q_INVOKABLE bool saveShot(const QUrl &target);
  Q_INVOKABLE void copyText(const QString &text);

 private:
  Viewer m_viewer;
  LogModel m_log;
  LogView m_logView{m_log};
  FileCalls m_files{m_viewer.bufferCalls()};
  ToolList m_tools{m_viewer.bufferCalls()};
  QQmlApplicationEngine m_engine;
  QQuickWindow *m_window = nullptr;
  std::unique_ptr<WindowPlace> m_place;
};

}  // namespace tarvo::skarnvisor::app
