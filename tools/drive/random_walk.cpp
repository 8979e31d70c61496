// A random walk through the window: keys, clicks on whatever is there, drags, files good and bad, while a capture
// plays. Fails when a turn of the event loop takes too long or anything is complained of.
#include <QElapsedTimer>
#include <QMessageBox>
#include <cstdio>
#include <random>

#include "tests/app/program_fixture.h"
#include "tests/window/window_fixture.h"
#include "tools/drive/options.h"
#include "tools/drive/processor_wait.h"

namespace tarvo::skarnvisor::test {
namespace {

/// The longest time between two turns of the event loop, without the wait for a processor that others have.
class TurnWatch {
 public:
  TurnWatch() {
    begin();
    QObject::connect(&m_timer, &QTimer::timeout, [this] {
      m_longest = longest();
      turn();
    });
    m_timer.start(5);
  }

  void begin() {
    m_longest = 0;
    turn();
  }
  /// Milliseconds, since it began.
  double longest() const {
    const double now = static_cast<double>(m_clock.nsecsElapsed()) / 1e6;
    return std::max(m_longest, now - (waitedForProcessor() - m_waited));
  }

 private:
  void turn() {
    m_clock.restart();
    m_waited = waitedForProcessor();
  }

  QTimer m_timer;
  QElapsedTimer m_clock;
  double m_waited = 0;
  double m_longest = 0;
};

class RandomWalk : public WindowTest {
 protected:
  void SetUp() override {
    makeSources();
    for (const char *panel : {"filter", "echoes", "channels", "monitor", "faults", "calibration", "export", "log"})
      app::Preferences().setValue(QString("panels/") + panel, below(2) == 0);
    watchDialogs();
    start();
  }

  static void sim(const QStringList &arguments) { QProcess::execute(QStringLiteral(SKARNVISOR_SIM), arguments); }

  void makeSources() {
    const QStringList small{"--channels", "16", "--columns", "240", "--frames", "40"};
    for (const char *type : {"KR2", "WG9", "OrnikaZC", "NBQ_COLOR_V3", "VD2", "NBQ_TU_410"}) {
      const QString file = QString(type) + ".pcap";
      sim(small +
          QStringList{"--type", type, "--echoes", "2", "--telemetry", "--faults", "--imu", "--overlay", "--out", file});
      m_sources << file;
    }
    sim(small + QStringList{"--loss", "0.05", "--reorder", "0.05", "--calibration", "none", "--out", "lossy.pcap"});
    QFile whole("KR2.pcap");
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    const QByteArray bytes = whole.readAll();
    writeFile("half.pcap", bytes.left(bytes.size() / 2 - 7));
    writeFile("broken.pcap", "nothing of a capture");
    writeFile("empty.pcap", {});
    writeFile("broken.pcd", "# .PCD v.7\nFIELDS x y\n");
    QDir().mkdir("points");
    for (const char *name : {"points/0.ply", "points/1.ply", "points/2.ply"})
      writeFile(name,
                "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\nproperty float z\n"
                "property float intensity\nproperty float confidence\nend_header\n"
                "1 2 3 40 1\n4 5 1 90 1\n7 -3 2 200 1\n");
    m_sources << "lossy.pcap"
              << "half.pcap"
              << "broken.pcap"
              << "empty.pcap"
              << "broken.pcd"
              << "points"
              << "points/2.ply"
              << "nowhere.pcap"
              << "udp://:24681"
              << "udp://127.0.0.1:24681"
              << "udp://:24682";
    m_stream.start(QStringLiteral(SKARNVISOR_SIM), {"--stream", "127.0.0.1:24681", "--seconds", "0", "--channels", "16",
                                                    "--columns", "120", "--telemetry"});
  }

  void TearDown() override {
    m_stream.kill();
    m_stream.waitForFinished();
    WindowTest::TearDown();
  }

  int below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }
  template <typename Container>
  auto anyOf(const Container &all) {
    return all[static_cast<typename Container::size_type>(below(static_cast<int>(all.size())))];
  }
  QPoint anywhere() { return {below(window()->width()), below(window()->height())}; }
  QString anySource() { return anyOf(m_sources); }
  void say(const QString &what) {
    std::printf("%s\n", qPrintable(what));
    std::fflush(stdout);
  }

  static void gather(QQuickItem *from, QVector<QQuickItem *> &controls) {
    if (!from->isVisible() || !from->isEnabled()) return;
    const bool control = from->inherits("QQuickControl") || from->inherits("QQuickMouseArea") ||
                         from->inherits("QQuickTextInput") || from->inherits("QQuickTextField");
    if (control && from->width() > 0 && from->height() > 0) controls << from;
    for (QQuickItem *child : from->childItems()) gather(child, controls);
  }

  void clickAControl() {
    QVector<QQuickItem *> controls;
    gather(window()->contentItem(), controls);
    if (controls.isEmpty()) return;
    const QQuickItem *control = anyOf(controls);
    const QPointF at{control->width() * below(100) / 100.0, control->height() * below(100) / 100.0};
    say(QString("click %1 %2 '%3'")
            .arg(control->metaObject()->className(), control->objectName(), control->property("text").toString()));
    const QPoint place = control->mapToScene(at).toPoint();
    QTest::mouseClick(window(), below(12) == 0 ? Qt::RightButton : Qt::LeftButton, anyModifiers(), place);
    const QQuickItem *focused = window()->activeFocusItem();
    if (focused && (focused->inherits("QQuickTextInput") || focused->inherits("QQuickTextField"))) typeSomething();
  }

  Qt::KeyboardModifiers anyModifiers() {
    return below(6) != 0
               ? Qt::NoModifier
               : anyOf(QVector<Qt::KeyboardModifier>{Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier});
  }

  void typeSomething() {
    const QString text =
        anyOf(QStringList{"0", "1", "3", "20", "-1", "12.5", "255", "99999999999", "", "1e3", "-", "24681"});
    say("type " + text);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_Delete);
    for (const QChar character : text) QTest::keyClick(window(), character.toLatin1());
    press(below(4) == 0 ? Qt::Key_Tab : below(6) == 0 ? Qt::Key_Escape : Qt::Key_Return);
  }

  void pressAKey() {
    static const QVector<int> keys{
        Qt::Key_Space,  Qt::Key_Space,  Qt::Key_Left, Qt::Key_Right, Qt::Key_Up,  Qt::Key_Down,    Qt::Key_Home,
        Qt::Key_End,    Qt::Key_1,      Qt::Key_2,    Qt::Key_3,     Qt::Key_4,   Qt::Key_5,       Qt::Key_6,
        Qt::Key_F,      Qt::Key_P,      Qt::Key_S,    Qt::Key_R,     Qt::Key_Tab, Qt::Key_Tab,     Qt::Key_Backtab,
        Qt::Key_Plus,   Qt::Key_Minus,  Qt::Key_F1,   Qt::Key_F9,    Qt::Key_F10, Qt::Key_F11,     Qt::Key_Escape,
        Qt::Key_Escape, Qt::Key_Return, Qt::Key_O,    Qt::Key_L,     Qt::Key_W,   Qt::Key_Question};
    const int key = anyOf(keys);
    const Qt::KeyboardModifiers modifiers = anyModifiers();
    say(QString("press %1 + %2").arg(static_cast<int>(modifiers), 0, 16).arg(key, 0, 16));
    press(key, modifiers);
  }

  void dragSomewhere() {
    const auto button =
        anyOf(QVector<Qt::MouseButton>{Qt::LeftButton, Qt::LeftButton, Qt::RightButton, Qt::MiddleButton});
    QPoint at = anywhere();
    const QPoint end = anywhere();
    say(QString("drag %1,%2 to %3,%4").arg(at.x()).arg(at.y()).arg(end.x()).arg(end.y()));
    QTest::mousePress(window(), button, anyModifiers(), at);
    for (int part = 1; part <= 4; ++part) QTest::mouseMove(window(), at + (end - at) * part / 4);
    QTest::mouseRelease(window(), button, {}, end);
  }

  void turnWheel() {
    const QPoint at = anywhere();
    QWheelEvent wheel(at, window()->mapToGlobal(at), {}, {0, below(2) == 0 ? 120 : -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(window(), &wheel);
  }

  void openSomething() {
    const QString source = anySource();
    say("open " + source);
    if (below(2) == 0) return viewer().open(source);
    dropOnCanvas(QDir::current().filePath(source));
  }

  /// Dialogs may run a loop within the event that opened them, questions within the key that answered a dialog: each
  /// look at them is a timer of its own.
  void watchDialogs() {
    QTimer::singleShot(150, &m_context, [this] {
      watchDialogs();
      if (QWidget *dialog = QApplication::activeModalWidget()) answer(*dialog);
    });
  }

  void answer(QWidget &dialog) {
    if (auto *name = dialog.findChild<QLineEdit *>(); name != nullptr && below(3) != 0) {
      const QString path = below(2) == 0 ? anySource() : QString("written-%1").arg(below(6));
      say("answer " + path);
      QApplication::clipboard()->setText(QDir::current().filePath(path));
      name->selectAll();
      QTest::keyClick(name, Qt::Key_V, Qt::ControlModifier);
      QTest::keyClick(name, Qt::Key_Return);
    } else {
      say(QString("dismiss ") + dialog.metaObject()->className());
      QTest::keyClick(&dialog, qobject_cast<QMessageBox *>(&dialog) ? Qt::Key_Return : Qt::Key_Escape);
    }
  }

  void step() {
    if (QApplication::activeModalWidget() != nullptr) return;
    const int draw = below(100);
    if (draw < 50) return clickAControl();
    if (draw < 70) return pressAKey();
    if (draw < 80) return dragSomewhere();
    if (draw < 86) return turnWheel();
    if (draw < 89) return QTest::mouseDClick(window(), Qt::LeftButton, {}, anywhere());
    if (draw < 94) return openSomething();
    if (draw < 96) {
      say("resize");
      return window()->resize(500 + below(900), 400 + below(500));
    }
    if (draw < 98) {
      timeline().setLoop(true);
      return timeline().setPlaying(true);
    }
    if (draw < 99) return viewer().close();
    say("another window");
    start();
    m_watch.begin();  // the making of a window is no turn of one
  }

  TurnWatch m_watch;
  QStringList m_sources;
  QObject m_context;
  QProcess m_stream;
  std::mt19937 m_random{drive::options().seed};
};

TEST_F(RandomWalk, MeetsNoHangAndNoComplaint) {
  constexpr int longestTurnMs = 2000;
  QElapsedTimer clock;
  clock.start();
  double worst = 0;
  while (clock.elapsed() < drive::options().seconds * 1000LL) {
    m_watch.begin();
    ASSERT_NO_FATAL_FAILURE(step());
    QTest::qWait(below(60));
    const double longest = m_watch.longest();
    worst = std::max(worst, longest);
    if (longest > 300) say(QString("-- held for %1 ms").arg(longest, 0, 'f', 0));
    EXPECT_LT(longest, longestTurnMs);
    if (const QString complaint = takeComplaints(); !complaint.isEmpty()) ADD_FAILURE() << complaint.toStdString();
    if (!window()->isVisible()) start();
  }
  std::printf("longest turn %.0f ms\n", worst);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
