#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/runtime/session_fixture.h"

namespace tarvo::lidar::test {
namespace {

using testing::HasSubstr;

TEST(SessionStart, KnowsTheLidarItsFramesAndItsCalibration) {
  sim::Options options = smallLidar(4);
  options.type = "KR6_31_52";
  Session session(writeCapture("start.pcap", packetsOf(options)));
  ASSERT_TRUE(session.is(SvSdkInitFinish::Ready));
  EXPECT_FALSE(session.is(SvSdkInitFinish::Failed));
  EXPECT_EQ(session.runtime().InitError(), "");
  EXPECT_EQ(session.runtime().GetLidarType(), "KR6_31_52");
  EXPECT_EQ(session.runtime().GetChannelNum(), 16);
  EXPECT_EQ(session.runtime().GetPcapPort(), 2368);
  EXPECT_TRUE(session.runtime().HasPreParser());
  ASSERT_TRUE(session.indexed(4));
  const SDKSource &source = *session.source;
  EXPECT_TRUE(source.clipActive && !source.clipStopped);
  EXPECT_TRUE(Session::poll([&] { return !source.clipLoading; }));
  const double start = static_cast<double>(sim::captureStartNs) * 1e-9;
  EXPECT_NEAR(source.beginSeconds, start, 1e-6);
  EXPECT_TRUE(Session::poll([&] { return source.endSeconds > start + 0.35; }));
  EXPECT_NEAR(session.runtime().GetFrameStartSeconds(2), start + 0.2, 1e-6);
  EXPECT_EQ(session.runtime().GetFrameStartSeconds(4), 0.0);
  EXPECT_TRUE(session.runtime().IsCorrectionLoadSuccess() && source.correctionExportPending);
  EXPECT_TRUE(session.runtime().IsFiretimesLoadSuccess() && source.firetimesExportPending);
  EXPECT_FALSE(session.runtime().IsDcfLoadSuccess() || source.dcfExportPending);
  const DecodedFrame *frame = session.runtime().DecodeFrame();
  ASSERT_NE(frame, nullptr);
  EXPECT_GE(frame->packetCapacity * frame->pointsPerPacket, 16U * 60U) << "room for one frame before the first decode";
}

TEST(SessionStart, FailsWithOneClearSentence) {
  CaptureMaker foreign;
  for (int i = 0; i < 3; ++i) foreign.add(ethernet(ipv4(udp({1, 2, 3}, 53))), 1);
  foreign.add(ethernet(ipv4(udp(Bytes(60, 'S'), 443))), 2);
  foreign.add(ethernet({1, 2, 3}, 0x0806), 3);
  CaptureMaker speechless;  // our packets, but none says what the lidar is
  for (const auto &packet : packetsOf(smallLidar(3)))
    if (wire::parseHeader(packet.payload)->kind != wire::PacketKind::FrameDescriptor)
      speechless.add(ethernet(ipv4(udp(packet.payload))), packet.ns);
  const std::string folder = skarnvisor::test::processFolder().toStdString();
  const std::string silentPipe = folder + "/pipe.pcap";
  ASSERT_EQ(::mkfifo(silentPipe.c_str(), 0600), 0);
  struct Case {
    std::string path;
    std::vector<std::string> words;
    int kind = 6;
  };
  const std::vector<Case> cases{
      {folder + "/absent.pcap", {"There is no file", "absent.pcap"}},
      {folder, {"is not a file"}},
      {silentPipe, {"is not a file"}},
      {writeFile("zero.pcap", {}), {"zero.pcap", "is empty"}},
      {writeFile("text.pcap", Bytes(500, 'x')), {"not a capture in pcap or pcapng form"}},
      {writeFile("cut.pcap", Bytes{0xD4, 0xC3, 0xB2, 0xA1, 2, 0}), {"not a capture in pcap or pcapng form"}},
      {writeFile("none.pcap", CaptureMaker().bytes), {"holds no packet."}},
      {writeFile("foreign.pcap", foreign.bytes), {"no packet of a known lidar", "5 packets", "UDP ports 53, 443"}},
      {writeFile("speechless.pcap", speechless.bytes), {"none that describes the lidar"}},
      {"", {"No capture file"}},
      {folder + "/absent.pcap", {"UDP port lies between"}, 0},
  };
  for (const Case &c : cases) {
    Session session(c.path, c.kind);
    EXPECT_TRUE(session.is(SvSdkInitFinish::Failed)) << c.path;
    EXPECT_FALSE(session.is(SvSdkInitFinish::Ready));
    for (const std::string &word : c.words) EXPECT_THAT(session.runtime().InitError(), HasSubstr(word));
    EXPECT_FALSE(session.runtime().Iterate(0, 1));
    EXPECT_EQ(session.runtime().DecodeFrame(), nullptr);
    EXPECT_FALSE(session.source->clipActive);
  }
}

TEST(SessionStart, EndsAtOnceInTheMiddleOfItsWork) {
  sim::Options options = smallLidar(300);
  options.columns = 400;
  const std::string path = writeCapture("long.pcap", packetsOf(options));
  for (int round = 0; round < 20; ++round) {
    auto source = createSdkSource();
    source->driverParam.sourceKind = 6;
    source->driverParam.capturePath = path;
    source->runtime->Init(source->driverParam);
    if (round % 2 == 1) {
      Session::poll([&] { return source->runtime->GetInitFinish(SvSdkInitFinish::Ready); });
      source->runtime->Iterate(0, 300);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(round));
    const auto begin = std::chrono::steady_clock::now();
    source.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
  }
}

}  // namespace
}  // namespace tarvo::lidar::test
