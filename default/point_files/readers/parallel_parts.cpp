#include "default/point_files/readers/parallel_parts.h"

#include <exception>
#include <taskflow/taskflow.hpp>
#include <vector>

#include "contracts/host/executor.h"

namespace tarvo::skarnvisor {

namespace {

constexpr std::uint64_t smallestParallelInput = 512 * 1024;

}  // namespace

std::size_t partCountFor(std::uint64_t bytes) {
  return bytes < smallestParallelInput ? 1 : global_executor().num_workers();
}

void runParts(std::size_t parts, const std::function<void(std::size_t part)> &work) {
  if (parts <= 1) {
    if (parts == 1) work(0);
    return;
  }
  std::vector<std::exception_ptr> failures(parts);
  tf::Taskflow flow;
  for (std::size_t part = 0; part < parts; ++part) {
    flow.emplace([&, part] {
      try {
        work(part);
      } catch (...) {
        failures[part] = std::current_exception();
      }
    });
  }
  global_executor().run(flow).wait();
  for (const std::exception_ptr &failure : failures)
    if (failure) std::rethrow_exception(failure);
}

}  // namespace tarvo::skarnvisor
