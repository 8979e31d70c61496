// A captured PCD file read by tools that other people wrote, where they are installed (python3-open3d, pcl-tools).
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include "tests/default_pipeline/parser_fixture.h"
#include "tests/support/test_environment.h"

namespace tarvo::skarnvisor::test {
namespace {

constexpr const char *debianPython = "/usr/bin/python3";

struct Output {
  int exitCode = -1;
  QString text;
};

Output runTool(const QString &program, const QStringList &arguments) {
  QProcess tool;
  tool.setProcessChannelMode(QProcess::MergedChannels);
  tool.start(program, arguments);
  constexpr int limitMs = 120'000;
  if (!tool.waitForFinished(limitMs)) return {};
  return {tool.exitCode(), QString::fromLocal8Bit(tool.readAll())};
}

class IndependentReader : public ParserTest {
 protected:
  static constexpr int count = 5000;

  /// Captures `count` points of all fields, x counting 0.25 m steps.
  QString capture() {
    std::vector<SDKPointInfo> points;
    for (int i = 0; i < count; ++i) {
      auto p = point(static_cast<float>(i) * 0.25F, -1.5F, 0.125F, static_cast<std::uint16_t>(i % 128 + 1));
      p.timestamp = 1.7e9 + i;
      p.intensity = static_cast<std::uint16_t>(i % 60'000);
      points.push_back(p);
    }
    give(points);
    parse();
    for (int field = 0; field < rb.getPcdFieldListString().size(); ++field) rb.setPcdFieldEnabled(field, true);
    const QString path = processFolder() + "/independent.pcd";
    EXPECT_TRUE(rb.capture2PCD(path));
    return path;
  }
};

TEST_F(IndependentReader, Open3dReadsEveryPoint) {
  if (runTool(debianPython, {"-c", "import open3d"}).exitCode != 0) GTEST_SKIP() << "python3-open3d is not installed";
  const Output read = runTool(debianPython, {"-c",
                                             "import sys, open3d, numpy\n"
                                             "p = numpy.asarray(open3d.io.read_point_cloud(sys.argv[1]).points)\n"
                                             "print(len(p), p[:, 0].sum(), p[:, 1].max(), p[-1][2])",
                                             capture()});
  EXPECT_EQ(read.text.trimmed().toStdString(),
            QStringLiteral("%1 %2 -1.5 0.125").arg(count).arg(0.25 * count * (count - 1) / 2, 0, 'f', 1).toStdString());
}

TEST_F(IndependentReader, PclReadsEveryFieldOfEveryPoint) {
  const QString tool = QStandardPaths::findExecutable("pcl_convert_pcd_ascii_binary");
  if (tool.isEmpty()) GTEST_SKIP() << "pcl-tools is not installed";
  const QString again = processFolder() + "/again.pcd";
  const Output converted = runTool(tool, {capture(), again, "1"});  // read, then written packed by that tool
  ASSERT_EQ(converted.exitCode, 0) << converted.text.toStdString();
  QFile file(again);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray bytes = file.readAll();
  EXPECT_TRUE(bytes.contains("POINTS " + QByteArray::number(count) + '\n'));
  EXPECT_TRUE(
      bytes.contains("FIELDS ring x y z intensity timestamp distance confidence azimuthCalib elevationCalib\n"));
  constexpr int record = 2 + 3 * 4 + 2 + 8 + 4 + 2 + 2 * 4;
  const int begin = bytes.indexOf("DATA binary\n") + 12;
  ASSERT_GE(bytes.size(), begin + count * record);  // that tool fills the file's last page
  const char *const last = bytes.constData() + begin + (count - 1) * record;
  std::uint16_t lastRing;
  float lastX;
  double lastTime;
  std::memcpy(&lastRing, last, sizeof lastRing);
  std::memcpy(&lastX, last + 2, sizeof lastX);
  std::memcpy(&lastTime, last + 16, sizeof lastTime);
  EXPECT_EQ(lastRing, (count - 1) % 128 + 1);
  EXPECT_EQ(lastX, (count - 1) * 0.25F);
  EXPECT_EQ(lastTime, 1.7e9 + count - 1);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
