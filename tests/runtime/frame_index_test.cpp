#include <gtest/gtest.h>

#include <condition_variable>
#include <map>
#include <mutex>

#include "runtime/capture/capture_source.h"
#include "tests/runtime/capture_maker.h"

namespace tarvo::lidar::test {
namespace {

/// Waits for the end of an index pass.
struct EndOfIndex : FrameSourceListener {
  void described(const StreamDescription &d, const PacketDecoder &, int p) override {
    type = d.type;
    port = p;
  }
  void calibrationFound(const CalibrationBlob &) override { ++calibrations; }
  void framesGrew() override {}
  void failed(const std::string &reason) override { end(reason); }
  void finished() override { end({}); }
  void end(const std::string &reason) {
    const std::lock_guard lock(mutex);
    error = reason;
    over = true;
    changed.notify_all();
  }
  bool wait() {
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, std::chrono::seconds(20), [this] { return over; });
  }
  std::mutex mutex;
  std::condition_variable changed;
  bool over = false;
  std::string error, type;
  int port = 0, calibrations = 0;
};

TEST(FrameIndex, KeepsFarApartFramesInLittleMemory) {
  FrameIndex index;
  std::vector<IndexedFrame> truth;
  std::int64_t ns = 1'700'000'000'000'000'000;
  std::uint64_t offset = 24;
  for (std::uint32_t i = 0; i < 20'000; ++i) {
    truth.push_back({offset, 1000 + i, ns, i});
    index.append(truth.back());
    offset += i % 3000 == 0 ? 6'000'000'000 : 400'000;  // now and then far more than a group spans
    ns += i % 5000 == 0 ? 3'600'000'000'000 : 100'000'000;
  }
  for (int i = 0; i < index.count(); ++i) {
    const auto frame = index.at(i);
    const auto &want = truth[static_cast<std::size_t>(i)];
    ASSERT_TRUE(frame);
    ASSERT_EQ(frame->offset, want.offset);
    ASSERT_EQ(frame->length, want.length);
    ASSERT_EQ(frame->startNs, want.startNs);
    ASSERT_EQ(frame->packets, want.packets);
    const double seconds = static_cast<double>(want.startNs) * 1e-9;
    ASSERT_EQ(index.find(seconds), i);
    ASSERT_EQ(index.find(seconds - 1e-6), i) << "what a cursor loses in whole microseconds";
    ASSERT_EQ(index.find(seconds - 1e-3), i - 1);
    ASSERT_EQ(index.firstFrom(seconds), i);
    ASSERT_EQ(index.firstFrom(seconds + 1e-3), i + 1);
  }
  EXPECT_FALSE(index.at(-1) || index.at(index.count()));
  EXPECT_EQ(index.find(std::numeric_limits<double>::quiet_NaN()), -1);
  EXPECT_EQ(index.find(1e300), index.count() - 1);
  EXPECT_EQ(index.find(-1e300), -1);
  EXPECT_LT(index.memoryBytes(), 20'000U * 17);
}

TEST(FrameIndex, StartsNeverFall) {
  FrameIndex index;
  for (const std::int64_t start : {1, 3, 2, 4}) index.append({0, 1, start * 1'000'000'000, 1});
  EXPECT_EQ(index.at(2)->startNs, 3'000'000'000);
  EXPECT_EQ(index.find(3.5), 2);
}

/// What a walk over the packets, one after the other, says of the frames.
struct Walked {
  std::map<std::uint32_t, std::uint32_t> packets;  // by frame number
  std::map<std::uint32_t, std::uint64_t> starts;
  std::uint64_t lost = 0;
};

Walked walk(const std::vector<PacketLog::Packet> &packets) {
  Walked out;
  std::uint32_t newest = 0, count = 0;
  for (const auto &packet : packets) {
    const auto header = wire::parseHeader(packet.payload);
    ++out.packets[header->frame];
    out.starts[header->frame] = header->frameTimeNs;
    newest = std::max(newest, header->sequence);
    ++count;
  }
  out.lost = newest + 1 - wire::parseHeader(packets.front().payload)->sequence - count;
  return out;
}

TEST(CaptureIndex, AgreesWithALinearWalkInEveryFileForm) {
  struct Case {
    const char *name;
    double loss, reorder;
    CaptureMaker maker;
  };
  const Case cases[]{{"clean", 0, 0, CaptureMaker()},
                     {"lossy", 0.05, 0, CaptureMaker(CaptureMaker::Form::Micro)},
                     {"reordered", 0, 0.1, CaptureMaker(CaptureMaker::Form::Ng)},
                     {"swapped", 0.02, 0.02, CaptureMaker(CaptureMaker::Form::Ng, true)}};
  for (const Case &c : cases) {
    SCOPED_TRACE(c.name);
    sim::Options options = smallLidar(40);
    options.telemetry = true;
    options.loss = c.loss;
    options.reorder = c.reorder;
    const auto packets = packetsOf(options);
    const Walked truth = walk(packets);
    EndOfIndex end;
    CaptureSource source(writeCapture("walk.pcap", packets, c.maker), 0, end);
    source.start();
    ASSERT_TRUE(end.wait());
    ASSERT_EQ(end.error, "");
    EXPECT_EQ(end.type, options.type);
    EXPECT_EQ(end.port, 2368);
    ASSERT_EQ(source.index().count(), static_cast<int>(truth.packets.size()));
    EXPECT_EQ(source.counters().get(InputFault::LostPacket), truth.lost);
    EXPECT_EQ(source.counters().get(InputFault::LatePacket), 0U);
    int id = 0;
    for (const auto &[number, count] : truth.packets) {
      FramePackets frame;
      ASSERT_TRUE(source.readFrame(id, frame, [] { return false; }));
      EXPECT_EQ(frame.size(), count) << "frame " << id;
      EXPECT_EQ(wire::parseHeader(frame.payload(0))->frame, number);
      EXPECT_EQ(source.index().at(id)->packets, count);
      EXPECT_EQ(static_cast<std::uint64_t>(source.index().at(id)->startNs), truth.starts.at(number) / 100 * 100);
      ++id;
    }
  }
}

TEST(CaptureIndex, PicksOneSensorOfSeveral) {
  const auto packets = packetsOf(smallLidar(3));
  CaptureMaker maker;
  for (const auto &packet : packets)
    for (const std::uint16_t port : {3000, 2368}) maker.add(ethernet(ipv4(udp(packet.payload, port))), packet.ns);
  const std::string path = writeFile("two.pcap", maker.bytes);
  for (const int wanted : {0, 2368, 3000}) {
    EndOfIndex end;
    CaptureSource source(path, wanted, end);
    source.start();
    ASSERT_TRUE(end.wait());
    EXPECT_EQ(end.port, wanted == 0 ? 3000 : wanted);
    EXPECT_EQ(source.index().count(), 3);
    EXPECT_EQ(source.counters().get(InputFault::LostPacket), 0U);
  }
}

}  // namespace
}  // namespace tarvo::lidar::test
