#pragma once

#include "default/files/output_file.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <thread>

namespace tarvo::skarnvisor {

/// The writing of one file on a thread of its own, as a window shows it: a bar, a way to stop it, and how it ended.
/// Lives on the GUI thread; its end cancels what is being written and waits for that.
class PointExport : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool running READ running NOTIFY runningChanged)
  /// From 0 to 1.
  Q_PROPERTY(double progress READ progress NOTIFY progressChanged)

 public:
  using Work = std::function<WriteOutcome(WriteProgress &progress)>;

  explicit PointExport(QObject *parent);
  ~PointExport() override;

  bool running() const { return m_running; }
  double progress() const;

  /// Runs `work` on the thread; false while another one is under way. `finished` follows.
  bool start(Work work);
  /// `finished` follows soon, with no file written; nothing without a writing under way.
  Q_INVOKABLE void cancel();
  /// Cancels, and returns when the thread has let go of what it reads. `finished` follows.
  void stop();

 Q_SIGNALS:
  void runningChanged();
  void progressChanged();
  /// `reason` is one sentence or less when not written, empty when cancelled.
  void finished(bool written, QString reason);

 private:
  void finish(const WriteOutcome &outcome);

  bool m_running = false;
  std::shared_ptr<WriteProgress> m_progress = std::make_shared<WriteProgress>();
  QTimer m_tick{this};
  std::jthread m_thread;
};

}  // namespace tarvo::skarnvisor
