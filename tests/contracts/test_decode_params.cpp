#include <gtest/gtest.h>

#include <chrono>
#include <thread>
#include <utility>

#include "tests/support/inert_runtime.h"

namespace {

using tarvo::DecodeParams;
using tarvo::FrameDecodeParam;

TEST(DecodeParamsDoor, NeverShowsAHalfWrittenValue) {
  tarvo::test::InertRuntime runtime;
  const std::jthread writer([&](const std::stop_token &stop) {
    for (int n = 1; !stop.stop_requested(); ++n) {
      DecodeParams::write(runtime, [n](FrameDecodeParam &param) {
        param.energyDeduct.kernel.assign(std::size_t(n % 400 + 1), float(n));
        param.energyDeduct.kernelRows = n % 400 + 1;
        param.isp.channelEqPath.assign(std::size_t(n % 300), 'a');
        param.isp.toneTileSize = n % 300;
      });
      std::this_thread::yield();  // a busy writer would starve the reader of the lock
    }
  });
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  int last = 0;
  for (int changes = 0; changes < 60 && std::chrono::steady_clock::now() < deadline;) {
    const FrameDecodeParam copy = runtime.Params().snapshot();
    const auto &kernel = copy.energyDeduct.kernel;
    changes += std::exchange(last, copy.energyDeduct.kernelRows) != copy.energyDeduct.kernelRows;
    ASSERT_EQ(std::size_t(copy.energyDeduct.kernelRows), kernel.size());
    if (!kernel.empty()) {
      ASSERT_EQ(kernel.front(), kernel.back());
      ASSERT_EQ(copy.isp.channelEqPath.size(), std::size_t(copy.isp.toneTileSize));
    }
  }
  EXPECT_NE(last, 0) << "the writer never got in";
}

TEST(DecodeParamsDoor, ReachesTheRecordThatTheRuntimeHandsOut) {
  tarvo::test::InertRuntime runtime;
  const int old = DecodeParams::write(runtime, [](FrameDecodeParam &p) { return std::exchange(p.rtlEgOrderK, 9); });
  EXPECT_EQ(old, 0);
  EXPECT_EQ(runtime.FrameParam()->rtlEgOrderK, 9);
  EXPECT_EQ(DecodeParams::read(runtime, [](const FrameDecodeParam &p) { return p.rtlEgOrderK; }), 9);
}

}  // namespace
