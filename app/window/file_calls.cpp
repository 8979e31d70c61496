#include "app/window/file_calls.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QJSEngine>
#include <QLineEdit>
#include <QStandardPaths>
#include <QStorageInfo>

#include "contracts/host/log.h"

namespace tarvo::skarnvisor::app {
namespace {

constexpr qint64 hardlyAnyRoom = 1 << 20;

/// The first error logged behind `sequence`: the cause comes before those who pass it on. For a call that failed, a
/// warning will do where there is no error.
QString loggedSince(std::uint64_t sequence, bool failed) {
  Logger &log = Logger::GetInstance();
  log.flush();
  QString warning;
  for (const LogEntry &entry : log.entriesAfter(sequence)) {
    const QString message = QString::fromLocal8Bit(entry.message.c_str());
    if (entry.level == LogLevel::Error || entry.level == LogLevel::Internal) return message;
    if (entry.level == LogLevel::Warning && warning.isEmpty()) warning = message;
  }
  return failed ? warning : QString();
}

bool invoke(QObject *object, const QString &method, const QUrl &file) {
  const QByteArray name = method.toLatin1();
  const QMetaObject &type = *object->metaObject();
  bool done = false;
  const auto result = Q_RETURN_ARG(bool, done);
  if (file.isEmpty())
    QMetaObject::invokeMethod(object, name.constData(), Qt::DirectConnection, result);
  else if (type.indexOfMethod(QByteArray(name + "(QString)").constData()) >= 0)
    QMetaObject::invokeMethod(object, name.constData(), Qt::DirectConnection, result,
                              Q_ARG(QString, file.toLocalFile()));
  else
    QMetaObject::invokeMethod(object, name.constData(), Qt::DirectConnection, result, Q_ARG(QUrl, file));
  return done;
}

}  // namespace

FileCalls::FileCalls(BufferCalls &calls, QObject *parent) : QObject(parent), m_calls(calls) {
  // What is left then was given up with its source.
  connect(&calls, &BufferCalls::runningChanged, this, [this] {
    if (!m_calls.isRunning()) m_then.clear();
  });
}

void FileCalls::call(QObject *object, const QString &method, const QUrl &file, const QJSValue &then) {
  if (object == nullptr) return;
  m_then.insert(++m_last, then);
  m_calls.run([this, call = m_last, object, method, file] {
    Logger &log = Logger::GetInstance();
    log.flush();
    const std::uint64_t before = log.lastSequence();
    const bool done = invoke(object, method, file);
    const QVariantMap result{{QStringLiteral("done"), done}, {QStringLiteral("reason"), loggedSince(before, !done)}};
    QMetaObject::invokeMethod(
        this, [this, call, result] { answer(call, result); }, Qt::QueuedConnection);
  });
}

void FileCalls::answer(int call, const QVariantMap &result) {
  const QJSValue answered = m_then.take(call).call({qjsEngine(this)->toScriptValue(result)});
  if (answered.isError()) qWarning("%s", qPrintable(answered.toString()));
}

void FileCalls::suggestName(const QString &name) {
  for (const QWidget *widget : QApplication::topLevelWidgets()) {
    if (!widget->isVisible() || qobject_cast<const QFileDialog *>(widget) == nullptr) continue;
    if (auto *const edit = widget->findChild<QLineEdit *>()) {
      edit->setText(name);
      edit->selectAll();
    }
  }
}

QString FileCalls::writeFault(const QUrl &file) {
  const QFileInfo target(file.toLocalFile());
  if (target.isDir()) return QStringLiteral("%1 is a folder: enter the name of a file").arg(target.filePath());
  return folderFault(QUrl::fromLocalFile(target.absolutePath()));
}

QString FileCalls::folderFault(const QUrl &folder) {
  const QFileInfo target(folder.toLocalFile());
  if (!target.isDir()) return QStringLiteral("the folder %1 is not there: choose another one").arg(target.filePath());
  if (!target.isWritable()) return QStringLiteral("choose a folder that you may write to");
  if (const qint64 room = QStorageInfo(target.filePath()).bytesAvailable(); room >= 0 && room < hardlyAnyRoom)
    return QStringLiteral("there is no room in %1: make room, or choose another folder").arg(target.filePath());
  return {};
}

QString FileCalls::calibrationFolder() {
  return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) +
         QStringLiteral("/SkarnvisorDataFiles/correction");
}

bool FileCalls::showCalibrationFolder() {
  QDir().mkpath(calibrationFolder());
  return QDesktopServices::openUrl(QUrl::fromLocalFile(calibrationFolder()));
}

}  // namespace tarvo::skarnvisor::app
