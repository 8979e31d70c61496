// Stacks of frames of a simulator capture, asked for and read as the canvas does it: by the names of the plug-in's
// properties and operations.
#include <gtest/gtest.h>

#include <QSignalSpy>

#include "host/core/host_core.h"
#include "tests/support/test_environment.h"
#include "tests/support/wait_for.h"
#include "tools/sim/simulator.h"

namespace tarvo::skarnvisor::test {
namespace {

constexpr int frames = 200;
constexpr int framePoints = 16 * 180;

class StackEndToEnd : public testing::Test {
 protected:
  void SetUp() override {
    lidar::sim::Options options;
    options.channels = 16;
    options.columns = 180;
    options.frames = frames;
    options.out = (processFolder() + "/stack.pcap").toStdString();
    lidar::sim::run(options);
    QString error;
    ASSERT_TRUE(host.loadPlugin(SKARNVISOR_PLUGIN, &error)) << error.toStdString();
    host.openCapture(QString::fromStdString(options.out));
    ASSERT_TRUE(waitFor([this] { return !host.pipelines().isEmpty(); }));
    pipeline = host.pipelines().constFirst();
    buffer = pipeline->renderBufferObject();
    ASSERT_TRUE(waitFor([this] { return pipeline->clipObject()->property("frameCount").toInt() == frames; }));
    settle();
    finished = std::make_unique<QSignalSpy>(buffer, SIGNAL(frameAllocationFinished(bool, int, QString)));
  }

  void settle() {
    ASSERT_TRUE(waitFor([this] { return !pipeline->isBusy(); }));
  }
  bool setFrameNumber(int n) {
    bool accepted = false;
    QMetaObject::invokeMethod(buffer, "setFrameNumber", Q_RETURN_ARG(bool, accepted), Q_ARG(int, n));
    return accepted;
  }
  /// Frames that the stack got.
  int stack(int n) {
    finished->clear();
    EXPECT_TRUE(setFrameNumber(n));
    EXPECT_TRUE(waitFor([this] { return finished->count() == 1; }));
    settle();
    return finished->value(0).value(1).toInt();
  }
  int points(int canvas) {
    int count = 0;
    int countAfter = 0;
    QByteArray bytes;
    // A group may enter in between while it plays.
    do {
      QMetaObject::invokeMethod(buffer, "primitiveCountGet", Q_RETURN_ARG(int, count), Q_ARG(int, canvas));
      QMetaObject::invokeMethod(buffer, "vertexGet", Q_RETURN_ARG(QByteArray, bytes), Q_ARG(int, canvas));
      QMetaObject::invokeMethod(buffer, "primitiveCountGet", Q_RETURN_ARG(int, countAfter), Q_ARG(int, canvas));
    } while (count != countAfter);
    EXPECT_EQ(bytes.size(), count * 12);
    return count;
  }
  int filled(int groupPoints) {
    int canvases = 0;
    for (int i = 0; i < 30; ++i)
      if (points(i) == groupPoints) ++canvases;
    return canvases;
  }
  int newest() {
    int index = -1;
    QMetaObject::invokeMethod(buffer, "getIndexUseNow", Q_RETURN_ARG(int, index));
    return index;
  }
  /// Plays until a group has come in, pauses, and steps on to `frame`.
  void playTo(int from, int frame) {
    Timeline &timeline = *host.timeline();
    timeline.seekFrame(from);
    settle();
    timeline.setSpeed(10);
    timeline.play();
    ASSERT_TRUE(waitFor([this] { return newest() > 0; }));
    timeline.pause();
    settle();
    for (int next = timeline.frame() + 1; next <= frame; ++next) {
      timeline.seekFrame(next);
      settle();
    }
  }

  HostCore host;
  Pipeline *pipeline = nullptr;
  QObject *buffer = nullptr;
  std::unique_ptr<QSignalSpy> finished;
};

TEST_F(StackEndToEnd, EveryDepthFillsItsRing) {
  struct Case {
    int asked, depth, canvases, group, full;
  };
  for (const Case &c : {Case{20, 20, 4, 5, 4}, Case{150, 150, 30, 5, 30}, Case{151, 155, 30, 6, 26}}) {
    ASSERT_EQ(stack(c.asked), c.depth);
    EXPECT_EQ(buffer->property("frameNumber").toInt(), c.depth);
    EXPECT_EQ(buffer->property("stackFrameNum").toInt(), c.canvases);
    EXPECT_EQ(points(0) + points(1), 0) << "an empty ring until playing begins";
    playTo(0, frames - 1);
    EXPECT_EQ(filled(c.group * framePoints), c.full) << c.asked;
    EXPECT_EQ(filled(0), 30 - c.full) << c.asked;
    EXPECT_EQ(buffer->property("primitiveCount").toInt(), c.group * framePoints);
  }
  EXPECT_TRUE(setFrameNumber(1));
  settle();
  EXPECT_EQ(buffer->property("stackFrameNum").toInt(), 1);
  EXPECT_EQ(points(0), framePoints) << "the frame under the cursor again";
}

TEST_F(StackEndToEnd, SeekingLoopingAndChangingDepthWhilePlaying) {
  stack(20);
  Timeline &timeline = *host.timeline();
  timeline.setLoop(true);
  timeline.setSpeed(10);
  timeline.seekFrame(frames - 20);
  timeline.play();
  ASSERT_TRUE(waitFor([&] { return timeline.frame() < 100; })) << "the capture begins again";
  ASSERT_TRUE(waitFor([&] { return timeline.frame() > 30 && filled(5 * framePoints) == 4; }));
  timeline.seekFrame(120);
  timeline.seekFrame(60);
  for (const int depth : {40, 150, 20, 300, 10}) stack(depth);
  ASSERT_TRUE(waitFor([&] { return filled(5 * framePoints) == 2; })) << "groups still come in";

  timeline.setLoop(false);
  timeline.seekFrame(frames - 2);
  ASSERT_TRUE(waitFor([&] { return !timeline.isPlaying(); }));
  settle();
  EXPECT_EQ(stack(30), 30) << "at the end of the capture";
  EXPECT_EQ(filled(0), 30);
}

TEST_F(StackEndToEnd, ClosingDuringAnAllocationEnds) {
  ASSERT_TRUE(setFrameNumber(150));
  host.closePipeline(pipeline);
  EXPECT_TRUE(waitFor([this] { return host.pipelines().isEmpty(); }));
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
