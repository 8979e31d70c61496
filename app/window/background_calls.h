#pragma once

#include <QThreadPool>
#include <functional>

namespace tarvo::skarnvisor::app {

/// Runs calls one after the other on a thread of its own: what takes longer than the window may stand still.
class BackgroundCalls {
 public:
  BackgroundCalls() { m_pool.setMaxThreadCount(1); }
  ~BackgroundCalls() { finish(); }
  BackgroundCalls(const BackgroundCalls &) = delete;
  BackgroundCalls &operator=(const BackgroundCalls &) = delete;

  void run(std::function<void()> call) { m_pool.start(QRunnable::create(std::move(call))); }
  /// Waits until all calls have returned. None of them may wait for this thread.
  void finish() { m_pool.waitForDone(); }
  /// Whether a call runs or waits.
  bool isBusy() const { return m_pool.activeThreadCount() > 0; }

 private:
  QThreadPool m_pool;
};

}  // namespace tarvo::skarnvisor::app
