// render and play with a filter, an echo, hidden channels and a selection, on captures of the simulator.
#include <gtest/gtest.h>

#include <QImage>

#include "tests/app/program_fixture.h"

namespace tarvo::skarnvisor::test {
namespace {

constexpr long long framePoints = 16 * 360;
constexpr int frames = 4;

/// Points of all frames as play tells them.
struct Played {
  long long shown = 0;
  long long highlighted = 0;
};

Played play(const QString &capture, const QStringList &options) {
  const ProgramResult result = skarnvisor(QStringList{"play", capture} + options);
  EXPECT_EQ(result.exitCode, 0) << options.join(' ').toStdString() << "\n" << result.err.toStdString();
  EXPECT_EQ(result.value("frames played").toInt(), frames);
  return {result.value("points shown").toLongLong(), result.value("points highlighted").toLongLong()};
}

class ProgramOnPoints : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    const QStringList size{"--channels", "16", "--columns", "360", "--frames", QString::number(frames)};
    makeCapture("points.pcap", size + QStringList{"--type", "KR2"});
    makeCapture("echoes.pcap", size + QStringList{"--type", "HU_V8", "--echoes", "2"});
    makeCapture("scattered.pcap", size + QStringList{"--type", "VD8", "--noise", "0.3"});
    // X = x / 10 and so on, but W = 1 + x / 100: rows and columns differ.
    writeFile("box.txt", "0.1 0 0 0\n0 0.1 0 0\n0 0 0.1 0\n0.01 0 0 1\n");
  }
};

TEST_F(ProgramOnPoints, AFilterHidesOrMarksWhatItTakesOut) {
  const long long all = play("points.pcap", {}).shown;
  const long long near = play("points.pcap", {"--filter", "distance=0:15"}).shown;
  const long long far = play("points.pcap", {"--filter", "Dist=15:"}).shown;
  EXPECT_GT(near, 0);
  EXPECT_NEAR(near + far, all, all * 0.001) << "a point at just 15 m is in both";
  const Played marked = play("points.pcap", {"--filter", "distance=0:15", "--highlight"});
  EXPECT_EQ(marked.shown, all);
  EXPECT_EQ(marked.highlighted, all - near);

  const long long ahead = play("points.pcap", {"--filter", "azimuth=300:60"}).shown;
  const long long behind = play("points.pcap", {"--filter", "azimuth=60:300"}).shown;
  EXPECT_NEAR(ahead + behind, all, all * 0.02) << "a range may wrap around";
  const long long both = play("points.pcap", {"--filter", "distance=0:15,azimuth=300:60"}).shown;
  const long long either =
      play("points.pcap", {"--filter", "distance=0:15,azimuth=300:60", "--filter-mode", "any"}).shown;
  EXPECT_EQ(both + either, near + ahead);
}

TEST_F(ProgramOnPoints, AFilterThatLeavesNothingSaysSo) {
  const ProgramResult result = skarnvisor({"play", "points.pcap", "--filter", "distance=500:600"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.value("frames without a point").toInt(), frames - 1) << result.out.toStdString();
  EXPECT_TRUE(result.err.contains("no point was shown in 4 frames")) << result.err.toStdString();
}

TEST_F(ProgramOnPoints, ToolsOfTheLidarAreUsedAndRefusedWhereItHasNone) {
  const long long all = play("scattered.pcap", {}).shown;
  const long long some = play("scattered.pcap", {"--tools", "popout"}).shown;
  const long long more = play("scattered.pcap", {"--tools", "popout=:2"}).shown;
  EXPECT_LT(some, all);
  EXPECT_GT(more, some) << "a wider tolerance";
  EXPECT_EQ(play("scattered.pcap", {"--tools", "popout,popout=off"}).shown, all);
  EXPECT_GT(play("scattered.pcap", {"--tools", "popout,popout-highlight"}).highlighted, 0);

  const struct {
    QString tools;
    QString reason;
  } refused[]{{"noise", "there is no tool \"noise\"; this source has "},
              {"fog", "there is no tool \"fog\"; this source has "},
              {"popout=1:2:3:4:5", "takes 4 numbers, not 5"},
              {"popout=1.5", "no whole number"},
              {"popout=17", "outside 1 to 16"},
              {"popout=:nan", "outside 0 to 100"},
              {"distance-threshold", "has no switch"}};
  for (const auto &row : refused) {
    const ProgramResult result = skarnvisor({"play", "scattered.pcap", "--tools", row.tools});
    EXPECT_NE(result.exitCode, 0) << row.tools.toStdString();
    EXPECT_TRUE(result.err.contains(row.reason)) << result.err.toStdString();
  }
}

TEST_F(ProgramOnPoints, EchoesAndChannelsAreChosen) {
  const long long any = play("echoes.pcap", {"--echo", "0"}).shown;
  const long long first = play("echoes.pcap", {"--echo", "1"}).shown;
  const long long second = play("echoes.pcap", {"--echo", "2"}).shown;
  EXPECT_GT(second, 0);
  EXPECT_GT(first, second);
  EXPECT_EQ(first + second, any);

  const long long all = play("points.pcap", {}).shown;
  const long long low = play("points.pcap", {"--hide-channels", "1-8"}).shown;
  const long long high = play("points.pcap", {"--hide-channels", "9, 10-16"}).shown;
  EXPECT_EQ(low + high, all);
  EXPECT_GT(low, 0);
  EXPECT_LE(high, frames * framePoints / 2);
}

TEST_F(ProgramOnPoints, ASelectionMarksItsPlaceInEveryFrame) {
  const Played selected = play("points.pcap", {"--select", "box.txt"});
  const long long all = play("points.pcap", {}).shown;
  EXPECT_EQ(selected.shown, all);
  // |x| < 10 + x / 10 and so on: between -9.09 and 11.1 along x.
  const long long inner = play("points.pcap", {"--filter", "x=-9:11,y=-9:9,z=-9:9"}).shown;
  const long long outer = play("points.pcap", {"--filter", "x=-9.1:11.2,y=-11.2:11.2,z=-11.2:11.2"}).shown;
  EXPECT_GT(inner, 0);
  EXPECT_GE(selected.highlighted, inner);
  EXPECT_LE(selected.highlighted, outer);

  ASSERT_EQ(skarnvisor({"render", "points.pcap", "--out", "plain.png", "--size", "320x180"}).exitCode, 0);
  ASSERT_EQ(
      skarnvisor({"render", "points.pcap", "--out", "marked.png", "--size", "320x180", "--select", "box.txt"}).exitCode,
      0);
  const auto pixels = [](const QImage &image) {
    constexpr QRgb highlight = 0xffff40ff;
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x) count += image.pixel(x, y) == highlight ? 1 : 0;
    return count;
  };
  EXPECT_EQ(pixels(QImage("plain.png")), 0);
  EXPECT_GT(pixels(QImage("marked.png")), 50);
}

TEST_F(ProgramOnPoints, WhatIsWrongIsNamedInOneSentence) {
  writeFile("short.txt", "1 0 0 0 0 1 0 0\n");
  writeFile("words.txt", "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 one\n");
  expectRefusals({"play", "points.pcap"},
                 {{{"--filter", "taste=1:2"}, {"known are azimuth, elevation, distance, x, y, z, intensity"}},
                  {{"--filter", "distance"}, {"NAME=LOW:HIGH"}},
                  {{"--filter", "distance=far:2"}, {"\"far\""}},
                  {{"--filter", "intensity=1.5:2"}, {"whole number"}},
                  {{"--filter", "x=1:2,X=2:3"}, {"twice"}},
                  {{"--filter", "turn-index=1:2"}, {"KR2 has no filter \"turn-index\"; it has azimuth"}},
                  {{"--filter-mode", "any"}, {"--filter"}},
                  {{"--filter", "intensity=5:5", "--filter-mode", "any"}, {"\"intensity\""}},
                  {{"--highlight"}, {"--filter"}},
                  {{"--filter", "x=1:2", "--filter-mode", "some"}, {"some"}},
                  {{"--echo", "7"}, {"there is no echo 7; there are 0 (Any)"}},
                  {{"--hide-channels", "17"}, {"the lidar has 1 to 16"}},
                  {{"--hide-channels", "3-1"}, {"3-1"}},
                  {{"--hide-channels", ""}, {"channels are numbers"}},
                  {{"--select", "missing.txt"}, {"missing.txt"}},
                  {{"--select", "short.txt"}, {"it holds 8"}},
                  {{"--select", "words.txt"}, {"\"one\""}}});
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
