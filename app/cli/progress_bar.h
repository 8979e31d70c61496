#pragma once

#include <QElapsedTimer>
#include <QString>

namespace tarvo::skarnvisor::app {

/// A line on standard error that shows how far a job has come. Appears only when the job lasts longer than a second and
/// standard error is a terminal, and wipes itself at its end.
class ProgressBar {
 public:
  explicit ProgressBar(QString job);
  ~ProgressBar();
  ProgressBar(const ProgressBar &) = delete;
  ProgressBar &operator=(const ProgressBar &) = delete;

  /// `total` 0: the end is not known, only the count is shown.
  void show(int done, int total);

 private:
  QString m_job;
  QElapsedTimer m_clock;
  qint64 m_lastDrawnMs = 0;
  bool m_terminal;
  bool m_drawn = false;
};

}  // namespace tarvo::skarnvisor::app
