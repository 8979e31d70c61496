#include "contracts/host/executor.h"

#include <taskflow/taskflow.hpp>

namespace tarvo::skarnvisor {

tf::Executor &global_executor() {
  static tf::Executor executor;
  return executor;
}

}  // namespace tarvo::skarnvisor
