#include "host/core/timeline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <utility>
#include <vector>

#include "tests/host/fake_pipeline.h"

namespace tarvo::skarnvisor::test {
namespace {

using namespace std::chrono_literals;

/// A track whose pipeline takes `busyTurns` questions to finish what it was asked to show.
class ScriptedTrack : public TimelineTrack {
 public:
  ScriptedTrack(double beginSeconds, Ticks span, int frameCount) {
    clip.fill(timeFromSeconds(beginSeconds), span, frameCount);
  }
  [[nodiscard]] bool isKnown() const override { return known; }
  [[nodiscard]] TimePoint begin() const override { return clip.begin(); }
  [[nodiscard]] TimePoint end() const override { return clip.end(); }
  [[nodiscard]] const ClipFrames *frames() const override {
    return byFrame && frameIndex.count() > 0 ? &frameIndex : nullptr;
  }
  [[nodiscard]] bool isLive() const override { return live; }
  [[nodiscard]] bool isBusy() const override { return busyFor > 0 && busyFor-- > 0; }
  void show(TimePoint cursor) override {
    shown.push_back(frameIndex.indexAt(cursor));
    cursors.push_back(cursor);
    busyFor = busyTurns;
  }
  void setPlaying(bool on) override { playing = on; }

  FakeClip clip;
  ClipFrames frameIndex{&clip};
  std::vector<int> shown;
  std::vector<TimePoint> cursors;
  bool known = true;
  bool byFrame = true;
  bool live = false;
  bool playing = false;
  int busyTurns = 0;
  mutable int busyFor = 0;
};

constexpr Ticks tenthOfSecond{1'000'000};

std::vector<int> upTo(int count, int from = 0) {
  std::vector<int> numbers(static_cast<std::size_t>(count - from));
  std::iota(numbers.begin(), numbers.end(), from);
  return numbers;
}

class TimelineTest : public testing::Test {
 protected:
  /// Lets `seconds` of the clock pass in turns of `turn`.
  void pass(std::chrono::milliseconds duration, std::chrono::milliseconds turn = 4ms) {
    for (auto gone = 0ms; gone < duration; gone += turn) {
      now += turn;
      timeline.advance();
    }
  }

  PlayClock::Moment now{};
  Timeline timeline{nullptr, [this] { return now; }};
};

TEST_F(TimelineTest, ANewTrackIsShownAtItsFirstFrame) {
  ScriptedTrack track(1'700'000'000.1234567, tenthOfSecond, 10);
  timeline.addTrack(&track);
  EXPECT_EQ(track.shown, std::vector<int>{0});
  EXPECT_EQ(timeline.frame(), 0);
  EXPECT_EQ(timeline.frameCount(), 10);
}

TEST_F(TimelineTest, ATrackWithoutExtentOrIndexIsPlacedWhenItGetsThem) {
  ScriptedTrack track(1000.0, tenthOfSecond, 10);
  track.known = false;
  track.byFrame = false;
  timeline.addTrack(&track);
  EXPECT_TRUE(track.shown.empty());
  track.known = true;
  timeline.updateExtent();
  ASSERT_EQ(track.shown.size(), 1U);
  track.byFrame = true;
  timeline.updateExtent();
  timeline.updateExtent();
  EXPECT_EQ(track.shown.size(), 2U) << "once more with the index, and that's it";
}

TEST_F(TimelineTest, StepsGoFromFrameToFrameAndStopAtTheEnds) {
  ScriptedTrack track(1'700'000'000.7654321, Ticks(333'333), 5);
  timeline.addTrack(&track);
  for (int i = 0; i < 6; ++i) timeline.stepFrames(1);
  for (int i = 0; i < 6; ++i) timeline.stepFrames(-1);
  EXPECT_EQ(track.shown, (std::vector<int>{0, 1, 2, 3, 4, 4, 4, 3, 2, 1, 0, 0, 0}));
  track.shown.clear();
  timeline.last();
  timeline.first();
  timeline.seekFrame(3);
  timeline.seekFrame(99);
  timeline.stepFrames(-2);
  timeline.seekSeconds(1e30);
  EXPECT_EQ(track.shown, (std::vector<int>{4, 0, 3, 4, 2, 4}));
}

TEST_F(TimelineTest, PlayingShowsEveryFrameOnceAtAnySpeedTheMachineHolds) {
  for (const double speed : {0.1, 1.0, 3.7, 10.0}) {
    ScriptedTrack track(1'700'000'000.0, tenthOfSecond, 40);
    timeline.setSpeed(speed);
    timeline.addTrack(&track);
    timeline.first();
    track.shown.clear();
    timeline.play();
    EXPECT_TRUE(track.playing);
    const auto whole = std::chrono::milliseconds(static_cast<int>(4000 / speed));
    pass(whole / 2);
    const auto half = static_cast<double>(track.shown.size());
    EXPECT_NEAR(half, 20.0, 1.5) << "the speed is held at " << speed;
    pass(whole);
    EXPECT_EQ(track.shown, upTo(40, 1)) << speed;
    EXPECT_FALSE(timeline.isPlaying()) << "it ends at the end";
    EXPECT_FALSE(track.playing);
    timeline.removeTrack(&track);
  }
}

TEST_F(TimelineTest, AHiccupIsMadeUpForAndOnASlowMachineTheNewestFrameWins) {
  ScriptedTrack track(1000.0, tenthOfSecond, 40);
  timeline.addTrack(&track);
  track.shown.clear();
  timeline.play();
  pass(1000ms);
  pass(200ms, 200ms);  // one long turn: two frames behind
  pass(800ms);
  EXPECT_EQ(track.shown, upTo(21, 1));
  EXPECT_EQ(timeline.skippedFrames(), 0);
  track.busyTurns = 50;  // 200 ms a frame now
  pass(1800ms);
  EXPECT_TRUE(std::is_sorted(track.shown.begin(), track.shown.end(), std::less_equal<>())) << "none is shown twice";
  EXPECT_GE(timeline.frame(), 34) << "the speed is held";
  EXPECT_EQ(timeline.skippedFrames(), timeline.frame() - static_cast<int>(track.shown.size()));
  EXPECT_GT(timeline.skippedFrames(), 3);
}

TEST_F(TimelineTest, AFollowedTrackLeavesFramesOutOnlyWhenTheMachineCannotHoldThem) {
  ScriptedTrack track(1000.0, tenthOfSecond, 2);
  track.live = true;
  timeline.addTrack(&track);
  pass(8ms);
  track.shown.clear();
  track.clip.fill(timeFromSeconds(1000.0), tenthOfSecond, 4);  // two at once
  timeline.updateExtent();
  pass(16ms);
  EXPECT_EQ(track.shown, (std::vector<int>{2, 3}));
  EXPECT_EQ(timeline.skippedFrames(), 0);
  track.clip.fill(timeFromSeconds(1000.0), tenthOfSecond, 20);
  timeline.updateExtent();
  pass(16ms);
  EXPECT_EQ(track.shown, (std::vector<int>{2, 3, 19}));
  EXPECT_EQ(timeline.skippedFrames(), 15);
  timeline.removeTrack(&track);
  EXPECT_EQ(timeline.skippedFrames(), 0) << "they were of that source";
}

TEST_F(TimelineTest, LoopStartsOverAndPlayAtTheEndToo) {
  ScriptedTrack track(1000.0, tenthOfSecond, 4);
  timeline.addTrack(&track);
  track.shown.clear();
  now += 1s;  // well after the index grew
  timeline.setLoop(true);
  timeline.play();
  pass(780ms);
  EXPECT_EQ(track.shown, (std::vector<int>{1, 2, 3, 0, 1, 2, 3}));
  timeline.setLoop(false);
  pass(400ms);
  EXPECT_FALSE(timeline.isPlaying());
  timeline.play();
  EXPECT_EQ(timeline.frame(), 0);
}

TEST_F(TimelineTest, PlayingGoesOnWhileTheIndexStillGrows) {
  ScriptedTrack track(1000.0, tenthOfSecond, 3);
  timeline.addTrack(&track);
  track.shown.clear();
  timeline.play();
  for (int frames = 4; frames <= 12; ++frames) {
    pass(300ms);  // slower than it plays
    track.clip.fill(timeFromSeconds(1000.0), tenthOfSecond, frames);
    timeline.updateExtent();
  }
  pass(120ms);
  EXPECT_TRUE(timeline.isPlaying());
  EXPECT_EQ(track.shown, upTo(12, 1));
}

TEST_F(TimelineTest, TwoTracksEachShowEveryFrameAndTheGapBetweenCapturesIsSkipped) {
  ScriptedTrack one(1000.0, tenthOfSecond, 10);
  ScriptedTrack two(1000.05, Ticks(700'000), 10);
  ScriptedTrack later(90'000.0, tenthOfSecond, 5);
  timeline.addTrack(&later);
  timeline.addTrack(&two);
  timeline.addTrack(&one);
  timeline.first();
  timeline.play();
  pass(2500ms);
  for (ScriptedTrack *track : {&one, &two, &later}) {
    std::vector<int> distinct = track->shown;
    distinct.erase(std::unique(distinct.begin(), distinct.end()), distinct.end());
    const int count = track->clip.frameCount();
    ASSERT_GE(distinct.size(), static_cast<std::size_t>(count));
    EXPECT_EQ(std::vector<int>(distinct.end() - count, distinct.end()), upTo(count));
  }
  EXPECT_FALSE(timeline.isPlaying());
}

TEST_F(TimelineTest, ATrackPlayedByTimeFollowsTheClock) {
  ScriptedTrack track(1000.0, tenthOfSecond, 11);
  track.byFrame = false;
  timeline.addTrack(&track);
  timeline.setSpeed(2.0);
  timeline.play();
  now += 300ms;
  timeline.advance();
  EXPECT_NEAR(timeline.cursorSeconds(), 1000.6, 1e-4);
  now += 5s;
  timeline.advance();
  EXPECT_NEAR(timeline.cursorSeconds(), 1001.0, 1e-4);
  EXPECT_FALSE(timeline.isPlaying());
}

TEST_F(TimelineTest, ALiveTrackIsFollowedUntilTheUserGoesElsewhere) {
  ScriptedTrack track(1000.0, tenthOfSecond, 2);
  track.live = true;
  timeline.addTrack(&track);
  EXPECT_TRUE(timeline.follow());
  EXPECT_TRUE(timeline.isPlaying());
  for (int frames = 3; frames < 6; ++frames) {
    track.clip.fill(timeFromSeconds(1000.0), tenthOfSecond, frames);
    timeline.updateExtent();
    pass(8ms);
    EXPECT_EQ(timeline.cursor(), track.end());
  }
  const std::size_t asked = track.cursors.size();
  pass(100ms);
  EXPECT_EQ(track.cursors.size(), asked) << "nothing new, nothing to run";
  timeline.stepFrames(-1);
  EXPECT_FALSE(timeline.follow());
  EXPECT_FALSE(timeline.isPlaying());
  EXPECT_EQ(track.shown.back(), 3);
}

TEST_F(TimelineTest, AnEmptyTimelineTakesEveryCommand) {
  timeline.play();
  timeline.stepFrames(1);
  timeline.first();
  timeline.last();
  timeline.seekFrame(4);
  timeline.seekSeconds(4.0);
  timeline.advance();
  EXPECT_FALSE(timeline.isPlaying());
  EXPECT_EQ(timeline.frame(), -1);
  for (const auto &[asked, taken] : {std::pair{0.0, 0.1}, {99.0, 10.0}, {std::nan(""), 10.0}, {2.5, 2.5}}) {
    timeline.setSpeed(asked);
    EXPECT_EQ(timeline.speed(), taken);
  }
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
