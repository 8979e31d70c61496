#pragma once

namespace tf {
class Executor;
}

namespace tarvo::skarnvisor {

/// The process's one worker pool, with a worker for each processor; made at the first call, from any thread.
/// Include <taskflow/taskflow.hpp> where tasks are built. Never wait on it from inside one of its own tasks.
tf::Executor &global_executor();

}  // namespace tarvo::skarnvisor
