#include <gtest/gtest.h>

#include "tests/app/program_fixture.h"

namespace tarvo::skarnvisor::test {
namespace {

/// A classic capture header, microsecond stamps, Ethernet.
QByteArray captureHeader() { return QByteArray::fromHex("d4c3b2a1020004000000000000000000ffff000001000000"); }

/// One Ethernet frame that carries an ARP request: a packet, but none of a lidar.
QByteArray foreignPacket() {
  const QByteArray frame = QByteArray::fromHex("ffffffffffff0200000000010806") + QByteArray(46, '\0');
  return QByteArray::fromHex("00000000000000003c0000003c000000") + frame;
}

/// Section and interface blocks, no packet block.
QByteArray emptyBlockCapture() {
  return QByteArray::fromHex("0a0d0d0a1c0000004d3c2b1a01000000ffffffffffffffff1c000000") +
         QByteArray::fromHex("010000001400000001000000ffff000014000000");
}

TEST(Program, HelpOfTheProgramAndOfEachCommandSucceeds) {
  for (const QStringList &arguments :
       {QStringList{"--help"}, {"info", "--help"}, {"render", "--help"}, {"play", "--help"}, {"view", "--help"}}) {
    const ProgramResult result = skarnvisor(arguments);
    EXPECT_EQ(result.exitCode, 0) << arguments.join(' ').toStdString();
    EXPECT_TRUE(result.out.contains("Usage")) << arguments.join(' ').toStdString();
  }
}

TEST(Program, AWrongArgumentFailsAndNamesIt) {
  writeFile("some.pcap", captureHeader() + foreignPacket());
  expectRefusals({}, {{{"frobnicate"}, {"\"frobnicate\" is no command"}},
                      {{"info"}, {"file"}},
                      {{"render", "some.pcap"}, {"--out"}},
                      {{"render", "some.pcap", "--out", "x.png", "--size", "10by10"}, {"10by10"}},
                      {{"render", "some.pcap", "--out", "x.png", "--size", "4x4"}, {"4x4"}},
                      {{"render", "some.pcap", "--out", "x.png", "--view", "sideways"}, {"sideways"}},
                      {{"render", "some.pcap", "--out", "x.png", "--ramp", "mud"}, {"mud"}},
                      {{"render", "some.pcap", "--out", "x.png", "--frame", "-1"},
                       {"--frame: a whole number from 0 on was expected, not \"-1\""}},
                      {{"play", "some.pcap", "--speed", "0"}, {"--speed"}},
                      {{"play", "some.pcap", "--speed", "nan"}, {"a number from 0.1 to 10 was expected, not \"nan\""}},
                      {{"play", "some.pcap", "--pictures", "p", "--count", "0"}, {"--count"}},
                      {{"play", "some.pcap", "--color", "z"}, {"--color requires --pictures"}},
                      {{"play", "some.pcap", "--seconds", "1"}, {"--seconds: is for a live source"}},
                      {{"play", "udp://:2368", "--speed", "1"}, {"--speed: is not for a live source"}},
                      {{"cut", "udp://:2368", "--frames", "0:1", "--out", "x"}, {"a live source can be"}},
                      {{"play", "udp://:2368", "--seconds", "nan"}, {"a number above 0"}}});
}

TEST(Program, AFileThatCannotBeShownGivesOneSentenceAndExitCodeOne) {
  writeFile("nothing.pcap", {});
  writeFile("text.pcap", "this is no capture, only words");
  writeFile("short.pcap", QByteArray::fromHex("d4c3"));
  writeFile("empty.pcap", captureHeader());
  writeFile("empty.pcapng", emptyBlockCapture());
  writeFile("foreign.pcap", captureHeader() + foreignPacket());
  struct Case {
    QString file;
    QString told;
  };
  const Case cases[] = {
      {"missing.pcap", "no such file"},       {".", "folder"},
      {"nothing.pcap", "is empty"},           {"text.pcap", "not a capture"},
      {"short.pcap", "not a capture"},        {"empty.pcap", "without any packet"},
      {"empty.pcapng", "without any packet"}, {"foreign.pcap", "foreign.pcap cannot be opened"},
      {"/dev/null", "a pipe or a device"},
  };
  for (const Case &row : cases) {
    for (const QStringList &arguments :
         {QStringList{"info", row.file}, {"render", row.file, "--out", "never.png"}, {"play", row.file}}) {
      const ProgramResult result = skarnvisor(arguments);
      EXPECT_EQ(result.exitCode, 1) << arguments.join(' ').toStdString();
      EXPECT_TRUE(result.err.contains(row.told)) << arguments.join(' ').toStdString() << "\n"
                                                 << result.err.toStdString();
      EXPECT_EQ(result.err.count('\n'), 1) << result.err.toStdString();
      // The scan of a folder says which files it passes over.
      EXPECT_TRUE(result.out.isEmpty() || row.file == ".") << result.out.toStdString();
    }
  }
  EXPECT_FALSE(QFile::exists("never.png"));
}

TEST(Program, AMissingOrForeignPluginIsNamed) {
  writeFile("some.pcap", captureHeader() + foreignPacket());
  writeFile("libnothing.so", "no library");
  expectRefusals({"info", "some.pcap", "--plugin"},
                 {{{"/no/such/plugin.so"}, {"plugin.so"}}, {{"./libnothing.so"}, {"libnothing.so"}}});
}

TEST(Program, TheWindowWithoutADisplayFailsWithASentence) { expectRefusals({}, {{{"view"}, {"display"}}}); }

}  // namespace
}  // namespace tarvo::skarnvisor::test
