// Points written by the program: one file a frame.
#include <QDir>
#include <QRegularExpression>

#include "tests/app/program_fixture.h"

namespace tarvo::skarnvisor::test {
namespace {

constexpr const char *capture = "export.pcap";

class ProgramExport : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    makeCapture(capture, {"--type", "KR2", "--channels", "32", "--columns", "450", "--frames", "6", "--port", "2411"});
  }

  /// The only file that begins so, its path.
  static QString only(const QString &folder, const QString &name) {
    const QStringList found = QDir(folder).entryList({name}, QDir::Files);
    EXPECT_EQ(found.size(), 1) << name.toStdString();
    return folder + '/' + found.value(0);
  }

  static int pointsOf(const QByteArray &pcd) {
    return QRegularExpression("POINTS (\\d+)").match(QString::fromLatin1(pcd)).captured(1).toInt();
  }
};

TEST_F(ProgramExport, EachFrameBecomesAFile) {
  const ProgramResult result = skarnvisor(
      {"export", capture, "--frames", "1:3", "--format", "pcd", "--fields", "x,y,z,timestamp", "--out", "pcd"});
  ASSERT_EQ(result.exitCode, 0) << result.err.toStdString();
  EXPECT_EQ(result.out.toStdString(), "3 of 3 frames written to pcd\n");
  const QByteArray first = contents(only("pcd", "frame-0001_*.pcd"));
  EXPECT_TRUE(first.contains("FIELDS x y z timestamp\n"));
  EXPECT_GT(pointsOf(first), 1000);
  EXPECT_EQ(first.count('\n'), pointsOf(first) + 11);
  EXPECT_NE(first, contents(only("pcd", "frame-0002_*.pcd")));

  // The folder has the frames at the times that they had in the capture.
  QFile::remove("cut.pcap");
  ASSERT_EQ(skarnvisor({"cut", capture, "--frames", "1:3", "--out", "cut.pcap"}).exitCode, 0);
  const ProgramResult cut = skarnvisor({"info", "cut.pcap"});
  const ProgramResult folder = skarnvisor({"info", "pcd"});
  const auto begin = [](const ProgramResult &info) { return info.value("time span").section(" to ", 0, 0); };
  EXPECT_EQ(folder.value("frames"), "3");
  EXPECT_EQ(begin(folder).toStdString(), begin(cut).toStdString());
  EXPECT_EQ(folder.value("duration"), "0.310 s") << "two steps, and the time that the last one stands";
}

TEST_F(ProgramExport, TheTableHasTheVisiblePointsToo) {
  ASSERT_EQ(skarnvisor({"export", capture, "--format", "csv", "--out", "csv"}).exitCode, 0);
  ASSERT_EQ(skarnvisor({"export", capture, "--frames", "0:0", "--format", "pcd", "--out", "csv"}).exitCode, 0);
  EXPECT_EQ(QDir("csv").entryList({"*.csv"}).size(), 6);
  const QByteArray table = contents(only("csv", "frame-0000_*.csv"));
  EXPECT_TRUE(table.startsWith("Ch,AziCorr(deg),"));
  EXPECT_EQ(table.count('\n'), pointsOf(contents(only("csv", "frame-0000_*.pcd"))) + 1);
  ASSERT_EQ(skarnvisor({"export", "--frames", "5:5", "--format", "csv", "--out", "csv", "--fields", "z,Ch", capture})
                .exitCode,
            0);
  EXPECT_TRUE(contents(only("csv", "frame-0005_*.csv")).startsWith("z(m),Ch,\n"));
}

TEST_F(ProgramExport, AMatrixSelects) {
  // Inside where |x|, |y| and |z| are below 8 m.
  writeFile("box.txt", "1 0 0 0\n0 1 0 0\n0 0 1 0\n0, 0, 0, 8\n");
  for (const char *format : {"pcd", "csv"})
    ASSERT_EQ(skarnvisor({"export", capture, "--frames", "2:2", "--format", format, "--fields", "x,y,z", "--selected",
                          "box.txt", "--out", "box"})
                  .exitCode,
              0);
  const QByteArray pcd = contents(only("box", "frame-0002_*.pcd"));
  const auto lines = pcd.mid(pcd.indexOf("DATA ascii\n") + 11).split('\n');
  ASSERT_GT(pointsOf(pcd), 10);
  for (int i = 0; i < pointsOf(pcd); ++i)
    for (const QByteArray &value : lines[i].split(' ')) ASSERT_LT(std::abs(value.toDouble()), 8.0) << lines[i].data();
  EXPECT_EQ(contents(only("box", "frame-0002_*.csv")).count('\n'), pointsOf(pcd) + 1);
}

TEST_F(ProgramExport, SaysInOneSentenceWhatIsWrong) {
  writeFile("short.txt", "1 0 0\n");
  ASSERT_EQ(skarnvisor({"export", capture, "--frames", "0:0", "--format", "pcd", "--out", "closed"}).exitCode, 0);
  const QString taken = only("closed", "frame-0000_*.pcd");
  expectRefusals({"export", taken}, {{{"--format", "pcd", "--out", "o"}, {"is no capture of a lidar"}}});
  QFile::remove(taken);
  QDir().mkpath(taken);
  expectRefusals({"export", capture},
                 {{{"--format", "pcd", "--fields", "x,q", "--out", "o"}, {"there is no field \"q\""}},
                  {{"--format", "csv", "--fields", "q", "--out", "o"}, {"there is no column \"q\""}},
                  {{"--format", "pcd", "--frames", "3:9", "--out", "o"}, {"there is no frame 9"}},
                  {{"--format", "pcd", "--selected", "short.txt", "--out", "o"}, {"sixteen numbers"}},
                  {{"--format", "pcd", "--out", "/proc/points"}, {"the folder /proc/points cannot be made"}},
                  {{"--format", "pcd", "--out", "closed"}, {taken + " could not be written: "}}});
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
