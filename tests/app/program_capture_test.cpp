#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <set>

#include "tests/app/program_fixture.h"

namespace tarvo::skarnvisor::test {
namespace {

constexpr int frames = 12;

/// A street of our own making, written once a process.
class ProgramOnCapture : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    makeCapture("street.pcap", {"--type", "KR2", "--channels", "32", "--columns", "450", "--frames",
                                QString::number(frames), "--port", "2411"});
  }
};

/// Different colours in a picture, counted on every fourth pixel.
std::size_t colorCount(const QImage &image) {
  std::set<QRgb> colors;
  for (int y = 0; y < image.height(); y += 4)
    for (int x = 0; x < image.width(); x += 4) colors.insert(image.pixel(x, y));
  return colors.size();
}

TEST_F(ProgramOnCapture, InfoTellsWhatTheSimulatorWrote) {
  const ProgramResult result = skarnvisor({"info", "street.pcap"});
  ASSERT_EQ(result.exitCode, 0) << result.err.toStdString();
  EXPECT_EQ(result.value("type"), "KR2");
  EXPECT_EQ(result.value("port"), "2411");
  EXPECT_EQ(result.value("channels"), "32");
  EXPECT_EQ(result.value("frames").toInt(), frames);
  EXPECT_EQ(result.value("points of the first frame").toInt(), 32 * 450);
  EXPECT_NEAR(result.value("duration").section(' ', 0, 0).toDouble(), frames * 0.1, 0.15);
  EXPECT_EQ(result.value("size").section(' ', 0, 0).toLongLong(), QFile("street.pcap").size());
}

TEST_F(ProgramOnCapture, AStackHoldsWholeGroupsOfFrames) {
  const QStringList render{"render", "street.pcap", "--frame", "11", "--size", "640x360", "--out"};
  const ProgramResult one = skarnvisor(render + QStringList{"one.png"});
  const ProgramResult ten = skarnvisor(render + QStringList{"ten.png", "--stack", "10"});
  ASSERT_EQ(ten.exitCode, 0) << ten.err.toStdString();
  EXPECT_TRUE(ten.out.startsWith("Successfully allocated 10 frames\n")) << ten.out.toStdString();
  EXPECT_NE(QImage("ten.png"), QImage("one.png"));

  const ProgramResult played = skarnvisor({"play", "street.pcap", "--stack", "7"});
  ASSERT_EQ(played.exitCode, 0) << played.err.toStdString();
  EXPECT_EQ(played.value("stack"), "Successfully allocated 10 frames");
  EXPECT_EQ(played.value("frames played").toInt(), frames);
  EXPECT_EQ(played.value("points").toInt(), 10 * 32 * 450) << "two groups; the third is not complete";

  const ProgramResult refused = skarnvisor({"play", "street.pcap", "--stack", "3001"});
  EXPECT_NE(refused.exitCode, 0);
  EXPECT_TRUE(refused.err.contains("Rejected: max allowed is 3000 frames")) << refused.err.toStdString();
}

TEST_F(ProgramOnCapture, RenderDrawsAFrameWithoutADisplay) {
  const ProgramResult result =
      skarnvisor({"render", "street.pcap", "--frame", "3", "--out", "three.png", "--size", "640x360"});
  ASSERT_EQ(result.exitCode, 0) << result.err.toStdString();
  const QImage image("three.png");
  ASSERT_EQ(image.size(), QSize(640, 360));
  EXPECT_GT(colorCount(image), 200U);

  ASSERT_EQ(skarnvisor({"render", "street.pcap", "--frame", "3", "--out", "z.png", "--size", "640x360", "--color", "z"})
                .exitCode,
            0);
  EXPECT_NE(QImage("z.png"), image);
  ASSERT_EQ(skarnvisor({"render", "street.pcap", "--frame", "3", "--out", "again.png", "--size", "640x360"}).exitCode,
            0);
  EXPECT_EQ(QImage("again.png"), image) << "the same frame gives the same picture";
}

TEST_F(ProgramOnCapture, RenderRefusesWhatTheCaptureDoesNotHave) {
  const QStringList render{"render", "street.pcap", "--out"};
  expectRefusals(render, {{{"refused.png", "--frame", "12"}, {"frames 0 to 11"}},
                          {{"refused.png", "--color", "taste"}, {"intensity"}},
                          {{"no/such/folder/x.png"}, {"no/such/folder/x.png"}}});
  EXPECT_FALSE(QFile::exists("refused.png"));
}

TEST_F(ProgramOnCapture, PlayShowsEveryFrameOnceAndWritesPicturesAndSummary) {
  const ProgramResult result = skarnvisor(
      {"play", "street.pcap", "--pictures", "shots", "--count", "3", "--size", "320x180", "--summary", "summary.txt"});
  ASSERT_EQ(result.exitCode, 0) << result.err.toStdString();
  EXPECT_EQ(result.value("frames played").toInt(), frames);
  EXPECT_EQ(result.value("points").toLongLong(), static_cast<long long>(frames) * 32 * 450);
  EXPECT_EQ(result.value("points").toLongLong(),
            result.value("points shown").toLongLong() + result.value("points hidden").toLongLong());
  EXPECT_EQ(QDir("shots").entryList(QDir::Files, QDir::Name),
            QStringList({"frame-0002.png", "frame-0006.png", "frame-0010.png"}));
  EXPECT_EQ(QString::fromUtf8(contents("summary.txt")), result.out);
}

TEST_F(ProgramOnCapture, PlayKeepsToItsLimitAndToTheClock) {
  const ProgramResult limited = skarnvisor({"play", "street.pcap", "--frames-limit", "4"});
  ASSERT_EQ(limited.exitCode, 0) << limited.err.toStdString();
  EXPECT_EQ(limited.value("frames played").toInt(), 4);

  const ProgramResult paced = skarnvisor({"play", "street.pcap", "--speed", "2"});
  ASSERT_EQ(paced.exitCode, 0) << paced.err.toStdString();
  EXPECT_EQ(paced.value("frames played").toInt(), frames);
  EXPECT_GT(paced.value("seconds played").toDouble(), (frames - 1) * 0.1 / 2 * 0.9);

  const ProgramResult byTime = skarnvisor({"play", "street.pcap", "--by-time", "--speed", "2"});
  ASSERT_EQ(byTime.exitCode, 0) << byTime.err.toStdString();
  EXPECT_GT(byTime.value("frames played").toInt(), 2);
  EXPECT_GT(byTime.value("points shown").toLongLong(), 0);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
