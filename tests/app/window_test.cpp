#include <gtest/gtest.h>

#include <QImage>
#include <QStandardPaths>
#include <memory>
#include <set>

#include "tests/app/program_fixture.h"

namespace tarvo::skarnvisor::test {
namespace {

/// A display of the test's own, drawn in memory.
class WindowOnDisplay : public testing::Test {
 protected:
  void SetUp() override {
    const QString server = QStandardPaths::findExecutable("Xvfb");
    ASSERT_FALSE(server.isEmpty()) << "Xvfb is missing: scripts/setup.sh installs it";
    m_server.setReadChannel(QProcess::StandardOutput);
    m_server.start(server, {"-displayfd", "1", "-screen", "0", "1400x900x24", "-nolisten", "tcp"});
    while (!m_server.canReadLine() && m_server.waitForReadyRead(20000)) {
    }
    m_display = ":" + QString::fromLatin1(m_server.readLine()).trimmed();
    ASSERT_GT(m_display.size(), 1) << m_server.readAllStandardError().toStdString();
  }

  void TearDown() override {
    m_server.terminate();
    m_server.waitForFinished(5000);
  }

  QProcess m_server;
  QString m_display;
};

/// Pixels of the canvas, which lies between the tool bar and the time line, that are strongly coloured.
int colouredPixels(const QImage &window) {
  int count = 0;
  for (int y = 60; y < window.height() - 90; ++y) {
    for (int x = 0; x < window.width() - 120; ++x) {
      const QColor color(window.pixel(x, y));
      count += color.saturation() > 80 && color.value() > 80 ? 1 : 0;
    }
  }
  return count;
}

TEST_F(WindowOnDisplay, ShowsTheFirstFrameOfACapture) {
  makeCapture("window.pcap", {"--channels", "32", "--columns", "900", "--frames", "3"});
  const ProgramResult shown = runProgram(QStringLiteral(SKARNVISOR_PROGRAM),
                                         {"view", "window.pcap", "--shot", "window.png"}, {{"DISPLAY", m_display}});
  ASSERT_EQ(shown.exitCode, 0) << shown.err.toStdString();
  const QImage window("window.png");
  ASSERT_FALSE(window.isNull());
  EXPECT_GT(colouredPixels(window), 2000);
}

TEST_F(WindowOnDisplay, AFileThatCannotBeOpenedIsTold) {
  const ProgramResult shown = runProgram(QStringLiteral(SKARNVISOR_PROGRAM),
                                         {"view", "missing.pcap", "--shot", "never.png"}, {{"DISPLAY", m_display}});
  EXPECT_EQ(shown.exitCode, 1);
  EXPECT_TRUE(shown.err.contains("no such file")) << shown.err.toStdString();
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
