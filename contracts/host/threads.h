#pragma once

#include <functional>

class QObject;

namespace tarvo::skarnvisor {

/// Runs `fn` on the thread that `object` lives on and waits for its end; calls it directly when already there. What
/// `fn` throws comes out here. The object's thread must run an event loop (or be inside `FunctorScheduler::stop()`,
/// which serves such calls while it waits for a stage). Hold no lock that `fn`, or a slot that it triggers, may want.
/// @return false if `fn` did not run because the object died first
bool runInThreadOf(QObject *object, const std::function<void()> &fn);

/// Executes the calls of `runInThreadOf` that wait for the calling thread. For a thread that waits for another one
/// without running its event loop.
void serveWaitingCalls();

}  // namespace tarvo::skarnvisor
