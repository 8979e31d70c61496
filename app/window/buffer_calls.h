#pragma once

#include <QByteArray>
#include <QObject>
#include <QVariant>
#include <atomic>
#include <functional>
#include <memory>

#include "app/window/background_calls.h"

namespace tarvo::skarnvisor::app {

/// Sets and does in the background, in the order asked for, what the objects of the open source would keep the window
/// waiting with: what goes over all points, or waits for the decoder. What they announce on the way comes to the GUI
/// thread behind it. GUI thread.
class BufferCalls : public QObject {
  Q_OBJECT
  /// Something asked for is still to be done; false once what it announced has arrived.
  Q_PROPERTY(bool running READ isRunning NOTIFY runningChanged)

 public:
  BufferCalls(BackgroundCalls &background, QObject *parent);

  bool isRunning() const { return m_outstanding > 0; }

  /// Writes a property. A value that still waits gives way to a newer one, unless something else was asked for in
  /// between.
  Q_INVOKABLE void set(QObject *object, const QString &property, const QVariant &value);
  /// Calls the invokable of that name that takes so many arguments.
  Q_INVOKABLE void call(QObject *object, const QString &method, const QVariantList &arguments = {});
  void run(std::function<void()> call);
  /// There are objects to call from now on.
  void takeUp() { m_taken = true; }
  /// Gives up what has not begun, and takes nothing more: the objects go, but QML may not know it yet.
  void drop();

 Q_SIGNALS:
  void runningChanged();

 private:
  class Write;

  void enqueue(std::function<void()> call);

  BackgroundCalls &m_background;
  std::shared_ptr<Write> m_write;  ///< the one asked for last: a newer value may still join it
  int m_outstanding = 0;
  bool m_taken = false;
  std::atomic<int> m_drops{0};
};

}  // namespace tarvo::skarnvisor::app
