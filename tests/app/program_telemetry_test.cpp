#include <QRegularExpression>

#include "tests/app/program_fixture.h"

namespace tarvo::skarnvisor::test {
namespace {

const QStringList size{"--channels", "16", "--columns", "90", "--frames", "4"};

TEST(ProgramTelemetry, PrintsWhatTheLidarSaysOfItself) {
  makeCapture("wg9.pcap", size + QStringList{"--type", "WG9", "--variant", "129", "--telemetry", "--faults", "--imu"});
  const ProgramResult result = skarnvisor({"telemetry", "wg9.pcap", "--frame", "2", "--csv", "wg9.csv"});
  ASSERT_EQ(result.exitCode, 0) << result.err.toStdString();
  EXPECT_EQ(result.value("type"), "WG9");
  EXPECT_EQ(result.value("frame"), "2");
  EXPECT_EQ(result.value("monitor"), "37 rows");
  EXPECT_EQ(result.value("faults"), "6 rows");
  for (const char *line : {"^  Motor Speed:   600.000  Return Mode: strongest  wg9.pcap$",
                           "^  accel_x: -?0\\.\\d{8}  accel_y: -?0\\.\\d{8}  accel_z: \\d\\.\\d{8}$",
                           "^imu: acceleration as a unit vector -?0\\.\\d{6} -?0\\.\\d{6} [01]\\.\\d{6}$",
                           "^  14   PID_RESULT +\\d+\\.00$", "^  239  Lidar_SN +SIM0000000000000000000000000009$",
                           "^  Fault Code 1 +0x0102$"}) {
    const QRegularExpression pattern(QString::fromLatin1(line), QRegularExpression::MultilineOption);
    EXPECT_TRUE(pattern.match(result.out).hasMatch()) << line << "\n" << result.out.toStdString();
  }
  const QList<QByteArray> lines = contents("wg9.csv").split('\n');
  EXPECT_EQ(lines.size(), 1 + 37 + 1);
  EXPECT_EQ(lines.first(), "ID,Name,Value,");
  EXPECT_TRUE(lines.contains("43,Parasha,b2046e5d,"));
}

TEST(ProgramTelemetry, SaysWhatIsNotThere) {
  makeCapture("silent.pcap", size + QStringList{"--type", "VD8"});
  const ProgramResult silent = skarnvisor({"telemetry", "silent.pcap"});
  ASSERT_EQ(silent.exitCode, 0) << silent.err.toStdString();
  for (const char *name : {"monitor", "faults", "imu"}) EXPECT_EQ(silent.value(name), "none") << name;

  expectRefusals({"telemetry"}, {{{"silent.pcap", "--frame", "4"}, {"frames 0 to 3"}},
                                 {{"silent.pcap", "--csv", "no/such/x.csv"}, {"no/such/x.csv could not be written"}},
                                 {{"missing.pcap"}, {"missing.pcap"}}});
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
