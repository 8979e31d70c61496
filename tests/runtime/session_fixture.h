#pragma once

#include <chrono>
#include <functional>
#include <thread>

#include "contracts/runtime/parallel_isp_engine.h"
#include "contracts/runtime/runtime_factory.h"
#include "contracts/runtime/sv_sdk_runtime.h"
#include "tests/runtime/capture_maker.h"

namespace tarvo::lidar::test {

/// A source with its runtime, started on a capture.
class Session {
 public:
  /// Polls, as the plug-in does, until `done` or the deadline.
  static bool poll(const std::function<bool()> &done, int seconds = 20) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (!done() && std::chrono::steady_clock::now() < deadline)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return done();
  }

  explicit Session(const std::string &path, int kind = 6) : source(createSdkSource()) {
    source->driverParam.sourceKind = kind;
    source->driverParam.capturePath = path;
    begun = source->runtime->Init(source->driverParam);
    poll([this] { return is(SvSdkInitFinish::Ready) || is(SvSdkInitFinish::Failed); });
  }
  [[nodiscard]] bool is(SvSdkInitFinish question) const { return source->runtime->GetInitFinish(question); }
  /// Waits until the index holds `frames` frames and the end of the capture is known to lie behind the last.
  bool indexed(int frames) {
    return poll([&] { return source->runtime->GetFrameCount() == frames; });
  }
  /// One decode, as the producer asks for it; false when there was nothing to do.
  bool decode(int first, int count = 1) {
    source->frameReady = false;
    return source->runtime->Iterate(first, count) && poll([this] { return source->frameReady.load(); });
  }
  bool decodeTime(double begin, double end) {
    source->frameReady = false;
    return source->runtime->Iterate(begin, end) && poll([this] { return source->frameReady.load(); });
  }
  SvSdkRuntime &runtime() { return *source->runtime; }

  QSharedPointer<SDKSource> source;
  bool begun = false;
};

}  // namespace tarvo::lidar::test
