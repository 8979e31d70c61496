// Opening, playing and closing in the real window.
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QThreadPool>
#include <atomic>
#include <future>

#include "app/window/named_files.h"
#include "contracts/host/clip_buffer.h"
#include "contracts/host/track_buffer.h"
#include "tests/app/program_fixture.h"
#include "tests/window/window_fixture.h"

namespace tarvo::skarnvisor::test {
namespace {

class WindowSources : public WindowTest {
 protected:
  void changeTheme() {
    ASSERT_NO_FATAL_FAILURE(clickText("&View"));
    clickText("Light theme");
  }
};

TEST_F(WindowSources, TheFileDialogOpensAPathThatIsPastedIntoIt) {
  press(Qt::Key_O, Qt::ControlModifier);
  ASSERT_NO_FATAL_FAILURE(answerDialog(capture()));
  EXPECT_TRUE(eventually([this] { return viewer().pointsShown() > 0; })) << viewer().error().toStdString();
}

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
  writeFile("broken.pcap", "nothing of a capture");
  dropOnCanvas(QDir::current().filePath("broken.pcap"));
  EXPECT_TRUE(eventually([this] { return textOf("statusLabel").contains("neither pcap nor pcapng"); }))
      << textOf("statusLabel").toStdString();
  open();
  EXPECT_EQ(viewer().error(), QString());
}

TEST_F(WindowSources, AMissingPlugInIsToldInTheStatusLine) {
  start("nowhere/libplugin.so");
  EXPECT_TRUE(eventually([this] { return textOf("statusLabel").contains("plug-in nowhere/libplugin.so is missing"); }));
}

TEST_F(WindowSources, KeysAndTheTrackPlayStepAndSeek) {
  ASSERT_NO_FATAL_FAILURE(open());
  press(Qt::Key_Right);
  EXPECT_EQ(timeline().frame(), 1);
  press(Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(timeline().frame(), lastFrame());
  EXPECT_TRUE(eventually([this] { return textOf("frameText") == QString("frame %1 / %1").arg(lastFrame()); }));
  press(Qt::Key_Left);
  EXPECT_EQ(timeline().frame(), lastFrame() - 1);
  ASSERT_NO_FATAL_FAILURE(click("cursor"));
  EXPECT_NEAR(timeline().frame(), lastFrame() / 2, 1);
  ASSERT_NO_FATAL_FAILURE(click("byTime"));
  press(Qt::Key_Home, Qt::ControlModifier);
  EXPECT_TRUE(eventually([this] { return textOf("frameText") == QString("frame 0 / %1").arg(lastFrame()); }))
      << textOf("frameText").toStdString();
  ASSERT_NO_FATAL_FAILURE(click("byTime"));
  press(Qt::Key_Home, Qt::ControlModifier);
  press(Qt::Key_Space);
  EXPECT_TRUE(timeline().isPlaying());
  EXPECT_TRUE(eventually([this] { return timeline().frame() >= 4; }));
  press(Qt::Key_Space);
  EXPECT_FALSE(timeline().isPlaying());
}

TEST_F(WindowSources, ClosingWhilePlayingLeavesNothingBehind) {
  viewer().preferences().setValue("panels/monitor", true);
  start();
  ASSERT_NO_FATAL_FAILURE(open());
  ASSERT_TRUE(eventually([this] { return viewer().buffer()->property("monitorViewEnabled").toBool(); }));
  clickText("Loop");
  press(Qt::Key_Space);
  ASSERT_TRUE(eventually([this] { return timeline().frame() >= 2; }));
  // What works on the source in the background ends before the source is stopped, and what waits is not begun.
  const auto *const clip = qobject_cast<ClipBuffer *>(viewer().clip());
  ASSERT_TRUE(clip != nullptr && clip->pcapActive());
  std::atomic<bool> begun{false};
  std::atomic<bool> stoppedMeanwhile{false};
  std::atomic<bool> begunLate{false};
  viewer().bufferCalls().run([&] {
    begun = true;
    QElapsedTimer clock;
    clock.start();
    while (!stoppedMeanwhile && clock.elapsed() < 200) stoppedMeanwhile = !clip->pcapActive();
  });
  viewer().bufferCalls().run([&] { begunLate = true; });
  ASSERT_TRUE(eventually([&] { return begun.load(); }));
  // A panel that goes with the source asks nothing of it any more.
  QPointer<QObject> buffer = viewer().buffer();
  bool asked = false;
  QObject::connect(&viewer(), &app::Viewer::captureChanged, buffer,
                   [&] { asked = asked || viewer().bufferCalls().isRunning(); });
  press(Qt::Key_W, Qt::ControlModifier);
  EXPECT_TRUE(eventually([&] { return buffer.isNull() && viewer().pointsShown() == 0; }));
  EXPECT_FALSE(stoppedMeanwhile);
  EXPECT_FALSE(begunLate);
  EXPECT_FALSE(asked);
  viewer().preferences().setValue("panels/monitor", false);
  ASSERT_NO_FATAL_FAILURE(open());
  press(Qt::Key_Space);
  EXPECT_TRUE(timeline().isPlaying());
  // The window goes with the capture open and playing.
}

TEST_F(WindowSources, ACutHoldsTheFramesThatWereAskedFor) {
  ASSERT_NO_FATAL_FAILURE(open());
  timeline().seekFrame(3);
  ASSERT_NO_FATAL_FAILURE(click("cutButton"));
  // The dialog begins with the frame at the cursor; who enters the last one has done with it.
  ASSERT_NO_FATAL_FAILURE(type("cutEnd", "7"));
  ASSERT_NO_FATAL_FAILURE(answerDialog(QDir::current().filePath("cut")));
  ASSERT_TRUE(eventually([] { return QFile::exists("cut.pcap"); })) << viewer().error().toStdString();
  ASSERT_TRUE(eventually([this] { return !viewer().jobs().isRunning(); }));
  EXPECT_EQ(viewer().error(), QString());
  viewer().open("cut.pcap");
  EXPECT_TRUE(eventually([this] { return lastFrame() == 4; })) << lastFrame();
}

TEST_F(WindowSources, ACancelledCutAndACancelledStackLeaveThingsAsTheyWere) {
  ASSERT_NO_FATAL_FAILURE(open());
  QFile old("old.pcap");
  ASSERT_TRUE(old.open(QIODevice::WriteOnly));
  old.write("old");
  old.close();
  // With no thread free neither can be over before it is cancelled.
  QThreadPool &pool = *QThreadPool::globalInstance();
  std::promise<void> freed;
  const auto holdPool = [&] {
    freed = {};
    const std::shared_future<void> held(freed.get_future());
    for (int i = 0; i < pool.maxThreadCount(); ++i) pool.start(QRunnable::create([held] { held.wait(); }));
  };
  holdPool();
  viewer().jobs().cut(viewer().clip(), QUrl::fromLocalFile(QFileInfo(old).absoluteFilePath()), 0, lastFrame());
  viewer().jobs().cancel();
  freed.set_value();
  ASSERT_TRUE(eventually([this] { return !viewer().jobs().isRunning(); }));
  EXPECT_EQ(viewer().notice(), "The cut was cancelled");
  ASSERT_TRUE(old.open(QIODevice::ReadOnly));
  EXPECT_EQ(old.readAll(), "old");

  ASSERT_NO_FATAL_FAILURE(type("stackDepth", "20"));
  ASSERT_TRUE(eventually([this] { return viewer().buffer()->property("frameNumber").toInt() == 20; }));
  auto *const editor = root("stackEditor").value<QObject *>();
  holdPool();
  QMetaObject::invokeMethod(editor, "ask", Q_ARG(QVariant, 25));
  EXPECT_TRUE(eventually([&] { return editor->property("busy").toBool(); }));
  QMetaObject::invokeMethod(editor, "cancel");
  freed.set_value();
  EXPECT_TRUE(eventually([this] { return viewer().notice() == "Cancelled: still 20 frames"; }));
  EXPECT_EQ(viewer().error(), QString()) << "what was wished is no error";
  EXPECT_TRUE(eventually([this] { return textOf("stackDepth") == "20"; }));
}

TEST_F(WindowSources, TheOpenSourceIsKeptAndACancelledOpeningIsNoError) {
  ASSERT_NO_FATAL_FAILURE(open());
  const QString path = QFileInfo(viewer().source()).absoluteFilePath();
  ASSERT_TRUE(QFile::exists(path)) << path.toStdString();
  EXPECT_TRUE(viewer().isOpenSource(QUrl::fromLocalFile(QFileInfo(path).path() + "/./" + QFileInfo(path).fileName())));
  EXPECT_FALSE(viewer().isOpenSource(QUrl::fromLocalFile(path + ".csv")));

  viewer().open("udp://127.0.0.1:39871");
  ASSERT_TRUE(eventually([this] { return viewer().isOpening(); }));
  EXPECT_TRUE(viewer().openingText().contains("39871")) << viewer().openingText().toStdString();
  viewer().cancelOpening();
  ASSERT_TRUE(eventually([this] { return !viewer().isOpening(); }));
  EXPECT_EQ(viewer().notice(), "The opening was cancelled");
  EXPECT_EQ(viewer().error(), QString());
}

// What the plug-in calls its files must be what the program has.
TEST_F(WindowSources, EachFileThatASourceNamesIsLoaded) {
  const auto named = [this] {
    return QStringList{viewer().renderFile().fileName(), viewer().trackBodyFile().fileName(),
                       viewer().trackPointFile().fileName()};
  };
  ASSERT_NO_FATAL_FAILURE(open());
  EXPECT_EQ(named(), (QStringList{"SDK.qml", "DefaultFileByFrameTrackBody.qml", "DefaultTrackPointXYZI.qml"}));
  QFile cloud("cloud 1.pcd");
  ASSERT_TRUE(cloud.open(QIODevice::WriteOnly));
  cloud.write(
      "VERSION .7\nFIELDS x y z intensity\nSIZE 4 4 4 4\nTYPE F F F F\nCOUNT 1 1 1 1\nWIDTH 2\nHEIGHT 1\n"
      "VIEWPOINT 0 0 0 1 0 0 0\nPOINTS 2\nDATA ascii\n1 2 3 4\n2 3 4 5\n");
  cloud.close();
  viewer().open(cloud.fileName());
  ASSERT_TRUE(eventually([this] { return viewer().pointsShown() == 2; })) << viewer().error().toStdString();
  EXPECT_EQ(named(), (QStringList{"Ply.qml", "DefaultFileByFrameTrackBody.qml", "DefaultTrackPointXYZI.qml"}));

  // Every file loads, that of a live source too, which no test opens here.
  QQmlEngine &engine = *qmlEngine(window());
  for (const char *name : {"SDK.qml", "Ply.qml", "DefaultFileByFrameTrackBody.qml", "DefaultNetTrackBody.qml",
                           "DefaultTrackPointXYZI.qml"}) {
    QQmlComponent component(&engine, app::programFile(name));
    const std::unique_ptr<QObject> made(component.create(qmlContext(item("trackBody"))));
    EXPECT_NE(made, nullptr) << component.errorString().toStdString();
  }
  TrackBuffer track;
  track.setTrackBody("Unknown.qml");
  EXPECT_EQ(app::namedFiles(nullptr, &track).trackBody.fileName(), "TrackLane.qml");
}

TEST_F(WindowSources, ThemeAndPanelsAreRemembered) {
  viewer().preferences().setValue("panels/channels", false);
  viewer().preferences().setValue("pointSize", 3.5);
  start();
  EXPECT_EQ(viewer().pointSize(), 3.5);
  viewer().preferences().setValue("pointSize", 2.0);
  ASSERT_NO_FATAL_FAILURE(open());
  EXPECT_LT(qGray(picture().pixel(2, 2)), 64);
  ASSERT_NO_FATAL_FAILURE(changeTheme());
  ASSERT_NO_FATAL_FAILURE(click("section-channels"));
  EXPECT_TRUE(eventually([this] { return item("channelTable") != nullptr; }));
  EXPECT_TRUE(eventually([this] { return qGray(picture().pixel(2, 2)) > 200; }));
  start();
  open();
  EXPECT_TRUE(eventually([this] { return qGray(picture().pixel(2, 2)) > 200; }));
  EXPECT_TRUE(eventually([this] { return item("channelTable") != nullptr; }));
  ASSERT_NO_FATAL_FAILURE(changeTheme());
  click("section-channels");
}

TEST_F(WindowSources, ALiveSourceIsFollowedPausedAndRecorded) {
  const quint16 port = freePort();
  auto stream = std::make_unique<Stream>(port);
  press(Qt::Key_L, Qt::ControlModifier);
  ASSERT_NO_FATAL_FAILURE(type("livePort", QString::number(port)));
  ASSERT_TRUE(eventually([this] { return viewer().isLive() && viewer().pointsShown() > 0; }))
      << viewer().error().toStdString();
  const auto moves = [this] {
    QSignalSpy pictures(&viewer(), &app::Viewer::pictureChanged);
    const double before = timeline().cursorSeconds();
    QTest::qWait(700);
    return timeline().cursorSeconds() > before && !pictures.isEmpty();
  };
  EXPECT_TRUE(eventually(moves));
  press(Qt::Key_Space);
  EXPECT_FALSE(timeline().isPlaying());
  EXPECT_FALSE(moves()) << "paused";
  // Following goes on where the newest data are, not where it was paused.
  if (timeline().follow()) {
    ASSERT_NO_FATAL_FAILURE(click("follow"));
  }
  ASSERT_NO_FATAL_FAILURE(click("follow"));
  EXPECT_TRUE(timeline().isPlaying());
  EXPECT_TRUE(eventually(moves));
  EXPECT_LT(timeline().endSeconds() - timeline().cursorSeconds(), 1);

  const QString file = QDir::current().filePath("Aufnahme ü.pcap");
  // The dialog serves events within the click.
  QTimer::singleShot(0, window(), [&] { answerDialog(file); });
  ASSERT_NO_FATAL_FAILURE(click("recordButton"));
  ASSERT_TRUE(eventually([this] { return viewer().recordingText().contains(QRegularExpression("[1-9].* packets")); }))
      << viewer().error().toStdString();
  QTest::qWait(500);
  ASSERT_NO_FATAL_FAILURE(click("recordButton"));
  EXPECT_TRUE(eventually([this] { return !viewer().isRecording(); }));
  stream.reset();
  dropOnCanvas(file);
  EXPECT_TRUE(eventually([this] { return !viewer().isLive() && viewer().pointsShown() > 0 && lastFrame() >= 3; }))
      << viewer().error().toStdString();
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
