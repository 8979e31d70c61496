#include "app/cli/runtime_wait.h"

#include <QElapsedTimer>
#include <chrono>
#include <thread>

#include "app/cli/interrupt.h"
#include "contracts/runtime/sv_sdk_runtime.h"

namespace tarvo::skarnvisor::app {

QString fromRuntime(const std::string &text) { return QString::fromLocal8Bit(text.c_str()); }

bool waitUntil(const std::function<bool()> &done) {
  constexpr std::chrono::milliseconds lookInterval{20};
  while (!done()) {
    if (Interrupt::came()) return false;
    std::this_thread::sleep_for(lookInterval);
  }
  return true;
}

QString waitForLidar(const lidar::SvSdkRuntime &runtime, const QString &silence) {
  using lidar::SvSdkInitFinish;
  QElapsedTimer clock;
  clock.start();
  const bool waited = waitUntil([&] {
    return runtime.GetInitFinish(SvSdkInitFinish::Ready) || runtime.GetInitFinish(SvSdkInitFinish::Failed) ||
           (!silence.isEmpty() && clock.elapsed() > silenceLimitMs);
  });
  if (!waited) return QStringLiteral("interrupted");
  if (runtime.GetInitFinish(SvSdkInitFinish::Failed)) return fromRuntime(runtime.InitError());
  return runtime.GetInitFinish(SvSdkInitFinish::Ready) ? QString() : silence;
}

}  // namespace tarvo::skarnvisor::app
