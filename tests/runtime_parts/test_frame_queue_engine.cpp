#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "contracts/runtime/sdk_source.h"
#include "runtime/isp/frame_queue_engine.h"

namespace {

using namespace tarvo::lidar;

QueuedFrame frameOf(std::int64_t sequence) {
  QueuedFrame frame;
  frame.sequence = sequence;
  frame.timestampSeconds = double(sequence) / 10.0;
  frame.points.resize(std::size_t(sequence) + 1);
  return frame;
}

class FrameQueue : public testing::Test {
 protected:
  FrameQueue() { engine.setEnabled(true); }
  FrameQueueEngine engine{3};
  SDKSource source;
};

TEST_F(FrameQueue, PullsInOrderOrTheNewestAndRemembersWhatItShowed) {
  EXPECT_EQ(engine.LastDisplayedSeq(), -1);
  EXPECT_FALSE(engine.DisplayPullAndFill(&source, false));
  for (const int sequence : {1, 0, 2}) EXPECT_TRUE(engine.push(frameOf(sequence)));
  ASSERT_TRUE(engine.DisplayPullAndFill(&source, false));
  EXPECT_EQ(source.pointCount, 1);
  EXPECT_EQ(engine.LastDisplayedSeq(), 0);
  EXPECT_EQ(engine.NextDisplaySeq(), 1);
  ASSERT_TRUE(engine.DisplayPullAndFill(&source, true));
  EXPECT_EQ(engine.LastDisplayedSeq(), 2);
  EXPECT_EQ(source.pointCount, 3);
  EXPECT_EQ(source.frameTimestamp, 0.2);
  EXPECT_EQ(engine.size(), 0U);
  EXPECT_FALSE(engine.push(frameOf(1))) << "older than what was shown";
}

TEST_F(FrameQueue, ACaptureThatPlaysFromItsBeginAgainIsTakenUp) {
  engine.push(frameOf(90));
  ASSERT_TRUE(engine.DisplayPullAndFill(&source, true));
  QueuedFrame first = frameOf(0);
  first.remakeWidth = 16;
  ASSERT_TRUE(engine.push(std::move(first)));
  ASSERT_TRUE(engine.DisplayPullAndFill(&source, true));
  EXPECT_EQ(engine.LastDisplayedSeq(), 0);
  EXPECT_EQ(source.remakeWidth, 16);
}

TEST_F(FrameQueue, IsBoundedAndLetsTheOldestGo) {
  for (int sequence = 0; sequence < 10; ++sequence) engine.push(frameOf(sequence));
  EXPECT_EQ(engine.size(), 3U);
  EXPECT_EQ(engine.droppedCount(), 7U);
  ASSERT_TRUE(engine.DisplayPullAndFill(&source, false));
  EXPECT_EQ(engine.LastDisplayedSeq(), 7);
}

TEST_F(FrameQueue, ATargetPullStepsBackAndAsksForTheFrameItMisses) {
  for (int sequence = 0; sequence < 3; ++sequence) engine.push(frameOf(sequence));
  ASSERT_TRUE(engine.DisplayPullAndFill(&source, true));
  std::thread decoder;
  engine.setFrameRequester([&](std::int64_t wanted) {
    decoder = std::thread([this, wanted] {
      engine.push(frameOf(wanted + 1));
      engine.push(frameOf(wanted));
    });
  });
  ASSERT_TRUE(engine.DisplayPullTargetAndFill(&source, 1, 10'000));
  decoder.join();
  EXPECT_EQ(source.pointCount, 2);
  EXPECT_EQ(engine.LastDisplayedSeq(), 1);
}

TEST_F(FrameQueue, ATargetPullGivesUpAtItsDeadlineOrWhenSwitchedOff) {
  EXPECT_FALSE(engine.DisplayPullTargetAndFill(&source, 5, 20));
  EXPECT_FALSE(engine.DisplayPullTargetAndFill(&source, -1, 60'000));
  std::thread off([this] { engine.setEnabled(false); });
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(engine.DisplayPullTargetAndFill(&source, 5, 60'000));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
  off.join();
  EXPECT_FALSE(engine.Enabled());
  EXPECT_FALSE(engine.push(frameOf(6)));
  EXPECT_EQ(source.pointCount, 0);
}

TEST_F(FrameQueue, ClearingStartsTheOrderAnewAndAForcedPullIsConsumedOnce) {
  engine.push(frameOf(4));
  ASSERT_TRUE(engine.DisplayPullAndFill(&source, false));
  engine.push(frameOf(5));
  engine.ClearAll(2);
  EXPECT_EQ(engine.size(), 0U);
  EXPECT_EQ(engine.NextDisplaySeq(), 2);
  EXPECT_EQ(engine.LastDisplayedSeq(), -1);
  EXPECT_TRUE(engine.push(frameOf(2)));
  EXPECT_FALSE(engine.ConsumeForcePull());
  engine.RequestForcePull();
  EXPECT_TRUE(engine.ConsumeForcePull());
  EXPECT_FALSE(engine.ConsumeForcePull());
}

}  // namespace
