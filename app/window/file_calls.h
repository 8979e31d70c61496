#pragma once

#include <QHash>
#include <QJSValue>
#include <QObject>
#include <QUrl>
#include <QVariantMap>

#include "app/window/buffer_calls.h"

namespace tarvo::skarnvisor::app {

/// Calls the invokables of a buffer that read or write a file, and tells why one failed in the words that the log got.
/// GUI thread.
class FileCalls : public QObject {
  Q_OBJECT

 public:
  explicit FileCalls(BufferCalls &calls, QObject *parent = nullptr);

  /// Calls `method`, which takes a path or a URL (or nothing, with an empty `file`) and returns whether it was done.
  /// `then` is called with a map of `done`, and `reason`: what the call logged as wrong, empty if nothing. A call may
  /// be done and yet have a reason, as an import whose copy for the next start could not be written.
  Q_INVOKABLE void call(QObject *object, const QString &method, const QUrl &file, const QJSValue &then);

  /// Path of a local file; empty for another address.
  /// Puts a name into the file dialog that is open; an empty one takes out what its last use left.
  Q_INVOKABLE static void suggestName(const QString &name);
  Q_INVOKABLE static QString path(const QUrl &file) { return file.toLocalFile(); }

  /// What stands against writing this file, or files into this folder, and what to do about it: a clause without a full
  /// stop; empty if nothing does.
  Q_INVOKABLE static QString writeFault(const QUrl &file);
  Q_INVOKABLE static QString folderFault(const QUrl &folder);

  /// Shows the folder of the default calibration files in the desktop's file manager; false if there is none.
  Q_INVOKABLE static bool showCalibrationFolder();
  Q_INVOKABLE static QString calibrationFolder();

 private:
  void answer(int call, const QVariantMap &result);

  BufferCalls &m_calls;
  QHash<int, QJSValue> m_then;  ///< by the number of the call; on this thread alone
  int m_last = 0;
};

}  // namespace tarvo::skarnvisor::app
