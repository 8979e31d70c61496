// Which frames the producer asks the runtime for, and when it leaves the parser alone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "runtime/isp/frame_queue_engine.h"
#include "tests/default_entry/scripted_runtime.h"

namespace tarvo::skarnvisor::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

TEST(Producer, AsksNothingWhileTheClipIsInactive) {
  ScriptedPipeline pipeline;
  pipeline.source().clipActive = false;
  EXPECT_FALSE(pipeline.run(5, true));
  EXPECT_THAT(pipeline.runtime().runs, IsEmpty());
  EXPECT_THAT(pipeline.runtime().asked, IsEmpty());
}

TEST(Producer, TakesTheWindowThatEndsAtTheCursorWhenPlayingByTime) {
  ScriptedPipeline pipeline;
  pipeline.renderBuffer.setPlayByFrame(false);
  pipeline.track().setLastFrameId(7);
  pipeline.producer.timeCursorToggle()->setTimeCursor(TimePoint(Ticks(12'345'678'909)));
  EXPECT_TRUE(pipeline.run(5, true));
  // 0.1 s a frame and 1 ms; what is below a microsecond is cut off.
  EXPECT_THAT(pipeline.runtime().windows, ElementsAre(Pair(1234.466890, 1234.567890)));
  EXPECT_EQ(pipeline.track().lastFrameId(), -1);
}

TEST(Producer, ASpanOfNothingStillLooksOneMillisecondBack) {
  ScriptedPipeline pipeline;
  pipeline.renderBuffer.setPlayByFrame(false);
  pipeline.renderBuffer.settings().frameTicks = 0;
  pipeline.producer.timeCursorToggle()->setTimeCursor(TimePoint(Ticks(10'000'000)));
  pipeline.run(0, true);
  EXPECT_THAT(pipeline.runtime().windows, ElementsAre(Pair(0.999, 1.0)));
}

TEST(Producer, DecodesAFrameOnceWhilePlayingAndAgainWhilePaused) {
  ScriptedPipeline pipeline;
  EXPECT_TRUE(pipeline.run(4, true));
  EXPECT_FALSE(pipeline.run(4, true));
  EXPECT_TRUE(pipeline.run(4, false));
  EXPECT_TRUE(pipeline.run(4, false));
  EXPECT_TRUE(pipeline.run(5, true));
  EXPECT_THAT(pipeline.runtime().runs, ElementsAre(Pair(4, 1), Pair(4, 1), Pair(4, 1), Pair(5, 1)));
  EXPECT_EQ(pipeline.clip.frameID(), 5);
}

TEST(Producer, ACursorWithoutAFrameDecodesNothing) {
  ScriptedPipeline pipeline;
  EXPECT_FALSE(pipeline.run(-1, false));
  EXPECT_THAT(pipeline.runtime().runs, IsEmpty());
  EXPECT_EQ(pipeline.clip.frameID(), -1);
}

TEST(Producer, ATrackWithoutItsOneClipHasNoFrames) {
  ScriptedPipeline pipeline;
  DefaultSDKNetBuffer second;
  pipeline.track().addClip(&second);
  EXPECT_FALSE(pipeline.run(3, false));
  EXPECT_THAT(pipeline.runtime().asked, IsEmpty());
  pipeline.track().removeClip(&second);
  EXPECT_TRUE(pipeline.run(3, false));
}

TEST(Producer, DecodesTheWholeStackAgainWithoutTheCache) {
  ScriptedPipeline pipeline;
  pipeline.renderBuffer.ring().frameNumber = 4;
  pipeline.renderBuffer.ring().internalCache = false;
  EXPECT_TRUE(pipeline.run(2, true));
  EXPECT_THAT(pipeline.runtime().runs, ElementsAre(Pair(-1, 4)));  // a first below 0 is the runtime's to judge
}

// ---- the wait

TEST(Producer, WaitsInStepsUntilTheFrameIsThere) {
  ScriptedPipeline pipeline;
  pipeline.runtime().answer = ScriptedRuntime::Answer::ReadyLater;
  pipeline.readyAfterPauses = 3;
  EXPECT_TRUE(pipeline.run(1, false));
  EXPECT_THAT(pipeline.pauses,
              ElementsAre(std::chrono::milliseconds(5), std::chrono::milliseconds(5), std::chrono::milliseconds(5)));
}

TEST(Producer, GivesUpAFrameThatNeverComes) {
  ScriptedPipeline pipeline;
  pipeline.runtime().answer = ScriptedRuntime::Answer::Never;
  EXPECT_FALSE(pipeline.run(1, false));
  EXPECT_EQ(pipeline.pauses.size(), 1001U);
}

TEST(Producer, LeavesTheSkipWordAloneWhenTheRuntimeHasNothingToDo) {
  ScriptedPipeline pipeline;
  pipeline.runtime().answer = ScriptedRuntime::Answer::Refused;
  EXPECT_TRUE(pipeline.run(1, false));
  EXPECT_THAT(pipeline.pauses, IsEmpty());
}

// ---- the stack

class StackedProducer : public testing::Test {
 protected:
  StackedProducer() {
    CanvasRing &ring = pipeline.renderBuffer.ring();
    ring.frameNumber = 10;
    ring.framesPerCanvas = 2;
    ring.canvasIndex = 3;
    ring.canvasOffset = 500;
    ring.canvasFrames.fill(1);
  }

  ScriptedPipeline pipeline;
};

TEST_F(StackedProducer, RestartsAtAGroupThatHoldsTheStackOfTheCursor) {
  // A pause decodes nothing: the restart waits for playback.
  EXPECT_FALSE(pipeline.run(24, false));
  const CanvasRing &ring = pipeline.renderBuffer.ring();
  EXPECT_TRUE(ring.canvasRestart);
  EXPECT_EQ(ring.canvasIndex, 0);
  EXPECT_EQ(ring.canvasOffset, 0);
  for (const Relaxed<int> &count : ring.canvasFrames) EXPECT_EQ(count, 0);
  EXPECT_EQ(pipeline.track().lastFrameId(), 14);  // 24 - 10 + 1 = 15, down to a multiple of 2
  EXPECT_THAT(pipeline.runtime().runs, IsEmpty());

  for (int i = 0; i < 5; ++i) EXPECT_TRUE(pipeline.run(24, true));
  EXPECT_FALSE(pipeline.run(24, true));  // the cursor stands on the position itself
  EXPECT_FALSE(pipeline.run(25, true));  // and 24, 25 are complete at 26 only
  EXPECT_TRUE(pipeline.run(26, true));
  EXPECT_THAT(pipeline.runtime().runs,
              ElementsAre(Pair(14, 2), Pair(16, 2), Pair(18, 2), Pair(20, 2), Pair(22, 2), Pair(24, 2)));
}

TEST_F(StackedProducer, StartsALiveStackAtTheCursor) {
  pipeline.source().driverParam.sourceKind = static_cast<int>(lidar::SourceKind::Live);
  EXPECT_FALSE(pipeline.run(24, true));
  EXPECT_EQ(pipeline.track().lastFrameId(), 24);
  EXPECT_TRUE(pipeline.run(26, true));
  EXPECT_THAT(pipeline.runtime().runs, ElementsAre(Pair(24, 2)));
}

TEST_F(StackedProducer, ARequestedResetRestartsOnceAndIsTaken) {
  pipeline.run(24, true);
  pipeline.renderBuffer.ring().canvasRestart = false;
  pipeline.renderBuffer.flow().cacheResetRequested = true;
  pipeline.run(40, true);
  EXPECT_TRUE(pipeline.renderBuffer.ring().canvasRestart);
  EXPECT_FALSE(pipeline.renderBuffer.flow().cacheResetRequested);
  pipeline.renderBuffer.ring().canvasRestart = false;
  pipeline.run(40, true);
  EXPECT_FALSE(pipeline.renderBuffer.ring().canvasRestart);
}

TEST_F(StackedProducer, RestartsEachTimePlaybackBegins) {
  pipeline.run(24, true);
  pipeline.run(24, false);
  pipeline.renderBuffer.ring().canvasRestart = false;
  pipeline.run(50, true);
  EXPECT_TRUE(pipeline.renderBuffer.ring().canvasRestart);
  EXPECT_THAT(pipeline.runtime().runs.back(), Pair(40, 2));
}

TEST_F(StackedProducer, AJumpBackInAPauseWaitsForPlayback) {
  pipeline.run(24, true);
  pipeline.runtime().runs.clear();
  EXPECT_FALSE(pipeline.run(6, false));
  EXPECT_FALSE(pipeline.run(6, false));
  EXPECT_EQ(pipeline.track().lastFrameId(), 0);
  EXPECT_THAT(pipeline.runtime().runs, IsEmpty());
  EXPECT_TRUE(pipeline.run(6, true));
  EXPECT_THAT(pipeline.runtime().runs, ElementsAre(Pair(0, 2)));
}

TEST_F(StackedProducer, AGroupAheadOfTheCursorIsDecodedOnce) {
  pipeline.renderBuffer.ring().framesPerCanvas = 5;
  for (const int cursor : {1, 2, 3, 4, 5, 9, 10}) pipeline.run(cursor, true);
  EXPECT_THAT(pipeline.runtime().runs, ElementsAre(Pair(0, 5), Pair(5, 5)));
  pipeline.run(7, true);
  EXPECT_THAT(pipeline.runtime().runs.back(), Pair(0, 5)) << "going back begins anew";
}

TEST_F(StackedProducer, SteppingInAPauseTakesCompleteGroups) {
  for (int i = 0; i < 5; ++i) pipeline.run(24, true);  // the position is 24
  pipeline.runtime().runs.clear();
  EXPECT_FALSE(pipeline.run(25, false));
  EXPECT_TRUE(pipeline.run(26, false));
  EXPECT_THAT(pipeline.runtime().runs, ElementsAre(Pair(24, 2)));
}

TEST_F(StackedProducer, JumpsToTheCursorWhenItFallsTooFarBehind) {
  struct Case {
    int cursor;
    int position;
  };
  // After the group that starts at 24 the position is 26.
  for (const Case &c : {Case{26 + 30, 26}, Case{26 + 31, 26 + 31}}) {
    pipeline.run(24, true);
    pipeline.track().setLastFrameId(24);
    EXPECT_TRUE(pipeline.run(c.cursor, true));
    EXPECT_EQ(pipeline.track().lastFrameId(), c.position) << "cursor " << c.cursor;
  }
}

TEST_F(StackedProducer, ARefusedGroupGoesOnFromTheCursor) {
  pipeline.runtime().answer = ScriptedRuntime::Answer::Refused;
  EXPECT_FALSE(pipeline.run(24, true));
  EXPECT_EQ(pipeline.track().lastFrameId(), 24);
}

// ---- image-signal processing

class ImageSignalProducer : public testing::Test {
 protected:
  ImageSignalProducer() : engine(new ScriptedEngine) { pipeline.source().ispEngine = engine; }

  ScriptedPipeline pipeline;
  ScriptedEngine *engine;  // owned by the source
};

TEST_F(ImageSignalProducer, AnEngineThatIsOffTakesNoPart) {
  engine->enabled = false;
  EXPECT_TRUE(pipeline.run(3, true));
  EXPECT_THAT(engine->pulls, IsEmpty());
  EXPECT_THAT(pipeline.runtime().runs, ElementsAre(Pair(3, 1)));
}

TEST_F(ImageSignalProducer, PullsTheNewestWhilePlayingAndShowsWhatItGot) {
  engine->displayed = 7;
  pipeline.runtime().frames = 100;
  EXPECT_TRUE(pipeline.run(30, true));
  EXPECT_THAT(engine->pulls, ElementsAre("latest"));
  EXPECT_EQ(pipeline.clip.frameID(), 8);
  EXPECT_EQ(pipeline.track().lastFrameId(), 8);
  EXPECT_THAT(pipeline.runtime().runs, IsEmpty());
  engine->rawMode = true;
  pipeline.run(30, true);
  EXPECT_EQ(engine->pulls.back(), "next");
}

TEST_F(ImageSignalProducer, ShowsNoFrameBehindTheLastOfTheCapture) {
  pipeline.source().beginSeconds = 0.0;
  pipeline.source().endSeconds = 1.0;
  pipeline.runtime().frames = 9;
  pipeline.clip.follow(pipeline.source());
  engine->displayed = 20;
  pipeline.run(8, true);
  EXPECT_EQ(pipeline.clip.frameID(), 8);
  EXPECT_EQ(pipeline.track().lastFrameId(), 21);
}

TEST_F(ImageSignalProducer, APauseAsksForTheFrameUnderTheCursorOnce) {
  EXPECT_TRUE(pipeline.run(12, false));
  EXPECT_FALSE(pipeline.run(12, false));
  engine->RequestForcePull();
  EXPECT_TRUE(pipeline.run(12, false));
  EXPECT_THAT(engine->pulls, ElementsAre("12 within 5000", "12 within 5000"));
}

TEST_F(ImageSignalProducer, APullWithoutPointsIsNoNews) {
  engine->pointsOfPull = 0;
  EXPECT_FALSE(pipeline.run(12, false));
  engine->delivers = false;
  EXPECT_FALSE(pipeline.run(13, true));
  engine->delivers = true;
  EXPECT_FALSE(pipeline.run(-1, true));
  EXPECT_EQ(pipeline.track().lastFrameId(), -1);
}

// The same step against the runtime's own engine: frames pushed as the decoder would, shown in their order.
TEST(ImageSignalStep, ShowsWhatTheFrameQueueHolds) {
  ScriptedPipeline pipeline;
  auto *queue = new lidar::FrameQueueEngine;  // owned by the source
  pipeline.source().ispEngine = queue;
  pipeline.runtime().frames = 100;
  queue->setEnabled(true);
  for (const int id : {3, 4}) {
    lidar::QueuedFrame frame;
    frame.sequence = id;
    frame.points.resize(static_cast<std::size_t>(10 + id));
    ASSERT_TRUE(queue->push(std::move(frame)));
  }
  EXPECT_TRUE(pipeline.run(4, true));
  EXPECT_EQ(pipeline.source().pointCount, 14);
  EXPECT_EQ(pipeline.clip.frameID(), 4);
  EXPECT_EQ(pipeline.track().lastFrameId(), 4);
  EXPECT_FALSE(pipeline.run(4, true)) << "nothing new is queued";

  queue->ClearAll(0);
  queue->setFrameRequester([queue](std::int64_t sequence) {
    lidar::QueuedFrame frame;
    frame.sequence = sequence;
    frame.points.resize(7);
    queue->push(std::move(frame));
  });
  EXPECT_TRUE(pipeline.run(9, false)) << "a pause has the frame under the cursor made";
  EXPECT_EQ(pipeline.source().pointCount, 7);
  EXPECT_EQ(pipeline.clip.frameID(), 9);
  EXPECT_THAT(pipeline.runtime().runs, IsEmpty());
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
