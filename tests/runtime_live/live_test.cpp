#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "runtime/capture/record_cursor.h"
#include "tests/runtime_live/live_fixture.h"

namespace tarvo::lidar::test {
namespace {

using testing::HasSubstr;

TEST(Live, ShowsTheFramesThatTheSameCaptureFileShows) {
  const auto packets = packetsOf(smallLidar(6));
  Session file(writeCapture("same.pcap", packets));
  ASSERT_TRUE(file.indexed(6));
  LiveSession live;
  ASSERT_TRUE(live.begun);
  EXPECT_FALSE(live.is(SvSdkInitFinish::Ready));
  Sender(live.port).send(packets);
  ASSERT_TRUE(live.ready());
  ASSERT_TRUE(live.hasFrames(6));
  EXPECT_EQ(live.runtime().GetLidarType(), file.runtime().GetLidarType());
  EXPECT_EQ(live.runtime().GetChannelNum(), 16);
  EXPECT_TRUE(live.runtime().IsCorrectionLoadSuccess());
  EXPECT_EQ(pointsOf(*live.source, 6), pointsOf(*file.source, 6));
  const double begin = static_cast<double>(sim::captureStartNs) * 1e-9;
  EXPECT_NEAR(live.source->beginSeconds, begin, 1e-6);
  EXPECT_TRUE(Session::poll([&] { return live.source->endSeconds > begin + 0.5; }));
  EXPECT_EQ(live.runtime().FindFrameId(begin + 0.35), 3);
  live.source->frameReady = false;
  EXPECT_TRUE(live.runtime().Iterate(begin + 0.1, begin + 0.2)) << "a window of time";
  const CaptureReport report = live.runtime().GetCaptureReport();
  EXPECT_EQ(report.packets, packets.size());
  EXPECT_EQ(report.lost + report.kernelDrops + report.disordered + report.repeated, 0U);
}

TEST(Live, CountsLossDisorderAndRepeatsByThePacketNumbers) {
  auto packets = packetsOf(smallLidar(16));
  packets.erase(packets.begin() + 21);                // lost
  std::swap(packets[30], packets[31]);                // out of order
  packets.insert(packets.begin() + 40, packets[39]);  // twice
  LiveSession live;
  Sender(live.port).send(packets);
  ASSERT_TRUE(live.hasFrames(16));
  const auto counted = [&] {
    const CaptureReport r = live.runtime().GetCaptureReport();
    return std::vector<std::uint64_t>{r.lost, r.disordered, r.repeated, r.kernelDrops};
  };
  EXPECT_TRUE(Session::poll(
      [&] {
        return counted() == std::vector<std::uint64_t>{1, 1, 1, 0};
      },
      5))
      << testing::PrintToString(counted());
  EXPECT_TRUE(live.decode(1)) << "a frame with a packet missing is shown with what it has";
}

TEST(Live, KeepsTheNewestFramesAndTheirIds) {
  const auto packets = packetsOf(smallLidar(12));
  LiveSession live(freePort(), "", 4);
  Sender(live.port).send(packets);
  ASSERT_TRUE(live.hasFrames(12));
  EXPECT_EQ(live.runtime().GetCaptureReport().oldestFrame, 8);
  EXPECT_FALSE(live.runtime().Iterate(7, 1)) << "gone";
  EXPECT_FALSE(live.runtime().Iterate(0, 8));
  EXPECT_TRUE(live.decode(11));
  ASSERT_TRUE(live.decode(5, 6)) << "what is left of a stack";
  EXPECT_EQ(live.source->mergedFrames, 3);
  const double begin = live.source->beginSeconds;
  EXPECT_TRUE(live.runtime().Iterate(begin, begin + 2.0));
}

TEST(Live, StoppingLeavesNoLossBehind) {
  const auto packets = packetsOf(smallLidar(9));
  LiveSession live;
  const Sender sender(live.port);
  sender.send(framesOf(packets, 0, 3));
  ASSERT_TRUE(live.hasFrames(3));
  live.runtime().SetStopRecv(true);
  sender.send(framesOf(packets, 3, 6));
  std::this_thread::sleep_for(std::chrono::milliseconds(200));  // nothing may come, so there is nothing to wait for
  EXPECT_EQ(live.runtime().GetFrameCount(), 3);
  live.runtime().SetStopRecv(false);
  sender.send(framesOf(packets, 6, 9));
  ASSERT_TRUE(live.hasFrames(6));
  EXPECT_EQ(live.runtime().GetCaptureReport().lost, 0U);
}

TEST(Live, ASenderThatBeginsAnewGoesOnWithNewFrames) {
  const auto first = packetsOf(smallLidar(5));
  PacketLog again;  // the same frame and packet numbers, ten seconds later
  sim::simulate(smallLidar(5), again, sim::captureStartNs + 10'000'000'000ULL);
  LiveSession live;
  const Sender sender(live.port);
  sender.send(framesOf(first, 0, 4));
  sender.send(again.packets);
  ASSERT_TRUE(live.hasFrames(9));
  EXPECT_EQ(live.runtime().GetCaptureReport().late, 0U);
  EXPECT_TRUE(live.decode(8));
}

TEST(Live, TakesBroadcastsAndAGroup) {
  const auto packets = packetsOf(smallLidar(2));
  {
    LiveSession live;
    Sender(live.port, "127.255.255.255").send(packets);
    EXPECT_TRUE(live.hasFrames(2));
  }
  LiveSession live(freePort(), "239.255.42.99");
  ASSERT_TRUE(live.begun) << live.runtime().InitError();
  Sender(live.port, "239.255.42.99").send(packets);
  EXPECT_TRUE(live.hasFrames(2));
}

bool hasIpv6() {
  const int probe = ::socket(AF_INET6, SOCK_DGRAM, 0);
  sockaddr_in6 place{};
  place.sin6_family = AF_INET6;
  place.sin6_addr = in6addr_loopback;
  const bool had = probe >= 0 && ::bind(probe, reinterpret_cast<sockaddr *>(&place), sizeof place) == 0;
  if (probe >= 0) ::close(probe);
  return had;
}

TEST(Live, TakesIpv6AndRecordsItAsItCame) {
  if (!hasIpv6()) GTEST_SKIP() << "this machine has no IPv6";
  sim::Options options = smallLidar(3);
  options.rateHz = 20;  // calibration in frame 0 alone
  const auto packets = packetsOf(options);
  const std::string path = skarnvisor::test::processFolder().toStdString() + "/six.pcap";
  std::vector<Bytes> shown;
  {
    LiveSession live;
    const Sender sender(live.port, "::1");
    sender.send(framesOf(packets, 0, 1));
    ASSERT_TRUE(live.ready());
    ASSERT_TRUE(live.runtime().StartRecordPcap(path)) << live.runtime().CaptureError();
    sender.send(framesOf(packets, 1, 3));
    ASSERT_TRUE(live.hasFrames(3));
    live.runtime().StopRecordPcap();
    shown = pointsOf(*live.source, 3);
  }
  CaptureFile file;
  std::string error;
  ASSERT_TRUE(file.open(path, error)) << error;
  CaptureCounters counters;
  RecordCursor cursor(file, counters, file.firstRecord(), ~std::uint64_t{0});
  CaptureRecord record;
  ASSERT_TRUE(cursor.next(record));
  const std::size_t etherHead = 14;
  EXPECT_EQ(record.bytes[etherHead] >> 4, 6);
  // Ones all over: the sum of pseudo header and datagram with its checksum in place.
  std::uint32_t sum = static_cast<std::uint32_t>(record.bytes.size() - etherHead - 40) + 17;
  for (std::size_t i = etherHead + 8; i < record.bytes.size(); ++i)
    sum += std::uint32_t{record.bytes[i]} << ((i - etherHead) % 2 == 0 ? 8 : 0);
  while (sum > 0xFFFF) sum = (sum & 0xFFFF) + (sum >> 16);
  EXPECT_EQ(sum, 0xFFFFU);
  Session again(path);
  ASSERT_TRUE(again.indexed(2));
  EXPECT_EQ(pointsOf(*again.source, 2), std::vector<Bytes>(shown.begin() + 1, shown.end()));

  const LiveSession group(freePort(), "ff12::4242");  // nothing carries a group's packets on the loopback interface
  EXPECT_TRUE(group.begun);
}

TEST(Live, SaysInOneSentenceWhyAPortCannotBeHad) {
  LiveSession first;
  ASSERT_TRUE(first.begun);
  struct Case {
    std::uint16_t port;
    const char *group;
    const char *words;
  };
  const Case cases[]{{first.port, "", "is in use by another program"},
                     {0, "", "lies between 1 and 65535"},
                     {freePort(), "10.0.0.1", "no multicast group"},
                     {freePort(), "::1", "no multicast group"},
                     {freePort(), "lidar", "not an IP address"}};
  for (const Case &c : cases) {
    LiveSession second(c.port, c.group);
    EXPECT_FALSE(second.begun);
    EXPECT_TRUE(second.is(SvSdkInitFinish::Failed));
    EXPECT_THAT(second.runtime().InitError(), HasSubstr(c.words));
    EXPECT_FALSE(second.runtime().Iterate(0, 1));
  }
}

TEST(Live, EndsAtOnceWhilePacketsCome) {
  const auto packets = packetsOf(smallLidar(3));
  for (int round = 0; round < 5; ++round) {
    auto live = std::make_unique<LiveSession>();
    const Sender sender(live->port);
    sender.send(packets);
    if (round % 2 == 1) live->ready();
    const auto begin = std::chrono::steady_clock::now();
    live.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
  }
}

}  // namespace
}  // namespace tarvo::lidar::test
