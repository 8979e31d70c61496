// The tools of the lidar in the real window: what they do to the points, and what their switches say.
#include <future>

#include "tests/window/window_fixture.h"

namespace tarvo::skarnvisor::test {
namespace {

class WindowTools : public WindowTest {
 protected:
  void SetUp() override {
    start();
    for (const char *panel : {"colors", "filter"}) viewer().preferences().setValue(QString("panels/") + panel, false);
    viewer().preferences().setValue("panels/tools", true);
    start();
  }

  /// A lidar of that type whose ranges scatter, so that many points pop out of their surroundings.
  void openScattered(const QString &type, const QStringList &more = {}) {
    const QString path = QDir::currentPath() + "/scattered " + type + ".pcap";
    QProcess::execute(QStringLiteral(SKARNVISOR_SIM),
                      QStringList{"--type", type, "--channels", "32", "--columns", "300", "--noise", "0.3", "--frames",
                                  "3", "--out", path} +
                          more);
    viewer().open(path);
    ASSERT_TRUE(
        eventually([&] { return viewer().lidarType() == type && viewer().pointsShown() > 0 && lastFrame() == 2; }));
  }
  bool isChecked(const QString &name) { return item(name) != nullptr && item(name)->property("checked").toBool(); }
};

TEST_F(WindowTools, AFilterOfTheDecoderTakesPointsOutAndKeepsItsNumbersUntilAnotherSourceOpens) {
  ASSERT_NO_FATAL_FAILURE(openScattered("VD8"));
  const int all = viewer().pointsShown();
  EXPECT_EQ(item("tool-popout-1"), nullptr) << "numbers of a tool that is off";
  // The switch stays as it was put while the buffer has not taken it up.
  std::promise<void> free;
  viewer().bufferCalls().run([held = free.get_future().share()] { held.wait(); });
  ASSERT_NO_FATAL_FAILURE(click("tool-popout"));
  EXPECT_TRUE(isChecked("tool-popout"));
  EXPECT_NE(item("tool-popout-1"), nullptr);
  free.set_value();
  ASSERT_TRUE(eventually([&] { return viewer().pointsShown() < all; })) << viewer().pointsShown();
  const int some = viewer().pointsShown();
  ASSERT_NO_FATAL_FAILURE(type("tool-popout-1", "2"));
  EXPECT_TRUE(eventually([&] { return viewer().pointsShown() > some; })) << viewer().pointsShown() << " of " << all;
  ASSERT_NO_FATAL_FAILURE(type("tool-popout-0", "99"));
  EXPECT_EQ(textOf("tool-popout-0"), "16") << "the limit";

  ASSERT_NO_FATAL_FAILURE(click("section-tools"));
  ASSERT_NO_FATAL_FAILURE(click("section-tools"));
  ASSERT_TRUE(eventually([this] { return isChecked("tool-popout") && textOf("tool-popout-1") == "2"; }));
  ASSERT_NO_FATAL_FAILURE(click("tool-popout-reset"));
  EXPECT_EQ(textOf("tool-popout-1"), "0.3");
  EXPECT_EQ(textOf("tool-popout-0"), "2");

  open();
  EXPECT_EQ(item("tool-popout"), nullptr) << "this lidar has no such filter";
  ASSERT_NO_FATAL_FAILURE(openScattered("VD8"));
  ASSERT_TRUE(eventually([this] { return item("tool-popout") != nullptr; }));
  EXPECT_FALSE(isChecked("tool-popout"));
  EXPECT_EQ(viewer().pointsShown(), all);
}

TEST_F(WindowTools, TheCoordinateTransformMovesThePointsAndWhatIsPickedOfThem) {
  ASSERT_NO_FATAL_FAILURE(openScattered("KR9"));
  ASSERT_NO_FATAL_FAILURE(click("tool-transform"));
  ASSERT_NO_FATAL_FAILURE(type("tool-transform-2", "4"));
  ASSERT_NO_FATAL_FAILURE(type("tool-transform-5", "90"));
  ASSERT_TRUE(eventually(
      [this] { return (viewer().scene().placement.map(QVector3D(1, 0, 0)) - QVector3D(0, 1, 4)).length() < 1e-4F; }));
  // Each point is drawn where its place is said to be, whatever lies before it.
  const auto drawn = [this] {
    const QImage image = picture();
    int sampled = 0;
    int seen = 0;
    viewer().cloud().forEachShown(17, [&](const app::VertexPoint &point) {
      const QPointF at = canvas().project({point.x, point.y, point.z});
      if (!QRectF(150, 60, image.width() - 400, image.height() - 120).contains(at)) return;
      ++sampled;
      seen += image.pixel(at.toPoint()) != image.pixel(2, 2) ? 1 : 0;
    });
    return sampled > 20 && seen > 0.9 * sampled;
  };
  EXPECT_TRUE(eventually(drawn));
}

TEST_F(WindowTools, LevelsOfTheCameraBitsAndEchoesReachTheBuffer) {
  for (const char *panel : {"colors", "echoes"}) viewer().preferences().setValue(QString("panels/") + panel, true);
  start();
  ASSERT_NO_FATAL_FAILURE(openScattered("NBQ_COLOR_V3", {"--overlay", "--echoes", "2"}));
  const auto holds = [this](const char *property, const QVariant &value) {
    return eventually([&] { return viewer().buffer()->property(property) == value; });
  };
  ASSERT_NO_FATAL_FAILURE(type("rgbMin", "12.5"));
  EXPECT_TRUE(holds("rgbMin", 12.5F));
  EXPECT_TRUE(holds("rgbAutoScale", false)) << "by hand now";
  EXPECT_TRUE(eventually([this] { return !isChecked("rgbAutoScale") && textOf("rgbMin") == "12.5"; }));
  ASSERT_NO_FATAL_FAILURE(click("rgbAutoScale"));
  EXPECT_TRUE(holds("rgbAutoScale", true));
  ASSERT_TRUE(eventually([this] { return item("rgbAutoScaleHighPercent")->isEnabled(); }));
  ASSERT_NO_FATAL_FAILURE(type("rgbAutoScaleHighPercent", "90"));
  EXPECT_TRUE(holds("rgbAutoScaleHighPercent", 90.0F));
  for (const bool shown : {false, true}) {
    ASSERT_NO_FATAL_FAILURE(click("cameraCheck"));
    EXPECT_TRUE(eventually([&] { return (item("overlay") != nullptr) == shown; }));
  }
  // What the buffer has no name for is complained of.
  ASSERT_NO_FATAL_FAILURE(type("bitMask", "ff"));
  ASSERT_NO_FATAL_FAILURE(click("echo-Any"));
  EXPECT_TRUE(settled());
  for (const char *panel : {"colors", "echoes"}) viewer().preferences().setValue(QString("panels/") + panel, false);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
