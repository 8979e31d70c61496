#include "app/window/jobs.h"

#include <QDir>
#include <QFileInfo>
#include <QtConcurrent>

namespace tarvo::skarnvisor::app {
namespace {

constexpr int lookIntervalMs = 100;

}  // namespace

Jobs::Jobs(QObject *parent) : QObject(parent) {
  connect(&m_watcher, &QFutureWatcher<Outcome>::finished, this, &Jobs::finish);
  connect(&m_look, &QTimer::timeout, this, [this] {
    if (m_workShare == m_share) return;
    m_share = m_workShare;
    Q_EMIT changed();
  });
}

Jobs::~Jobs() { stop(); }

void Jobs::stop() {
  if (!m_running) return;
  cancel();
  m_watcher.waitForFinished();
}

void Jobs::start(const QString &text, const Work &work) {
  if (m_running) {
    Q_EMIT failed(QStringLiteral("Wait until this has ended: %1").arg(m_text));
    return;
  }
  m_running = true;
  m_cancelled = false;
  m_text = text;
  m_workShare = m_share = -1;
  m_watcher.setFuture(QtConcurrent::run(work));
  m_look.start(lookIntervalMs);
  Q_EMIT changed();
}

void Jobs::cancel() {
  m_cancelled = true;
  Q_EMIT changed();
}

void Jobs::finish() {
  m_look.stop();
  m_running = false;
  if (m_watchCuts) m_watchCuts({});
  const Outcome outcome = m_watcher.result();
  Q_EMIT changed();
  const QString reason = !outcome.hasFault || !m_faultSource ? QString() : m_faultSource();
  if (outcome.done)
    Q_EMIT succeeded(outcome.message);
  else
    Q_EMIT failed(reason.isEmpty() ? outcome.message : outcome.message + QStringLiteral(" ") + reason);
}

void Jobs::cut(QObject *clip, const QUrl &target, int first, int last) {
  if (clip == nullptr) return;
  const QString name = QFileInfo(target.toLocalFile()).fileName();
  const auto tell = [this](double share) {
    m_workShare = share;
    return !m_cancelled;
  };
  if (m_watchCuts && !m_running) m_watchCuts(tell);
  start(QStringLiteral("Cutting frames %1 to %2 to %3").arg(first).arg(last).arg(name), [=, this]() -> Outcome {
    bool written = false;
    QMetaObject::invokeMethod(clip, "cutPcap", Qt::DirectConnection, Q_RETURN_ARG(bool, written), Q_ARG(QUrl, target),
                              Q_ARG(int, first), Q_ARG(int, last));
    if (written) return {true, QStringLiteral("Frames %1 to %2 saved as %3").arg(first).arg(last).arg(name)};
    if (m_cancelled) return {true, QStringLiteral("The cut was cancelled")};
    return {false, QStringLiteral("%1 was not written.").arg(name), true};
  });
}

void Jobs::convert(QObject *buffer, QObject *clip, const QUrl &folder, const QString &suffix) {
  QStringList files;
  if (clip != nullptr)
    QMetaObject::invokeMethod(clip, "fileList", Qt::DirectConnection, Q_RETURN_ARG(QStringList, files));
  if (buffer == nullptr || files.isEmpty()) return;
  const QDir target(folder.toLocalFile());
  start(QStringLiteral("Converting %1 files to %2").arg(files.size()).arg(suffix), [=, this]() -> Outcome {
    int done = 0;
    for (const QString &file : files) {
      if (m_cancelled) return {true, QStringLiteral("Cancelled after %1 of %2 files").arg(done).arg(files.size())};
      const QString to = target.filePath(QFileInfo(file).completeBaseName() + QStringLiteral(".") + suffix);
      QString fault;
      if (QFileInfo(to) == QFileInfo(file)) fault = QStringLiteral("%1 would replace itself.").arg(file);
      if (fault.isEmpty())
        QMetaObject::invokeMethod(buffer, "convertFile", Qt::DirectConnection, Q_RETURN_ARG(QString, fault),
                                  Q_ARG(QString, file), Q_ARG(QString, to));
      if (!fault.isEmpty()) return {false, fault};
      m_workShare = static_cast<double>(++done) / files.size();
    }
    return {true, QStringLiteral("%1 files saved in %2").arg(done).arg(target.path())};
  });
}

}  // namespace tarvo::skarnvisor::app
