#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QThread>

#include "tests/app/program_fixture.h"

namespace tarvo::skarnvisor::test {
namespace {

const QStringList size{"--frames", "12", "--channels", "16", "--columns", "120"};

TEST(ProgramSources, ACutHoldsTheFramesThatWereAskedFor) {
  QDir().mkdir("Fahrt ü");
  makeCapture("Fahrt ü/whole.pcap", size + QStringList{"--loss", "0.02", "--reorder", "0.02"});
  struct Case {
    QStringList arguments;
    QString frames;
  };
  for (const Case &c : {Case{{"--frames", "3:7"}, "5"}, Case{{"--seconds", "0.15:0.55"}, "4"}}) {
    const QString part = QStringLiteral("Fahrt ü/part.pcap");
    const ProgramResult cut = skarnvisor(QStringList{"cut", "Fahrt ü/whole.pcap", "--out", part} + c.arguments);
    ASSERT_EQ(cut.exitCode, 0) << cut.err.toStdString();
    EXPECT_EQ(skarnvisor({"info", part}).value("frames"), c.frames);
  }
  const ProgramResult info = skarnvisor({"info", "Fahrt ü/whole.pcap"});
  EXPECT_GT(info.value("packets lost").toInt(), 0);
  EXPECT_GT(info.value("packets out of order").toInt(), 0);
  EXPECT_EQ(info.value("gaps"), "0");
  EXPECT_TRUE(info.value("sensor").startsWith("port 2368 KR2")) << info.value("sensor").toStdString();
}

TEST(ProgramSources, RecordsAndPlaysAUdpPort) {
  const quint16 port = freePort();
  const Stream stream(port);
  const ProgramResult record =
      skarnvisor({"record", "--port", QString::number(port), "--seconds", "1", "--out", "recorded.pcap"});
  ASSERT_EQ(record.exitCode, 0) << record.err.toStdString();
  EXPECT_GT(record.value("packets written").toInt(), 20);
  EXPECT_EQ(skarnvisor({"info", "recorded.pcap"}).value("packets"), record.value("packets written"));
  const ProgramResult play = skarnvisor({"play", QStringLiteral("udp://:%1").arg(port), "--frames-limit", "5"});
  ASSERT_EQ(play.exitCode, 0) << play.err.toStdString();
  EXPECT_EQ(play.value("frames played"), "5");
  EXPECT_EQ(play.value("type"), "KR2");
  EXPECT_GT(play.value("points shown").toInt(), 1000);
}

TEST(ProgramSources, AKillInTheMiddleOfARecordingLeavesACaptureThatOpens) {
  const quint16 port = freePort();
  const Stream stream(port);
  QProcess record;
  record.start(QStringLiteral(SKARNVISOR_PROGRAM), {"record", "--port", QString::number(port), "--out", "killed.pcap"});
  QElapsedTimer clock;
  clock.start();
  while (QFileInfo("killed.pcap").size() < 100'000 && clock.elapsed() < 30'000) QThread::msleep(10);
  record.kill();  // SIGKILL
  ASSERT_TRUE(record.waitForFinished());
  ASSERT_EQ(record.exitStatus(), QProcess::CrashExit);
  const ProgramResult info = skarnvisor({"info", "killed.pcap"});
  ASSERT_EQ(info.exitCode, 0) << info.err.toStdString();
  EXPECT_GT(info.value("frames").toInt(), 0);
  EXPECT_GT(info.value("packets").toInt(), 50);
}

TEST(ProgramSources, AFailureIsOneSentenceAndANonZeroExit) {
  makeCapture("whole.pcap", size);
  writeFile("old.pcap", "old");
  QUdpSocket taken;
  ASSERT_TRUE(taken.bind(QHostAddress(QHostAddress::AnyIPv4), 0));
  const QString port = QString::number(taken.localPort());
  expectRefusals({},
                 {{{"cut", "absent.pcap", "--frames", "0:1", "--out", "x.pcap"}, {"There is no file"}},
                  {{"cut", "whole.pcap", "--frames", "10:12", "--out", "old.pcap"}, {"there are frames 0 to 11"}},
                  {{"cut", "whole.pcap", "--frames", "0:1", "--out", "absent/x.pcap"}, {"cannot be written"}},
                  {{"cut", "whole.pcap", "--frames", "0:1", "--out", "whole.pcap"}, {"take the place of the capture"}},
                  {{"cut", "whole.pcap", "--frames", "2:1", "--out", "x.pcap"}, {"A not above B"}},
                  {{"cut", "whole.pcap", "--out", "x.pcap"}, {"required"}},
                  {{"record", "--port", port, "--seconds", "1", "--out", "x.pcap"}, {"is in use by another program"}},
                  {{"play", "udp://:" + port, "--seconds", "1"},
                   {"skarnvisor: UDP port " + port + " is in use by another program.\n"}},
                  {{"play", "udp://lidar"}, {"is no live source"}},
                  {{"play", "udp://::1:2368"}, {"is no live source"}},
                  {{"info", "udp://:" + port}, {"played or recorded only"}},
                  {{"info", "whole.pcap", "--port", "99"}, {"on UDP port 99"}}});
  EXPECT_EQ(contents("old.pcap"), "old");
  EXPECT_FALSE(QFile::exists("x.pcap"));
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
