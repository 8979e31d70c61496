// How long the GUI thread is held at a time while a capture of big frames plays and settings change, and the memory of
// a deep stack in the window. Measures, not tests: they print.
#include <QElapsedTimer>
#include <algorithm>
#include <cstdio>

#include "tests/window/window_fixture.h"
#include "tools/drive/options.h"
#include "tools/drive/processor_wait.h"

namespace tarvo::skarnvisor::test {
namespace {

/// Milliseconds between the turns of an event loop that a timer wakes every millisecond, and what of them is left
/// without the wait for a processor that another program or thread has.
class TurnClock : public QObject {
 public:
  TurnClock() {
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] {
      const double waited = waitedForProcessor();
      if (m_clock.isValid()) {
        m_turns.push_back(static_cast<double>(m_clock.nsecsElapsed()) / 1e6);
        m_held.push_back(m_turns.back() - (waited - m_waited));
      }
      m_waited = waited;
      m_clock.start();
    });
    m_timer.start(1);
  }

  void print(const char *what) {
    std::printf("%s\n", what);
    print("  as it was", m_turns);
    print("  without the wait for a processor", m_held);
    begin();
  }
  /// Forgets the turns so far.
  void begin() {
    m_turns.clear();
    m_held.clear();
    m_clock.invalidate();
  }

 private:
  static void print(const char *what, std::vector<double> turns) {
    std::sort(turns.begin(), turns.end());
    const auto at = [&](double share) {
      return turns[static_cast<std::size_t>(share * static_cast<double>(turns.size() - 1))];
    };
    const auto longer = std::count_if(turns.begin(), turns.end(), [](double turn) { return turn > 16; });
    std::printf("%s: %zu turns, median %.2f ms, 99 of 100 below %.2f ms, worst %.2f ms, %td over 16 ms\n", what,
                turns.size(), at(0.5), at(0.99), at(1), longer);
  }

  QTimer m_timer;
  QElapsedTimer m_clock;
  double m_waited = 0;
  std::vector<double> m_turns;
  std::vector<double> m_held;
};

class Responsiveness : public WindowTest {
 protected:
  /// Vertex arrays with points.
  int filled() {
    const auto &canvases = viewer().scene().canvases;
    return static_cast<int>(std::count_if(canvases.begin(), canvases.end(), [](auto &each) { return each.count > 0; }));
  }
  static int seconds() { return drive::options().seconds; }

  static constexpr int stackFrames = 150;  ///< of 200,000 points, in 30 arrays
  void openDeep() {
    QProcess::execute(QStringLiteral(SKARNVISOR_SIM),
                      {"--channels", "128", "--columns", "1563", "--frames", "156", "--out", "deep.pcap"});
    viewer().open("deep.pcap");
    ASSERT_TRUE(eventually([this] { return viewer().pointsShown() > 0 && lastFrame() == 155; }));
  }
  void fillStack(const std::function<void()> &meanwhile) {
    bool accepted = false;
    QMetaObject::invokeMethod(viewer().buffer(), "setFrameNumber", Q_RETURN_ARG(bool, accepted),
                              Q_ARG(int, stackFrames));
    ASSERT_TRUE(accepted);
    ASSERT_TRUE(eventually([this] { return viewer().scene().canvases.size() == 30; }));
    // Played, it fills with frames of its own pace.
    timeline().setLoop(true);
    timeline().setPlaying(true);
    ASSERT_TRUE(eventually([&] {
      meanwhile();
      return filled() == 30;
    })) << filled()
        << " groups";
    timeline().setPlaying(false);
  }

  /// Serves events until the time is over, calling `change` five times a second.
  static void play(int milliseconds, const std::function<void(int)> &change) {
    QEventLoop loop;
    int turn = 0;
    QTimer changes;
    QObject::connect(&changes, &QTimer::timeout, [&] { change(turn++); });
    changes.start(200);
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
  }
};

TEST_F(Responsiveness, OfFramesOfAMillionPoints) {
  QProcess::execute(QStringLiteral(SKARNVISOR_SIM),
                    {"--channels", "256", "--columns", "3906", "--frames", "20", "--out", "million.pcap"});
  QElapsedTimer clock;
  clock.start();
  viewer().open("million.pcap");
  ASSERT_TRUE(eventually([this] { return viewer().pointsShown() > 0; })) << viewer().error().toStdString();
  std::printf("open to first picture: %lld ms, %s\n", static_cast<long long>(clock.elapsed()),
              qPrintable(viewer().countText()));
  ASSERT_TRUE(eventually([this] { return lastFrame() == 19; }));
  timeline().setLoop(true);
  timeline().setPlaying(true);
  TurnClock turns;
  play(seconds() * 1000, [](int) {});
  turns.print("playing");
  // Drawing a frame holds the thread too, for as long as the renderer takes; nothing is drawn of a hidden window.
  window()->hide();
  play(seconds() * 1000, [](int) {});
  turns.print("playing, nothing drawn");
  window()->show();
  // A window that is shown again waits for its first picture.
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window(), deadlineMs));
  turns.begin();
  play(seconds() * 1000, [this](int turn) {
    viewer().colors()->setMode(turn % static_cast<int>(viewer().colorTitles().size()));
    viewer().setPointSize(1 + turn % 4);
  });
  turns.print("playing while settings change");
}

TEST_F(Responsiveness, OfATableOfAMillionRows) {
  QProcess::execute(QStringLiteral(SKARNVISOR_SIM),
                    {"--channels", "256", "--columns", "7812", "--frames", "2", "--out", "table.pcap"});
  viewer().open("table.pcap");
  ASSERT_TRUE(eventually([this] { return viewer().pointsShown() > 0 && lastFrame() == 1; }));
  QMetaObject::invokeMethod(window(), "showTable", Q_ARG(QVariant, true));
  TurnClock turns;
  ASSERT_NO_FATAL_FAILURE(click("allPoints"));
  play(2000, [](int) {});
  std::printf("%s\n", qPrintable(textOf("rowCountText")));
  turns.print("listing all points");
  auto *const panel = window()->findChild<QObject *>("spreadsheet");
  for (int round = 0; round < 3; ++round) {
    QElapsedTimer held;
    held.start();
    QMetaObject::invokeMethod(panel, "sortBy", Q_ARG(QVariant, 5));
    std::printf("sort %d: the call itself took %.1f ms\n", round, static_cast<double>(held.nsecsElapsed()) / 1e6);
    play(1500, [](int) {});
  }
  turns.print("sorting three times");
  QQuickItem *const table = item("pointTable");
  play(seconds() * 1000, [table](int turn) { table->setProperty("contentY", 1e4 + turn * 1234.5 * 22); });
  turns.print("jumping through the table");
  QMetaObject::invokeMethod(window(), "showTable", Q_ARG(QVariant, false));
}

/// Memory of the process that no file stands behind, bytes.
double ownBytes() {
  QFile file(QStringLiteral("/proc/self/status"));
  if (!file.open(QIODevice::ReadOnly)) return 0;
  const QList<QByteArray> lines = file.readAll().split('\n');
  for (const QByteArray &line : lines) {
    if (line.startsWith("RssAnon:")) return line.mid(8).trimmed().split(' ').value(0).toDouble() * 1024;
  }
  return 0;
}

/// A renderer in software has its copy of the vertices in this process too: 12 bytes a point, which are taken off.
TEST_F(Responsiveness, OfAStackOf150FramesTheMemory) {
  constexpr double budgetBytes = 104;
  constexpr double cardBytes = 12;
  const double empty = ownBytes();
  ASSERT_NO_FATAL_FAILURE(openDeep());
  const double points = 1.0 * stackFrames * (viewer().scene().canvases[0].count);
  const double before = ownBytes();
  double most = 0;
  ASSERT_NO_FATAL_FAILURE(fillStack([&] { most = std::max(most, ownBytes()); }));
  // The vertices are let go when they are drawn, which takes a renderer in software its time.
  EXPECT_TRUE(eventually([this] {
    const auto &canvases = viewer().scene().canvases;
    return std::all_of(canvases.begin(), canvases.end(), [](auto &each) { return each.bytes.isEmpty(); });
  }));
  const double budget = points * budgetBytes;
  const double taken = ownBytes() - points * cardBytes - before;
  std::printf(
      "150 frames of %.0f points, %s: budget %.0f MB; the stack takes %.0f MB without the renderer's %.0f MB, %.3f of "
      "the budget; the process %.0f MB with nothing open, %.0f MB with one frame, at most %.0f MB while the stack "
      "filled\n",
      points / stackFrames, qPrintable(viewer().countText()), budget / 1e6, taken / 1e6, points * cardBytes / 1e6,
      taken / budget, empty / 1e6, before / 1e6, most / 1e6);
}

/// Nothing is drawn meanwhile: a renderer in software needs both processors for this.
TEST_F(Responsiveness, OfAStackOf150FramesThatIsSelectedAndCut) {
  ASSERT_NO_FATAL_FAILURE(openDeep());
  ASSERT_NO_FATAL_FAILURE(fillStack([] {}));
  window()->hide();
  play(3000, [](int) {});
  auto *const bar = window()->findChild<QObject *>("selectionBar");
  ASSERT_NE(bar, nullptr);
  QMatrix4x4 box;  // 10 m to every side
  box.scale(0.1F);
  TurnClock turns;
  const auto measure = [&](const char *what, const std::function<void()> &call) {
    play(300, [](int) {});
    QElapsedTimer held;
    held.start();
    call();
    std::printf("%s: the call itself took %.1f ms\n", what, static_cast<double>(held.nsecsElapsed()) / 1e6);
    play(seconds() * 1000, [](int) {});
    std::printf("%s\n", qPrintable(viewer().countText()));
    turns.print(what);
  };
  measure("selecting", [&] { QMetaObject::invokeMethod(window(), "select", Q_ARG(QVariant, box)); });
  for (const char *function : {"cut", "undo", "cut", "reverse", "clear"})
    measure(function, [&] { QMetaObject::invokeMethod(bar, function); });
  measure("colouring", [this] { viewer().colors()->setMode(viewer().colors()->mode() + 1); });
  measure("filtering", [this] { viewer().refilter(); });
  measure("clearing the selection", [&] { QMetaObject::invokeMethod(window(), "clearSelection"); });
  window()->show();
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
