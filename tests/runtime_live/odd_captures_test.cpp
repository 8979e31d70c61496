#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "runtime/capture/capture_source.h"
#include "tests/runtime_live/live_fixture.h"

namespace tarvo::lidar::test {
namespace {

using Packets = std::vector<PacketLog::Packet>;
constexpr std::int64_t second = 1'000'000'000;

std::uint32_t frameOf(const PacketLog::Packet &packet) { return wire::parseHeader(packet.payload)->frame; }

/// Moves the sensor's clock, and the time of the reception, from a frame on.
void shiftClock(Packets &packets, std::uint32_t fromFrame, std::int64_t sensorNs, std::int64_t receptionNs = 0) {
  for (auto &packet : packets) {
    if (frameOf(packet) < fromFrame) continue;
    auto *at = packet.payload.data() + wire::header_offset::frameTimeNs;
    std::uint64_t time;
    std::memcpy(&time, at, sizeof time);
    time += static_cast<std::uint64_t>(sensorNs);
    std::memcpy(at, &time, sizeof time);
    packet.ns += static_cast<std::uint64_t>(receptionNs);
  }
}

Packets larger(unsigned columns, std::uint32_t firstFrame) {
  sim::Options options = smallLidar(8);
  options.columns = columns;
  return framesOf(packetsOf(options), firstFrame, 8);
}

/// Waits for the end of the index and gives its report.
CaptureReport reportOf(Session &session) {
  EXPECT_TRUE(Session::poll([&] { return session.runtime().GetCaptureReport().complete; }));
  return session.runtime().GetCaptureReport();
}

TEST(OddCapture, DeliversEveryFrameAndCountsWhatWasOdd) {
  struct Case {
    const char *name;
    std::function<void(Packets &)> change;
    std::uint64_t CaptureReport::*count;
    std::uint64_t times;
    double span;  // of the timeline, seconds
  };
  const auto none = [](Packets &) {};
  const Case cases[]{
      {"as it is", none, &CaptureReport::lost, 0, 0.7},
      {"clock a day forward", [](Packets &p) { shiftClock(p, 4, 86'400 * second); }, &CaptureReport::clockJumps, 1,
       0.7},
      {"clock an hour back", [](Packets &p) { shiftClock(p, 4, -3'600 * second); }, &CaptureReport::clockJumps, 1, 0.7},
      {"clock back and forth",
       [](Packets &p) {
         shiftClock(p, 2, -50 * second);
         shiftClock(p, 5, 70 * second);
       },
       &CaptureReport::clockJumps, 2, 0.7},
      {"clock to the end of time", [](Packets &p) { shiftClock(p, 4, INT64_MAX / 2); }, &CaptureReport::clockJumps, 1,
       0.7},
      {"a pause", [](Packets &p) { shiftClock(p, 4, 5 * second, 5 * second); }, &CaptureReport::gapCount, 1, 5.7},
      {"a packet lost", [](Packets &p) { p.erase(p.begin() + 5); }, &CaptureReport::lost, 1, 0.7},
      {"a packet twice", [](Packets &p) { p.insert(p.begin() + 5, p[5]); }, &CaptureReport::repeated, 1, 0.7},
      {"two packets changed places", [](Packets &p) { std::swap(p[5], p[6]); }, &CaptureReport::disordered, 1, 0.7},
      {"a frame of another size",
       [](Packets &p) {
         Packets all = framesOf(p, 0, 4);
         for (auto &packet : larger(90, 4)) all.push_back(packet);
         p = all;
       },
       &CaptureReport::shapeChanges, 1, 0.7},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.name);
    Packets packets = packetsOf(smallLidar(8));
    c.change(packets);
    Session session(writeCapture("odd.pcap", packets));
    ASSERT_TRUE(session.is(SvSdkInitFinish::Ready)) << session.runtime().InitError();
    const CaptureReport report = reportOf(session);
    EXPECT_EQ(report.*c.count, c.times);
    ASSERT_EQ(session.runtime().GetFrameCount(), 8);
    for (int frame = 0; frame < 8; ++frame) {
      EXPECT_EQ(session.runtime().FindFrameId(session.runtime().GetFrameStartSeconds(frame)), frame);
      EXPECT_TRUE(session.decode(frame)) << frame;
    }
    const double span = session.runtime().GetFrameStartSeconds(7) - session.runtime().GetFrameStartSeconds(0);
    EXPECT_NEAR(span, c.span, 0.01);
    EXPECT_NEAR(session.source->endSeconds - session.source->beginSeconds, c.span + 0.1, 0.02);
  }
}

TEST(OddCapture, ListsTheSensorsAndShowsTheChosenOne) {
  sim::Options other = smallLidar(3);
  other.type = "KR6_31_52";
  CaptureMaker maker;
  const Packets shown = packetsOf(smallLidar(3)), second = packetsOf(other);
  for (const auto &packet : shown) maker.add(ethernet(ipv4(udp(packet.payload, 2368))), packet.ns);
  for (const auto &packet : second) maker.add(ethernet(ipv4(udp(packet.payload, 2369))), packet.ns);
  const std::string path = writeFile("sensors.pcap", maker.bytes);
  for (const int port : {0, 2368, 2369}) {
    auto source = createSdkSource();
    source->driverParam.sourceKind = 6;
    source->driverParam.sensorPort = port;
    source->driverParam.capturePath = path;
    source->runtime->Init(source->driverParam);
    ASSERT_TRUE(Session::poll([&] { return source->runtime->GetCaptureReport().complete; }));
    const CaptureReport report = source->runtime->GetCaptureReport();
    ASSERT_EQ(report.sensors.size(), 2U);
    EXPECT_EQ(report.sensors[0].port, 2368);
    EXPECT_EQ(report.sensors[0].packets, shown.size());
    EXPECT_EQ(report.sensors[0].shown, port != 2369);
    EXPECT_EQ(report.sensors[1].type, "KR6_31_52");
    EXPECT_EQ(report.sensors[1].packets, second.size());
    EXPECT_EQ(source->runtime->GetPcapPort(), port == 2369 ? 2369 : 2368);
  }
}

TEST(OddCapture, AFileCutInAPacketGivesTheFramesInFrontAndSaysSo) {
  const Packets packets = packetsOf(smallLidar(5));
  const std::string whole = writeCapture("whole.pcap", packets);
  const auto size = std::filesystem::file_size(whole);
  const std::size_t last = packets.back().payload.size();
  for (const std::size_t taken : {std::size_t{1}, last / 2, last - 10, last + 30, last + 42 + 10}) {
    const std::string path = whole + ".cut";
    std::filesystem::copy_file(whole, path, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::resize_file(path, size - taken);
    Session session(path);
    ASSERT_TRUE(session.is(SvSdkInitFinish::Ready));
    EXPECT_TRUE(reportOf(session).truncated);
    ASSERT_EQ(session.runtime().GetFrameCount(), 5);
    EXPECT_TRUE(session.decode(4)) << "the frame with what it has";
  }
}

/// A payload of the capture format with a true header.
Bytes packetWith(wire::PacketKind kind, std::uint32_t sequence, std::uint32_t frame, const Bytes &body, bool ends) {
  Bytes payload(wire::headerSize);
  const auto put = [&payload](std::size_t at, auto value) { std::memcpy(payload.data() + at, &value, sizeof value); };
  put(wire::header_offset::magic, wire::magicWord);
  payload[wire::header_offset::version] = wire::formatVersion;
  payload[wire::header_offset::kind] = static_cast<std::uint8_t>(kind);
  put(wire::header_offset::sequence, sequence);
  put(wire::header_offset::frame, frame);
  put(wire::header_offset::frameTimeNs, sim::captureStartNs + frame * std::uint64_t{1'000'000});
  put(wire::header_offset::bodyLength, static_cast<std::uint16_t>(body.size()));
  payload[wire::header_offset::flags] = ends ? 1 : 0;
  return payload + body;
}

Bytes descriptorBody() {
  for (const auto &packet : packetsOf(smallLidar(1)))
    if (const auto header = wire::parseHeader(packet.payload); header->kind == wire::PacketKind::FrameDescriptor) {
      const auto body = wire::bodyOf(packet.payload, *header);
      return {body.begin(), body.end()};
    }
  return {};
}

TEST(OddCapture, TakesAHundredThousandFramesWithoutAPoint) {
  const Bytes body = descriptorBody();
  CaptureMaker maker;
  maker.bytes.reserve(40'000'000);
  constexpr std::uint32_t frames = 100'000;
  for (std::uint32_t frame = 0; frame < frames; ++frame) {
    const Bytes packet = ethernet(ipv4(udp(packetWith(wire::PacketKind::FrameDescriptor, frame, frame, body, true))));
    const std::uint64_t ns = sim::captureStartNs + frame * std::uint64_t{1'000'000};
    for (const Bytes &part :
         {maker.w32(ns / second), maker.w32(ns % second), maker.w32(packet.size()), maker.w32(packet.size()), packet})
      maker.bytes.insert(maker.bytes.end(), part.begin(), part.end());
  }
  Session session(writeFile("tiny.pcap", maker.bytes));
  ASSERT_TRUE(session.is(SvSdkInitFinish::Ready)) << session.runtime().InitError();
  const CaptureReport report = reportOf(session);
  EXPECT_EQ(session.runtime().GetFrameCount(), static_cast<int>(frames));
  EXPECT_EQ(report.lost + report.gapCount + report.clockJumps, 0U);
  ASSERT_TRUE(session.decode(99'999));
  EXPECT_TRUE(std::all_of(session.source->points.begin(), session.source->points.end(),
                          [](const SDKPointInfo &point) { return point.channel == 0; }));
}

TEST(OddCapture, SurvivesCountsThatLie) {
  const Packets good = packetsOf(smallLidar(3));
  struct Case {
    const char *name;
    wire::PacketKind kind;
    std::size_t at;  // in the body
    std::uint16_t value;
  };
  using wire::PacketKind;
  const Case cases[]{{"no channels", PacketKind::FrameDescriptor, 0, 0},
                     {"65535 channels", PacketKind::FrameDescriptor, 0, 0xFFFF},
                     {"65535 columns", PacketKind::FrameDescriptor, 4, 0xFFFF},
                     {"no columns", PacketKind::FrameDescriptor, 4, 0},
                     {"no records a block", PacketKind::Points, 4, 0},
                     {"65535 records a block", PacketKind::Points, 4, 0xFFFF},
                     {"65535 blocks", PacketKind::Points, 6, 0xFFFF},
                     {"column out of range", PacketKind::Points, 16 + 8, 0xFFFF},
                     {"channel 0", PacketKind::Points, 16 + 10, 0},
                     {"channel out of range", PacketKind::Points, 16 + 10, 0xFFFF},
                     {"65535 records in use", PacketKind::Points, 16 + 12, 0xFFFF},
                     {"calibration run beyond its file", PacketKind::Calibration, 8, 0xFFFF}};
  for (const Case &c : cases) {
    SCOPED_TRACE(c.name);
    Packets packets = good;
    for (auto &packet : packets)
      if (frameOf(packet) == 1 && wire::parseHeader(packet.payload)->kind == c.kind &&
          wire::headerSize + c.at + 2 <= packet.payload.size())
        std::memcpy(packet.payload.data() + wire::headerSize + c.at, &c.value, sizeof c.value);
    Session session(writeCapture("lies.pcap", packets));
    ASSERT_TRUE(session.is(SvSdkInitFinish::Ready));
    ASSERT_TRUE(session.indexed(3));
    session.source->frameReady = false;
    if (session.runtime().Iterate(1, 1)) Session::poll([&] { return session.source->frameReady.load(); }, 1);
    EXPECT_TRUE(session.decode(2)) << "the frame behind it is whole";
  }
}

TEST(OddCapture, ThePathMayHaveAnyLetters) {
  const std::string folder = skarnvisor::test::processFolder().toStdString() + "/Fahrt über Łódź 東京";
  std::filesystem::create_directory(folder);
  const std::string path = writeCapture("plain.pcap", packetsOf(smallLidar(3)));
  std::filesystem::copy_file(path, folder + "/ö.pcap");
  Session session(folder + "/ö.pcap");
  ASSERT_TRUE(session.indexed(3));
  EXPECT_TRUE(session.runtime().CutPcap(folder + "/Teil – 1.pcap", 0, 1));
  EXPECT_TRUE(Session(folder + "/Teil – 1.pcap").indexed(2));
}

class NoListener final : public FrameSourceListener {
 public:
  void described(const StreamDescription &, const PacketDecoder &, int) override {}
  void calibrationFound(const CalibrationBlob &) override {}
  void framesGrew() override {}
  void failed(const std::string &) override { over = true; }
  void finished() override { over = true; }
  std::atomic<bool> over{false};
};

/// 20 GB on paper: between the packets of the lidar lie blocks of 16 MiB that nobody wrote.
TEST(OddCapture, TheIndexOfAHugeFileStaysSmall) {
  constexpr std::uint64_t hole = 16u << 20;
  constexpr std::uint32_t holes = 1'250;
  constexpr std::uint32_t framesBetween = 64;
  const Bytes body = descriptorBody();
  const std::string path = writeFile("huge.pcapng", {});
  const int file = ::open(path.c_str(), O_WRONLY);
  ASSERT_GE(file, 0);
  std::uint64_t size = 0;
  std::uint32_t frame = 0;
  for (std::uint32_t block = 0; block < holes; ++block) {
    CaptureMaker maker(CaptureMaker::Form::Ng);
    if (block != 0) maker.bytes.clear();
    for (const std::uint32_t end = frame + framesBetween; frame < end; ++frame)
      maker.add(ethernet(ipv4(udp(packetWith(wire::PacketKind::FrameDescriptor, frame, frame, body, true)))),
                sim::captureStartNs + frame * std::uint64_t{1'000'000});
    const Bytes bytes = maker.bytes + maker.w32(0x0BAD) + maker.w32(hole);
    ASSERT_EQ(::pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(size)), static_cast<ssize_t>(bytes.size()));
    size += bytes.size() - 8 + hole;
  }
  ASSERT_EQ(::ftruncate(file, static_cast<off_t>(size)), 0);
  ::close(file);
  ASSERT_GT(std::filesystem::file_size(path), 20'000'000'000ULL);
  NoListener listener;
  CaptureSource source(path, 0, listener);
  source.start();
  ASSERT_TRUE(Session::poll([&] { return listener.over.load(); }, 60));
  EXPECT_EQ(source.index().count(), static_cast<int>(frame));
  EXPECT_LT(source.index().memoryBytes(), frame * 24ULL);
  FramePackets packets;
  EXPECT_TRUE(source.readFrame(static_cast<int>(frame) - 1, packets, [] { return false; }));
  source.stop();
  std::filesystem::remove(path);
}

}  // namespace
}  // namespace tarvo::lidar::test
