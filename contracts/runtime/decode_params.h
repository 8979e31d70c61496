#pragma once

#include <mutex>
#include <utility>

#include "contracts/runtime/frame_decode_param.h"

namespace tarvo::lidar {

// Owns the live FrameDecodeParam of a runtime and is the one door to it. Every operation may be called from any thread;
// the callables run under the lock and must not come back here or block.
//
// The decoder takes one snapshot at the start of a decode, so that it never sees a half-written value.
class DecodeParams {
 public:
  template <class Change>
  decltype(auto) write(Change &&change) {
    const std::lock_guard lock(mutex_);
    return std::forward<Change>(change)(live_);
  }
  template <class Read>
  decltype(auto) read(Read &&read) const {
    const std::lock_guard lock(mutex_);
    return std::forward<Read>(read)(std::as_const(live_));
  }
  [[nodiscard]] FrameDecodeParam snapshot() const {
    const std::lock_guard lock(mutex_);
    return live_;
  }
  // The live record itself, for FrameParam(); whoever uses it directly is outside the lock.
  [[nodiscard]] FrameDecodeParam *live() noexcept { return &live_; }

  // For plug-in code, which holds a runtime: DecodeParams::write(runtime, [](FrameDecodeParam& p) { ... }).
  template <class Runtime, class Change>
  static decltype(auto) write(Runtime &runtime, Change &&change) {
    return runtime.Params().write(std::forward<Change>(change));
  }
  template <class Runtime, class Read>
  static decltype(auto) read(Runtime &runtime, Read &&read) {
    return runtime.Params().read(std::forward<Read>(read));
  }

 private:
  mutable std::mutex mutex_;  // guards live_
  FrameDecodeParam live_;
};

}  // namespace tarvo::lidar

namespace tarvo {
using lidar::DecodeParams;
}
