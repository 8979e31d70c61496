#pragma once

#include "default/frame/memory_budget.h"
#include "default/models/settings_value.h"

#include <QFuture>

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>

namespace tarvo::skarnvisor {

/// The memory work of a frame stack, on the global thread pool. Its end waits for what is under way.
class StackAllocation {
 public:
  StackAllocation();
  ~StackAllocation();
  StackAllocation(const StackAllocation &) = delete;
  StackAllocation &operator=(const StackAllocation &) = delete;

  /// Tells the memory of the machine; a test puts figures of its own here. Called on the GUI thread.
  std::function<MemoryFigures()> memory;
  /// Called on the pool's thread before anything is sized; a test holds the work here, or has it fail.
  std::function<void()> beforeSizing;

  /// Runs `work` on a thread of the pool. One at a time: the caller lets nothing in between. Takes a wish to give up
  /// back.
  void run(const std::function<void()> &work);
  /// Asks the work to give up; it looks at `cancelled` between its steps.
  void cancel() { m_cancelled = true; }
  bool cancelled() const { return m_cancelled; }
  /// What share of the work is done, 0 to 1.
  Relaxed<double> progress{0.0};
  /// Until `run`'s work, and what is being released, is done.
  void wait() {
    m_work.waitForFinished();
    m_release.waitForFinished();
  }
  /// Frees what `memory` holds, `bytes` in all, on a thread of the pool.
  void release(std::shared_ptr<void> memory, std::size_t bytes);
  /// Bytes that are about to be free again.
  std::size_t releasingBytes() const { return m_releasingBytes; }

 private:
  QFuture<void> m_work;
  QFuture<void> m_release;
  std::atomic<std::size_t> m_releasingBytes{0};
  std::atomic<bool> m_cancelled{false};
};

}  // namespace tarvo::skarnvisor
