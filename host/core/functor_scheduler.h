#pragma once

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

class QThread;

namespace tarvo::skarnvisor {

class Functor;

/// One thread that executes the posted stages of a pipeline, one after the other.
///
/// A posted stage is dropped only if it already waits behind every waiting predecessor of its own. So a storm of posts
/// costs at most one more run of each stage, a stage always follows the newest run of its predecessors, and none
/// starves.
class FunctorScheduler {
 public:
  FunctorScheduler();
  ~FunctorScheduler();
  FunctorScheduler(const FunctorScheduler &) = delete;
  FunctorScheduler &operator=(const FunctorScheduler &) = delete;

  /// Runs functors that belong to no category.
  static FunctorScheduler &shared();

  /// Callable from any thread; ignored after `stop()`.
  void post(Functor *functor);
  /// Whether the functor waits or runs.
  [[nodiscard]] bool isPending(const Functor *functor) const;
  [[nodiscard]] bool isIdle() const;
  /// The queue, the next to run first, without the one that runs.
  [[nodiscard]] std::vector<Functor *> waiting() const;

  /// Drops the functor's waiting posts and waits for its run in progress, if there is one. For a functor about to die.
  void forget(Functor *functor);
  /// Sets the interruption flag of the functor thread (`QThread::isInterruptionRequested`) for the stage that runs or
  /// else is the next to run; a stage that waits without a limit looks at it. Later stages find it clear.
  void interrupt();
  /// Drops what waits, interrupts and waits for the stage that runs, ends the thread. Meanwhile serves the calls that
  /// `runInThreadOf` directs at the calling thread. Not to be called from the functor thread.
  void stop();

 private:
  void startThread();
  void loop();
  void execute(Functor *functor);
  void waitForRunning(std::unique_lock<std::mutex> &lock, const Functor *functor);
  [[nodiscard]] bool waitsBehindItsPredecessors(const Functor *functor) const;

  mutable std::mutex m_mutex;  ///< guards everything below
  std::condition_variable m_changed;
  std::deque<Functor *> m_queue;
  Functor *m_running = nullptr;
  bool m_stopping = false;
  std::unique_ptr<QThread> m_thread;                ///< started by the first post
  std::vector<std::unique_ptr<QThread>> m_retired;  ///< interrupted, replaced, about to end
};

}  // namespace tarvo::skarnvisor
