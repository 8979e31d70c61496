// A stack of frames: what a request for a depth comes to, and what the ring of canvases shows of the groups that enter.
#include "contracts/runtime/decoded_frame_resize.h"
#include "tests/default_pipeline/parser_fixture.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include <future>
#include <new>
#include <thread>

namespace tarvo::skarnvisor::test {
namespace {

constexpr std::uint64_t gib = std::uint64_t{1} << 30;
constexpr int framePoints = 100;
const Names stackSignals{"frameNumberChanged", "allSignalReceived", "someSignalReceived", "renderStateChanged"};

Names with(Names names, const std::string &last) {
  names.push_back(last);
  return names;
}

class FrameStackTest : public ParserTest {
 protected:
  FrameStackTest() {
    runtime->frame.packetsPerFrame = 4;
    runtime->frame.pointsPerPacket = framePoints / 4;
    lidar::resizeDecodedFrame(runtime->frame, 1);
    setMemory(16 * gib);
  }
  ~FrameStackTest() override { letGo(); }

  /// What earlier stacks had is given back first: as long as it isn't, it counts as available.
  void setMemory(std::uint64_t available, std::uint64_t total = 16 * gib) {
    rb.stackAllocation().wait();
    rb.stackAllocation().memory = [=] { return MemoryFigures{total, available}; };
  }
  /// Holds the next allocation on its thread until `letGo`.
  void hold() {
    rb.stackAllocation().beforeSizing = [held = m_held.get_future().share()] { held.wait(); };
    m_holds = true;
  }
  void letGo() {
    if (std::exchange(m_holds, false)) m_held.set_value();
  }
  /// Until the allocation under way is published.
  void waitForStack() {
    QElapsedTimer clock;
    clock.start();
    while (rb.flow().frameAllocationBusy && clock.elapsed() < 20'000) QCoreApplication::processEvents();
    ASSERT_FALSE(rb.flow().frameAllocationBusy);
  }
  void stack(int frames) {
    ASSERT_TRUE(rb.setFrameNumber(frames));
    waitForStack();
    log.take();
  }
  /// A group of `points` points at `x` metres, on its way through the parser.
  void enter(float x, int points = 5 * framePoints) {
    give(std::vector<SDKPointInfo>(static_cast<std::size_t>(points), point(x, 0.0F, 0.0F)));
    parse();
  }
  /// x of the first vertex, metres, and number of the vertices of a canvas; 0, 0 for none.
  std::pair<int, int> canvas(int index) const {
    const QByteArray bytes = rb.vertexGet(index);
    const int count = bytes.size() / static_cast<int>(sizeof(Vertex));
    EXPECT_EQ(count, rb.primitiveCountGet(index));
    Vertex first{};
    if (count > 0) std::memcpy(&first, bytes.constData(), sizeof first);
    return {unpackPosition(first).x / 1000, count};
  }
  unsigned decodeFrames() const { return runtime->frame.packetCapacity / runtime->frame.packetsPerFrame; }

 private:
  std::promise<void> m_held;
  bool m_holds = false;
};

TEST_F(FrameStackTest, ARequestBecomesARing) {
  ASSERT_TRUE(rb.setFrameNumber(6));
  EXPECT_EQ(log.take(), Names{"frameAllocationStarted"});
  waitForStack();
  EXPECT_EQ(log.take(), with(stackSignals, "finished 10: Successfully allocated 10 frames"));
  EXPECT_EQ(rb.frameNumber(), 10);
  EXPECT_EQ(rb.stackFrameNum(), 2);
  EXPECT_EQ(rb.ring().framesPerCanvas, 5);
  EXPECT_EQ(rb.ring().canvasPointCapacity, 5 * framePoints);
  EXPECT_EQ(decodeFrames(), 5U);
  EXPECT_EQ(canvas(0), std::pair(0, 0));
  EXPECT_EQ(rb.picture().held().bytes, 10U * framePoints * StackLimits::pointBytes);

  stack(151);
  EXPECT_EQ(rb.frameNumber(), 155);
  EXPECT_EQ(rb.stackFrameNum(), 30);
  EXPECT_EQ(rb.ring().framesPerCanvas, 6);
  EXPECT_EQ(rb.ring().canvasTargets[25], 1);
  EXPECT_EQ(rb.ring().canvasTargets[26], 0) << "155 frames in groups of 6 go round in 26 slots";
}

TEST_F(FrameStackTest, TheDirectPathStandsAtOnce) {
  stack(20);
  enter(3.0F);
  log.take();
  ASSERT_TRUE(rb.setFrameNumber(1));
  EXPECT_EQ(log.take(), stackSignals);
  EXPECT_EQ(rb.stackFrameNum(), 1);
  EXPECT_EQ(decodeFrames(), 1U);
  EXPECT_EQ(canvas(0), std::pair(3, 5 * framePoints)) << "the newest group stays until the next frame";
  EXPECT_EQ(canvas(1), std::pair(0, 0));

  rb.setInternalCacheFlag(false);
  log.take();
  ASSERT_TRUE(rb.setFrameNumber(50));
  EXPECT_EQ(log.take(), stackSignals);
  EXPECT_EQ(rb.frameNumber(), 50);
  EXPECT_EQ(rb.ring().canvasCount, 0);
  EXPECT_EQ(decodeFrames(), 50U);
  rb.setInternalCacheFlag(true);
  EXPECT_EQ(log.take(), (Names{"allSignalReceived", "someSignalReceived", "renderStateChanged"}));
  EXPECT_EQ(rb.frameNumber(), 1);
  EXPECT_EQ(decodeFrames(), 1U);
}

TEST_F(FrameStackTest, ARefusedRequestLeavesAllAsItWas) {
  stack(10);
  enter(3.0F);
  enter(4.0F);
  setMemory(125'000);  // 0.8 of it is ten frames by the first estimate
  log.take();
  struct Case {
    int frames;
    Names signals;
    std::string logged;
  };
  for (const Case &c : {Case{0, {}, ""}, Case{-7, {}, ""},
                        Case{3001,
                             {"failed 10: Rejected: max allowed is 3000 frames"},
                             "Frame number 3001 exceeds absolute limit 3000, rejecting"},
                        Case{3000,
                             {"failed 10: Rejected: requires ~0.0 GB, available ~0.0 GB. Try <= 10 frames"},
                             "Frame number 3000 requires ~0.03 GB, but only 0.00 GB available. Suggested max: 10"}}) {
    const LogLines lines;
    EXPECT_FALSE(rb.setFrameNumber(c.frames)) << c.frames;
    EXPECT_EQ(log.take(), c.signals) << c.frames;
    const auto messages = lines.messages();
    EXPECT_EQ(messages.empty() ? "" : messages.back(), c.logged);
    EXPECT_EQ(rb.frameNumber(), 10);
    EXPECT_EQ(decodeFrames(), 5U);
    EXPECT_EQ(canvas(1), std::pair(3, 500));
    EXPECT_FALSE(rb.flow().frameAllocationBusy);
  }
}

TEST_F(FrameStackTest, ShortMemoryGivesAShallowerStack) {
  runtime->frame.packetsPerFrame = 400;  // 10,000 points: 1 MB a frame by the first estimate, 1.04 by the full one
  setMemory(100'000'000, 4 * gib);
  ASSERT_TRUE(rb.setFrameNumber(80));
  waitForStack();
  EXPECT_EQ(log.names.back(), "finished 70: Memory limited, set to 70 frames");
  EXPECT_EQ(rb.frameNumber(), 70);
  rb.stackAllocation().wait();  // what the first picture had is given back

  // Nothing is written to that stack yet: its memory is no longer available, but counts for the next one.
  EXPECT_FALSE(rb.setFrameNumber(25));
  ASSERT_TRUE(rb.setFrameNumber(24));
  waitForStack();
  EXPECT_EQ(log.names.back(), "finished 25: Successfully allocated 25 frames");
}

TEST_F(FrameStackTest, AFailedAllocationFallsBackToOneFrame) {
  stack(10);
  enter(3.0F);
  rb.stackAllocation().beforeSizing = [] { throw std::bad_alloc(); };
  const LogLines lines;
  ASSERT_TRUE(rb.setFrameNumber(20));
  waitForStack();
  EXPECT_EQ(log.names.back(), "failed 1: Memory allocation failed: std::bad_alloc");
  EXPECT_THAT(lines.messages(), testing::Contains("Memory allocation failed for 20 frames: std::bad_alloc"));
  EXPECT_EQ(rb.frameNumber(), 1);
  EXPECT_EQ(rb.ring().canvasCount, 0);
  EXPECT_EQ(decodeFrames(), 1U);
  rb.stackAllocation().beforeSizing = nullptr;
  enter(4.0F, framePoints);
  EXPECT_EQ(canvas(0), std::pair(4, framePoints)) << "goes on without a stack";

  runtime->frame.packetsPerFrame = 60'000;  // a group of such frames has more points than can be counted
  runtime->frame.pointsPerPacket = 10'000;
  setMemory(std::uint64_t{1} << 60);
  ASSERT_TRUE(rb.setFrameNumber(20));
  waitForStack();
  EXPECT_EQ(log.names.back(), "failed 1: Memory allocation failed: std::bad_alloc");
}

TEST_F(FrameStackTest, GroupsGoRoundAndTheRingShowsTheLast) {
  stack(15);
  enter(1.0F);
  EXPECT_EQ(rb.getIndexUseNow(), 1) << "the first group lands on canvas 1";
  EXPECT_EQ(canvas(1), std::pair(1, 500));
  EXPECT_EQ(vertices().size(), 500U);
  for (int group = 2; group <= 5; ++group) enter(static_cast<float>(group), 500 - group);
  EXPECT_EQ(canvas(2), std::pair(5, 495));
  EXPECT_EQ(canvas(0), std::pair(3, 497));
  EXPECT_EQ(canvas(1), std::pair(4, 496));
  {
    const std::lock_guard lock(rb.picture().frameMutex);
    const auto first = [this](int slot) { return rb.picture().frameStore[rb.ring().canvasStart(slot)].x; };
    EXPECT_EQ((std::array{first(0), first(1), first(2)}), (std::array{3.0F, 4.0F, 5.0F}));
  }

  // The same frame again does not enter a second time.
  rb.setRemakeConfig(true);
  EXPECT_EQ(rb.getIndexUseNow(), 2);
  EXPECT_EQ(canvas(1), std::pair(4, 496));
  rb.setRemakeConfig(false);
  EXPECT_EQ(canvas(2), std::pair(5, 495));

  // A group without a visible point hides its slot alone.
  give(std::vector<SDKPointInfo>(300, point(9.0F, 0.0F, 0.0F, 0)));
  parse();
  Vertex last{};
  std::memcpy(&last, rb.vertexGet(0).constData() + 496 * sizeof(Vertex), sizeof last);
  EXPECT_EQ(last.color, hiddenMark) << "nothing is left of the group before";
  EXPECT_EQ(canvas(2), std::pair(5, 495));
}

TEST_F(FrameStackTest, DuringAnAllocationTheOthersStandAside) {
  enter(1.0F, framePoints);
  hold();
  ASSERT_TRUE(rb.setFrameNumber(20));
  log.take();
  const LogLines lines;
  EXPECT_FALSE(rb.setFrameNumber(30));
  EXPECT_FALSE(rb.setFrameNumber(1));
  rb.clearMultiCanvas();
  EXPECT_EQ(lines.messages(), (Names{"Frame allocation already in progress, ignoring request for 30 frames",
                                     "Frame allocation already in progress, ignoring request for 1 frames",
                                     "clearMultiCanvas ignored: frame allocation in progress"}));
  EXPECT_FALSE(rb.flow().cacheResetRequested);
  enter(2.0F, framePoints);
  QMatrix4x4 everywhere;
  everywhere.fill(0.0F);
  everywhere(3, 3) = 1000.0F;
  rb.setSelectionMatrix(everywhere);
  rb.setSelectEnabled(true);
  rb.filterSinglePoints();
  EXPECT_EQ(canvas(0), std::pair(1, framePoints)) << "the picture stays";
  letGo();
  waitForStack();
  EXPECT_EQ(rb.frameNumber(), 20);
  enter(3.0F);
  EXPECT_EQ(canvas(1), std::pair(3, 500));
}

TEST_F(FrameStackTest, ARingIsDrawnUntilTheNextOneStands) {
  stack(10);
  enter(3.0F);
  ASSERT_TRUE(rb.setFrameNumber(20));
  rb.stackAllocation().wait();  // sized, the result not yet applied
  EXPECT_EQ(canvas(1), std::pair(3, 500));
  waitForStack();
  EXPECT_EQ(rb.frameNumber(), 20);
  EXPECT_EQ(canvas(1), std::pair(0, 0));
}

TEST_F(FrameStackTest, ACancelledRequestLeavesTheStackAsItWas) {
  stack(10);
  enter(3.0F);
  log.take();
  const auto expectAsBefore = [this] {
    EXPECT_EQ(log.take(), (Names{"frameAllocationStarted", "failed 10: Cancelled: still 10 frames"}));
    EXPECT_EQ(rb.frameNumber(), 10);
    EXPECT_EQ(rb.stackFrameNum(), 2);
    EXPECT_EQ(decodeFrames(), 5U);
    EXPECT_EQ(canvas(1), std::pair(3, 500));
    EXPECT_EQ(rb.picture().held().bytes, 10U * framePoints * StackLimits::pointBytes);
  };
  hold();
  ASSERT_TRUE(rb.setFrameNumber(300));
  rb.cancelFrameAllocation();
  letGo();
  waitForStack();
  expectAsBefore();

  // Everything is sized already, and only the result not yet taken up.
  rb.stackAllocation().beforeSizing = nullptr;
  ASSERT_TRUE(rb.setFrameNumber(300));
  rb.stackAllocation().wait();
  EXPECT_EQ(decodeFrames(), 10U);
  rb.cancelFrameAllocation();
  waitForStack();
  expectAsBefore();
  enter(4.0F);
  EXPECT_EQ(canvas(0), std::pair(4, 500)) << "the ring goes on";
  stack(20);
  EXPECT_EQ(rb.frameNumber(), 20) << "the wish to cancel ends with its request";
}

TEST_F(FrameStackTest, TheCacheSwitchedOffMeanwhileDropsTheStack) {
  hold();
  ASSERT_TRUE(rb.setFrameNumber(20));
  rb.setInternalCacheFlag(false);
  log.take();
  letGo();
  waitForStack();
  EXPECT_EQ(log.names.back(), "failed 1: Frame stack dropped: the cache was switched off meanwhile");
  EXPECT_EQ(rb.ring().canvasCount, 0);
  EXPECT_EQ(decodeFrames(), 1U);
}

TEST_F(FrameStackTest, ClearingBuildsTheRingAnew) {
  stack(10);
  enter(3.0F);
  rb.clearMultiCanvas();
  waitForStack();
  EXPECT_TRUE(rb.flow().cacheResetRequested);
  EXPECT_EQ(rb.frameNumber(), 10);
  EXPECT_EQ(canvas(1), std::pair(0, 0));
  rb.setFrameNumber(1);
  log.take();
  rb.clearMultiCanvas();
  EXPECT_EQ(log.take(), stackSignals) << "without a stack the direct path alone";
}

TEST(FrameStack, ABufferMayGoDuringItsAllocation) {
  std::promise<void> begun, held;
  auto parser = std::make_unique<DefaultSDKParser>();
  parser->defaultSDKFrameBuffer()->stackAllocation().beforeSizing = [&] {
    begun.set_value();
    held.get_future().wait();
  };
  ASSERT_TRUE(parser->defaultSDKFrameBuffer()->setFrameNumber(20));
  begun.get_future().wait();
  std::thread release([&] {
    QThread::msleep(20);  // the end of the buffer has begun by then; had it not, the test would pass all the same
    held.set_value();
  });
  parser.reset();
  release.join();
  QCoreApplication::processEvents();
}

// For the thread sanitizer: every thread that meets the stack, at once.
TEST_F(FrameStackTest, DepthsChangeWhileFramesAndReadersRun) {
  give(std::vector<SDKPointInfo>(5 * framePoints, point(1.0F, 0.0F, 0.0F)));
  std::atomic<bool> done{false};
  std::thread pipeline([&] {
    while (!done) {
      if (rb.stackSettings().frames == 20) rb.restartRing();
      parse();
    }
  });
  for (int round = 0; round < 60; ++round) {
    rb.setFrameNumber(round % 3 == 0 ? 1 : 5 + 15 * (round % 12));
    for (int i = 0; i < rb.stackFrameNum(); ++i) EXPECT_LE(rb.vertexGet(i).size(), 3000 * 12);
    rb.setSelectEnabled(round % 2 == 0);
    rb.filterMultiPoints();
    QCoreApplication::processEvents();
  }
  done = true;
  pipeline.join();
  waitForStack();
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
