// The tools of the lidar in the real window: what they do to the points, and what their switches say.
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

  /// A lidar whose ranges scatter, so that many points pop out of their surroundings.
  void openScattered() {
    const QString path = QDir::currentPath() + QStringLiteral("/scattered.pcap");
    QProcess::execute(QStringLiteral(SKARNVISOR_SIM), {"--type", "VD8", "--channels", "32", "--columns", "300",
                                                       "--noise", "0.3", "--frames", "3", "--out", path});
    viewer().open(path);
    ASSERT_TRUE(eventually([this] { return viewer().pointsShown() > 0 && lastFrame() == 2; }));
  }
  bool isChecked(const QString &name) { return item(name) != nullptr && item(name)->property("checked").toBool(); }
};

TEST_F(WindowTools, AFilterOfTheDecoderTakesPointsOutAndKeepsItsNumbersUntilAnotherSourceOpens) {
  ASSERT_NO_FATAL_FAILURE(openScattered());
  const int all = viewer().pointsShown();
  EXPECT_EQ(item("tool-popout-1"), nullptr) << "numbers of a tool that is off";
  ASSERT_NO_FATAL_FAILURE(click("tool-popout"));
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
  ASSERT_NO_FATAL_FAILURE(openScattered());
  ASSERT_TRUE(eventually([this] { return item("tool-popout") != nullptr; }));
  EXPECT_FALSE(isChecked("tool-popout"));
  EXPECT_EQ(viewer().pointsShown(), all);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
