#include "app/window/canvas_feed.h"

#include <gtest/gtest.h>

#include <QObject>
#include <cmath>

#include "app/render/picking.h"
#include "tests/app/vertex_builder.h"

namespace tarvo::skarnvisor::app {
namespace {

/// A ring of vertex arrays that counts how often each is read.
class FakeStack : public QObject {
  Q_OBJECT
  Q_PROPERTY(int stackFrameNum MEMBER slots NOTIFY changed)

 public:
  explicit FakeStack(int count) : slots(count), points(count, 1), reads(count, 0) {}

  Q_INVOKABLE QByteArray vertexGet(int index) {
    ++reads[index];
    if (slotsSoon > 0) slots = slotsSoon;
    return test::vertex(1, 2, 3, 0).repeated(points[index]);
  }
  Q_INVOKABLE int primitiveCountGet(int index) { return points[index]; }
  Q_INVOKABLE int getIndexUseNow() { return current; }

  int slots;
  int slotsSoon = 0;  ///< the stack gets them while it is read
  QVector<int> points;
  QVector<int> reads;
  int current = 0;

 Q_SIGNALS:
  void changed();
};

TEST(CanvasFeed, ReadsOnlyTheSlotsThatWereWrittenSinceTheLastFrame) {
  FakeStack stack(5);
  const RenderView view(&stack);
  CanvasFeed feed;
  feed.readAll(view);
  struct Case {
    const char *what;
    int written;
    QVector<int> reads;
  };
  const Case cases[] = {{"the next slot", 1, {0, 1, 0, 0, 0}},
                        {"two frames between two looks", 3, {0, 0, 1, 1, 0}},
                        {"round the ring's end", 1, {1, 1, 0, 0, 1}},
                        {"the same slot again, as a repeated parse writes it", 1, {0, 1, 0, 0, 0}}};
  for (const Case &each : cases) {
    stack.reads.fill(0);
    stack.current = each.written;
    feed.readFrame(view);
    EXPECT_EQ(stack.reads, each.reads) << each.what;
  }
}

TEST(CanvasFeed, ASlotOfAnotherSizeAndAStackOfAnotherDepthAreReadAnew) {
  FakeStack stack(4);
  const RenderView view(&stack);
  CanvasFeed feed;
  feed.readAll(view);
  CanvasFeed::Picture picture = feed.handOver();
  const std::uint64_t before = picture.canvases[2].serial;
  stack.points[2] = 7;
  feed.readFrame(view);
  picture.follow(feed.handOver());
  EXPECT_GT(picture.canvases[2].serial, before);
  EXPECT_EQ(picture.counts().shown, 10U);
  // What was not read again keeps its bytes, until the graphics card has them; the counts stay.
  EXPECT_EQ(picture.canvases[1].bytes.size(), 12);
  picture.release(picture.canvases[2].serial - 1);
  EXPECT_TRUE(picture.canvases[1].bytes.isEmpty());
  EXPECT_EQ(picture.canvases[2].bytes.size(), 7 * 12);
  EXPECT_EQ(picture.counts().shown, 10U);
  stack.slots = 1;
  feed.readFrame(view);
  picture.follow(feed.handOver());
  EXPECT_EQ(picture.canvases.size(), 1U);
  EXPECT_EQ(picture.sample.size(), 1U);
}

TEST(CanvasFeed, AStackThatGrowsWhileItIsReadIsReadAsItBegan) {
  FakeStack stack(5);
  const RenderView view(&stack);
  stack.slots = 1;
  stack.slotsSoon = 5;
  CanvasFeed feed;
  feed.readAll(view);
  EXPECT_EQ(stack.reads, (QVector<int>{1, 0, 0, 0, 0}));
  feed.readFrame(view);
  EXPECT_EQ(feed.handOver().canvases.size(), 5U);
}

TEST(Picking, ABandHoldsWhatIsDrawnInItAndNothingBehindTheEye) {
  OrbitCamera camera;
  camera.setView("back", {});
  const QSizeF size(800, 600);
  for (const bool orthographic : {false, true}) {
    camera.setOrthographic(orthographic);
    const QMatrix4x4 matrix = camera.projectionMatrix(800.0F / 600) * camera.viewMatrix();
    const QRectF band(300, 200, 150, 120);
    const QMatrix4x4 selection = bandMatrix(matrix, size, band);
    int inside = 0;
    for (float y = -200; y < 200; y += 13) {
      for (float x = -60; x < 60; x += 7) {
        for (float z = -10; z < 20; z += 3) {
          const QVector4D at = matrix * QVector4D(x, y, z, 1);
          const QPointF pixel((0.5 + 0.5 * static_cast<double>(at.x() / at.w())) * size.width(),
                              (0.5 - 0.5 * static_cast<double>(at.y() / at.w())) * size.height());
          const bool drawn = at.w() > 0 && std::abs(at.z()) < at.w() && band.contains(pixel);
          const QVector4D to = selection * QVector4D(x, y, z, 1);
          const float w = std::abs(to.w());
          EXPECT_EQ(w > std::abs(to.x()) && w > std::abs(to.y()) && w > std::abs(to.z()), drawn);
          inside += drawn ? 1 : 0;
        }
      }
    }
    EXPECT_GT(inside, 10);
  }
}

TEST(Picking, TheNearestOfThePointsUnderTheCursorIsTaken) {
  OrbitCamera camera;
  camera.setView("back", {});
  const QMatrix4x4 matrix = camera.projectionMatrix(1) * camera.viewMatrix();
  const VertexCloud cloud({test::vertex(0, 40, 0, 5) + test::vertex(0, 20, 0, hiddenWord) + test::vertex(0, 30, 0, 6)});
  const QVector3D at = matrix.map(QVector3D(0, 30, 0));
  const QPointF pixel((0.5 + 0.5 * at.x()) * 500, (0.5 - 0.5 * at.y()) * 500);
  const auto point = pointUnder(cloud, matrix, {500, 500}, pixel, 8);
  ASSERT_TRUE(point);
  EXPECT_EQ(point->word, 6U);
  EXPECT_FALSE(pointUnder(cloud, matrix, {500, 500}, pixel + QPointF(60, 0), 8));
}

}  // namespace
}  // namespace tarvo::skarnvisor::app

#include "canvas_feed_test.moc"
