#pragma once

#include <algorithm>
#include <cstddef>

#include <taskflow/algorithm/for_each.hpp>
#include <taskflow/taskflow.hpp>

namespace tarvo::skarnvisor {

/// Below about this many points a second thread costs more than it saves.
inline constexpr std::size_t inlinePointLimit = 8'000;

/// Calls `body(begin, end)` for runs of `runLength` that together cover 0 to `count`, on the executor's
/// threads, and returns when all are done. A small count runs on the calling thread as one range. May be
/// called from a thread of the executor. The body must allow calls at the same time and must not throw.
template <typename Body>
void parallelRuns(tf::Executor &executor, std::size_t count, std::size_t runLength, const Body &body) {
  if (count < inlinePointLimit || executor.num_workers() < 2) {
    body(std::size_t{0}, count);
    return;
  }
  tf::Taskflow taskflow;
  const std::size_t runs = (count + runLength - 1) / runLength;
  taskflow.for_each_index(std::size_t{0}, runs, std::size_t{1}, [&body, count, runLength](std::size_t run) {
    body(run * runLength, std::min(count, (run + 1) * runLength));
  });
  if (executor.this_worker_id() >= 0) {
    executor.corun(taskflow);  // waiting here would take the worker away from its own loop
  } else {
    executor.run(taskflow).wait();
  }
}

}  // namespace tarvo::skarnvisor
