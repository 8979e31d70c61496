// Opening, playing and closing in the real window.
#include <QMimeData>
#include <QSettings>
#include <QStandardPaths>

#include "tests/window/window_fixture.h"

namespace tarvo::skarnvisor::test {
namespace {

class WindowSources : public WindowTest {
 protected:
  void dropOnCanvas(const QString &path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    const QPoint at = canvas().mapToScene({200, 200}).toPoint();
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window(), &enter);
    QDragMoveEvent move(at, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window(), &move);
    QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window(), &drop);
  }
};

TEST_F(WindowSources, ADroppedCaptureOpensAndIsRememberedUnderItsOwnName) {
  const QString path = capture();
  dropOnCanvas(path);
  ASSERT_TRUE(eventually([this] { return viewer().pointsShown() > 0; })) << viewer().error().toStdString();
  EXPECT_EQ(window()->title(), "Straße 街.pcap - Skarnvisor");
  start();
  EXPECT_EQ(viewer().preferences().recent().value(0), path);
  EXPECT_TRUE(eventually([&] { return item("canvas") != nullptr && !viewer().isReady(); }));
}

TEST_F(WindowSources, AFileThatIsNoCaptureIsToldInTheStatusLineAndTheNextOneOpens) {
  QFile broken("broken.pcap");
  ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
  broken.write("nothing of a capture");
  broken.close();
  viewer().open("broken.pcap");
  EXPECT_TRUE(eventually([this] { return textOf("statusLabel").contains("neither pcap nor pcapng"); }))
      << textOf("statusLabel").toStdString();
  open();
  EXPECT_EQ(viewer().error(), QString());
}

TEST_F(WindowSources, AMissingPlugInIsToldInTheStatusLine) {
  start("nowhere/libplugin.so");
  EXPECT_TRUE(eventually([this] { return textOf("statusLabel").contains("plug-in nowhere/libplugin.so is missing"); }));
}

TEST_F(WindowSources, KeysPlayStepAndSeek) {
  ASSERT_NO_FATAL_FAILURE(open());
  press(Qt::Key_Right);
  EXPECT_EQ(timeline().frame(), 1);
  press(Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(timeline().frame(), lastFrame());
  EXPECT_TRUE(eventually([this] { return textOf("frameText") == QString("frame %1 / %1").arg(lastFrame()); }));
  press(Qt::Key_Left);
  EXPECT_EQ(timeline().frame(), lastFrame() - 1);
  press(Qt::Key_Home, Qt::ControlModifier);
  press(Qt::Key_Space);
  EXPECT_TRUE(timeline().isPlaying());
  EXPECT_TRUE(eventually([this] { return timeline().frame() >= 4; }));
  press(Qt::Key_Space);
  EXPECT_FALSE(timeline().isPlaying());
}

TEST_F(WindowSources, ClosingWhilePlayingLeavesNothingBehind) {
  ASSERT_NO_FATAL_FAILURE(open());
  timeline().setLoop(true);
  press(Qt::Key_Space);
  ASSERT_TRUE(eventually([this] { return timeline().frame() >= 2; }));
  press(Qt::Key_W, Qt::ControlModifier);
  EXPECT_TRUE(eventually([this] { return !viewer().isReady() && viewer().pointsShown() == 0; }));
  ASSERT_NO_FATAL_FAILURE(open());
  timeline().setPlaying(true);
  // The window goes with the capture open and playing.
}

TEST_F(WindowSources, ACutHoldsTheFramesThatWereAskedFor) {
  ASSERT_NO_FATAL_FAILURE(open());
  viewer().jobs().cut(viewer().clip(), QUrl::fromLocalFile(QDir::current().filePath("cut.pcap")), 3, 7);
  EXPECT_TRUE(viewer().jobs().isRunning());
  ASSERT_TRUE(eventually([this] { return !viewer().jobs().isRunning(); }));
  EXPECT_EQ(viewer().error(), QString());
  viewer().open("cut.pcap");
  EXPECT_TRUE(eventually([this] { return lastFrame() == 4; })) << lastFrame();
}

TEST_F(WindowSources, ThemeAndPanelsAreRemembered) {
  viewer().preferences().setValue("panels/channels", false);
  start();
  ASSERT_NO_FATAL_FAILURE(open());
  EXPECT_LT(qGray(picture().pixel(2, 2)), 64);
  QMetaObject::invokeMethod(window(), "setTheme", Q_ARG(QVariant, false));
  ASSERT_NO_FATAL_FAILURE(click("section-channels"));
  EXPECT_TRUE(eventually([this] { return item("channelTable") != nullptr; }));
  EXPECT_TRUE(eventually([this] { return qGray(picture().pixel(2, 2)) > 200; }));
  start();
  open();
  EXPECT_TRUE(eventually([this] { return qGray(picture().pixel(2, 2)) > 200; }));
  EXPECT_TRUE(eventually([this] { return item("channelTable") != nullptr; }));
  QMetaObject::invokeMethod(window(), "setTheme", Q_ARG(QVariant, true));
  click("section-channels");
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
