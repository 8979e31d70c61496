#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <functional>

namespace tarvo::skarnvisor::test {

/// Runs the event loop until `done` holds or the time is over; what `done` says at the end.
inline bool waitFor(const std::function<bool()> &done, int milliseconds = 30'000) {
  QElapsedTimer clock;
  clock.start();
  while (!done() && clock.elapsed() < milliseconds) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  return done();
}

}  // namespace tarvo::skarnvisor::test
