#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pcap/pcap.h>
#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "tests/runtime_live/live_fixture.h"
#include "tests/support/files.h"

namespace tarvo::lidar::test {
namespace {

using skarnvisor::test::contents;
using skarnvisor::test::FileLimit;
using testing::HasSubstr;

std::string inFolder(const std::string &name) { return skarnvisor::test::processFolder().toStdString() + "/" + name; }

struct Counted {
  long packets = -1;
  std::vector<std::uint64_t> stamps;
};

/// Reads a capture with the library that packet tools use; -1 packets when it refuses the file.
Counted readWithLibrary(const std::string &path) {
  Counted counted;
  char reason[PCAP_ERRBUF_SIZE];
  pcap_t *file = pcap_open_offline_with_tstamp_precision(path.c_str(), PCAP_TSTAMP_PRECISION_NANO, reason);
  if (file == nullptr) return counted;
  counted.packets = 0;
  pcap_pkthdr *head = nullptr;
  const u_char *bytes = nullptr;
  while (pcap_next_ex(file, &head, &bytes) == 1) {
    ++counted.packets;
    counted.stamps.push_back(static_cast<std::uint64_t>(head->ts.tv_sec) * 1'000'000'000 +
                             static_cast<std::uint64_t>(head->ts.tv_usec));
  }
  pcap_close(file);
  return counted;
}

TEST(Cut, PlaysAgainWithEqualPointsFromEveryFileForm) {
  sim::Options options = smallLidar(10);
  options.rateHz = 20;  // calibration in frame 0 alone
  options.reorder = 0.1;
  const auto packets = packetsOf(options);
  using Form = CaptureMaker::Form;
  struct Case {
    const char *name;
    CaptureMaker maker;
    std::uint64_t unitNs;
    int first, last;
  };
  const Case cases[]{{"nano", CaptureMaker(Form::Nano), 1, 3, 6},
                     {"micro, other byte order", CaptureMaker(Form::Micro, true), 1000, 0, 4},
                     {"pcapng", CaptureMaker(Form::Ng), 1, 2, 9},
                     {"one frame", CaptureMaker(Form::Nano), 1, 5, 5}};
  for (const Case &c : cases) {
    SCOPED_TRACE(c.name);
    Session whole(writeCapture("whole.pcap", packets, c.maker));
    ASSERT_TRUE(whole.indexed(10));
    const std::string path = inFolder("cut.pcap");
    ASSERT_TRUE(whole.runtime().CutPcap(path, c.first, c.last)) << whole.runtime().CaptureError();
    const int frames = c.last - c.first + 1;
    Session part(path);
    ASSERT_TRUE(part.indexed(frames)) << part.runtime().GetFrameCount();
    const auto all = pointsOf(*whole.source, 10);
    EXPECT_EQ(pointsOf(*part.source, frames), std::vector<Bytes>(all.begin() + c.first, all.begin() + c.last + 1));
    EXPECT_EQ(part.runtime().GetCaptureReport().lost, 0U);
    std::set<std::uint64_t> stamps;
    for (const auto &packet : packets) stamps.insert(packet.ns - packet.ns % c.unitNs);
    const Counted counted = readWithLibrary(path);
    EXPECT_GT(counted.packets, frames * 5);
    for (const std::uint64_t stamp : counted.stamps) EXPECT_TRUE(stamps.contains(stamp)) << stamp;
  }
}

TEST(Cut, BySecondsTakesTheFramesThatBeginThere) {
  Session whole(writeCapture("whole.pcap", packetsOf(smallLidar(10))));
  ASSERT_TRUE(whole.indexed(10));
  const double begin = whole.source->beginSeconds;
  const std::string path = inFolder("seconds.pcap");
  ASSERT_TRUE(whole.runtime().CutPcap(path, begin + 0.2, begin + 0.45));
  EXPECT_TRUE(Session(path).indexed(3));
  EXPECT_FALSE(whole.runtime().CutPcap(path, begin + 0.45, begin + 0.2));
  EXPECT_FALSE(whole.runtime().CutPcap(path, begin + 0.11, begin + 0.12)) << "no frame begins there";
  EXPECT_TRUE(Session(path).indexed(3)) << "a failure leaves the old file whole";

  sim::Options options = smallLidar(10);
  options.rateHz = 30;
  Session thirds(writeCapture("thirds.pcap", packetsOf(options)));
  ASSERT_TRUE(thirds.indexed(10));
  const auto shownAs = [&](int frame) { return std::floor(thirds.runtime().GetFrameStartSeconds(frame) * 1e3) / 1e3; };
  ASSERT_TRUE(thirds.runtime().CutPcap(path, shownAs(4), shownAs(7)));
  EXPECT_TRUE(Session(path).indexed(4)) << "a time text cuts a frame's start down to milliseconds";
}

TEST(Cut, KeepsPacketsOfSeveralLinkTypes) {
  const auto packets = packetsOf(smallLidar(4));
  CaptureMaker maker(CaptureMaker::Form::Ng);
  maker.block(1, maker.w16(101) + maker.w16(0) + maker.w32(0) + maker.w16(9) + maker.w16(1) + Bytes{9, 0, 0, 0} +
                     maker.w16(0) + maker.w16(0));
  for (std::size_t i = 0; i < packets.size(); ++i) {
    if (i % 2 == 0) {
      maker.add(ethernet(ipv4(udp(packets[i].payload))), packets[i].ns);
      continue;
    }
    const Bytes raw = ipv4(udp(packets[i].payload));
    maker.block(6, maker.w32(1) + maker.w32(packets[i].ns >> 32) + maker.w32(packets[i].ns) + maker.w32(raw.size()) +
                       maker.w32(raw.size()) + raw + Bytes((4 - raw.size() % 4) % 4, 0));
  }
  Session whole(writeFile("mixed.pcapng", maker.bytes));
  ASSERT_TRUE(whole.indexed(4));
  const std::string path = inFolder("mixed-cut.pcapng");
  ASSERT_TRUE(whole.runtime().CutPcap(path, 1, 2)) << whole.runtime().CaptureError();
  Session part(path);
  ASSERT_TRUE(part.indexed(2));
  const auto all = pointsOf(*whole.source, 4);
  EXPECT_EQ(pointsOf(*part.source, 2), std::vector<Bytes>(all.begin() + 1, all.begin() + 3));
}

TEST(Cut, RefusesWithAMessageAndLeavesTheOldFileWhole) {
  const std::string original = writeCapture("whole.pcap", packetsOf(smallLidar(3)));
  Session whole(original);
  ASSERT_TRUE(whole.indexed(3));
  const QByteArray before = contents(QString::fromStdString(original));
  const std::string old = writeFile("old.pcap", {1, 2, 3});
  struct Case {
    std::string path;
    int first, last;
    const char *words;
  };
  const Case cases[]{{old, 1, 5, "there are frames 0 to 2"},
                     {old, 2, 1, "there are frames 0 to 2"},
                     {inFolder("absent/x.pcap"), 0, 1, "cannot be written: No such file"},
                     {skarnvisor::test::processFolder().toStdString(), 0, 1, "no file"},
                     {original, 0, 1, "take the place of the capture"}};
  for (const Case &c : cases) {
    EXPECT_FALSE(whole.runtime().CutPcap(c.path, c.first, c.last)) << c.path;
    EXPECT_THAT(whole.runtime().CaptureError(), HasSubstr(c.words));
  }
  EXPECT_EQ(contents(QString::fromStdString(old)), QByteArray("\1\2\3"));
  EXPECT_EQ(contents(QString::fromStdString(original)), before);
  EXPECT_FALSE(whole.runtime().StartRecordPcap(inFolder("r.pcap")));
  EXPECT_THAT(whole.runtime().CaptureError(), HasSubstr("Only a live source"));
  // Nothing of a passing name is left.
  for (const auto &entry : std::filesystem::directory_iterator(skarnvisor::test::processFolder().toStdString()))
    EXPECT_THAT(entry.path().filename().string(), testing::Not(HasSubstr("old.pcap.")));
}

TEST(Cut, AFullDiskLeavesTheOldFileWhole) {
  Session whole(writeCapture("whole.pcap", packetsOf(smallLidar(5))));
  ASSERT_TRUE(whole.indexed(5));
  const std::string old = writeFile("old.pcap", {1, 2, 3});
  const FileLimit limit(2000);
  EXPECT_FALSE(whole.runtime().CutPcap(old, 0, 4));
  EXPECT_THAT(whole.runtime().CaptureError(), HasSubstr("cannot be written"));
  EXPECT_EQ(contents(QString::fromStdString(old)), QByteArray("\1\2\3"));
}

TEST(Cut, GivenUpHalfWayLeavesTheOldFileWhole) {
  const auto packets = packetsOf(smallLidar(10));
  for (const CaptureMaker::Form form : {CaptureMaker::Form::Nano, CaptureMaker::Form::Ng}) {
    Session whole(writeCapture("whole.pcap", packets, CaptureMaker(form)));
    ASSERT_TRUE(whole.indexed(10));
    const std::string old = writeFile("old.pcap", {1, 2, 3});
    std::vector<double> told;
    whole.runtime().WatchCuts([&told](double share) {
      told.push_back(share);
      return share < 1;
    });
    EXPECT_FALSE(whole.runtime().CutPcap(old, 0, 9));
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_EQ(std::pair(told.front(), told.back()), std::pair(0.0, 1.0));
    EXPECT_EQ(contents(QString::fromStdString(old)), QByteArray("\1\2\3"));
    EXPECT_THAT(whole.runtime().CaptureError(), HasSubstr("given up"));
    whole.runtime().WatchCuts({});
    EXPECT_TRUE(whole.runtime().CutPcap(old, 0, 9));
    EXPECT_EQ(whole.runtime().CaptureError(), "");
    // Nothing of a passing name is left.
    for (const auto &entry : std::filesystem::directory_iterator(skarnvisor::test::processFolder().toStdString()))
      EXPECT_THAT(entry.path().filename().string(), testing::Not(HasSubstr("old.pcap.")));
  }
}

TEST(Recording, KeepsEveryPacketWithItsAddressesAndPlaysAgain) {
  sim::Options options = smallLidar(10);
  options.rateHz = 20;  // calibration in frame 0 alone
  const auto packets = packetsOf(options);
  LiveSession live;
  const Sender sender(live.port);
  sender.send(framesOf(packets, 0, 2));
  ASSERT_TRUE(live.hasFrames(2));
  const std::string path = inFolder("recorded.pcap");
  ASSERT_TRUE(live.runtime().StartRecordPcap(path)) << live.runtime().CaptureError();
  const auto recorded = framesOf(packets, 2, 9);
  sender.send(recorded);
  ASSERT_TRUE(live.hasFrames(9));
  // A kill at this moment leaves what has been written; all of it is there a moment later.
  const long expected = static_cast<long>(recorded.size());
  EXPECT_TRUE(Session::poll([&] { return readWithLibrary(path).packets >= expected; }));
  live.runtime().StopRecordPcap();
  const RecordingReport report = live.runtime().GetCaptureReport().recording;
  EXPECT_FALSE(report.running);
  EXPECT_EQ(report.fault, "");
  EXPECT_EQ(report.bytes, std::filesystem::file_size(path));
  EXPECT_EQ(readWithLibrary(path).packets, static_cast<long>(report.packets));
  Session again(path);
  ASSERT_TRUE(again.indexed(7));
  EXPECT_EQ(again.runtime().GetPcapPort(), live.port);
  const auto shown = pointsOf(*live.source, 9);
  EXPECT_EQ(pointsOf(*again.source, 7), std::vector<Bytes>(shown.begin() + 2, shown.end()));

  const std::string part = inFolder("ring-cut.pcap");
  ASSERT_TRUE(live.runtime().CutPcap(part, 4, 6)) << live.runtime().CaptureError();
  Session cut(part);
  ASSERT_TRUE(cut.indexed(3));
  EXPECT_EQ(pointsOf(*cut.source, 3), std::vector<Bytes>(shown.begin() + 4, shown.begin() + 7));
}

TEST(Recording, EndsWithAMessageWhenTheDiskIsFullAndStaysReadable) {
  const auto packets = packetsOf(smallLidar(4));
  LiveSession live;
  const Sender sender(live.port);
  sender.send(packets);
  ASSERT_TRUE(live.ready());
  const std::string path = inFolder("full.pcap");
  const FileLimit limit(10'000);
  ASSERT_TRUE(live.runtime().StartRecordPcap(path));
  PacketLog more;
  sim::simulate(smallLidar(5), more, sim::captureStartNs + 10'000'000'000ULL);
  sender.send(more.packets);
  const auto report = [&] { return live.runtime().GetCaptureReport().recording; };
  ASSERT_TRUE(Session::poll([&] { return !report().fault.empty(); }));
  EXPECT_FALSE(report().running);
  EXPECT_THAT(report().fault, HasSubstr("can be read"));
  const Counted counted = readWithLibrary(path);
  EXPECT_GT(counted.packets, 3);
  EXPECT_EQ(counted.packets, static_cast<long>(report().packets));
  EXPECT_EQ(std::filesystem::file_size(path), report().bytes);
  live.runtime().StopRecordPcap();
  EXPECT_NE(report().fault, "") << "the reason stays";
  EXPECT_FALSE(live.runtime().StartRecordPcap(inFolder("absent/r.pcap")));
  EXPECT_THAT(live.runtime().CaptureError(), HasSubstr("cannot be written"));
}

}  // namespace
}  // namespace tarvo::lidar::test
