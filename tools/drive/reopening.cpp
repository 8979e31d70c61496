// Opens and closes a capture over and over. Fails when threads or file handles are left behind; prints the memory.
#include <malloc.h>

#include <cstdio>

#include "tests/window/window_fixture.h"
#include "tools/drive/options.h"

namespace tarvo::skarnvisor::test {
namespace {

/// What the process holds: resident kilobytes, threads, file handles.
struct Holdings {
  long kilobytes = 0;
  int threads = 0;
  int handles = 0;

  static Holdings now() {
    malloc_trim(0);
    Holdings held;
    QFile status("/proc/self/status");
    if (status.open(QIODevice::ReadOnly)) {
      for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:")) held.kilobytes = line.mid(6).simplified().split(' ').first().toLong();
        if (line.startsWith("Threads:")) held.threads = line.mid(8).trimmed().toInt();
      }
    }
    held.handles = QDir("/proc/self/fd").entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size();
    return held;
  }
};

using Reopening = WindowTest;

TEST_F(Reopening, LeavesNothingBehind) {
  const int rounds = drive::options().rounds;
  Holdings first;
  for (int round = 0; round <= rounds; ++round) {
    ASSERT_NO_FATAL_FAILURE(open());
    timeline().setPlaying(true);
    QTest::qWait(30);
    viewer().close();
    ASSERT_TRUE(eventually([this] { return !viewer().isReady(); }));
    if (round % 20 != 0) continue;
    QTest::qWait(1000);  // threads of the pool end, deferred deletions are done
    const Holdings held = Holdings::now();
    std::printf(
        "round %d: %ld kB, %d threads, %d handles, %d objects\n", round, held.kilobytes, held.threads, held.handles,
        static_cast<int>(window()->findChildren<QObject *>().size() + viewer().findChildren<QObject *>().size()));
    if (round == 20) first = held;
    if (round < 40) continue;
    EXPECT_LE(held.threads, first.threads);
    EXPECT_LE(held.handles, first.handles);
  }
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
