#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <numbers>

#include "contracts/runtime/decoded_frame_resize.h"
#include "contracts/runtime/point_fields.h"
#include "runtime/wire/blob_bodies.h"
#include "runtime/wire/crc32.h"
#include "runtime/wire/descriptor.h"
#include "tests/runtime/session_fixture.h"

namespace tarvo::lidar::test {
namespace {

constexpr double startSeconds = static_cast<double>(sim::captureStartNs) * 1e-9;
constexpr int frameSlots = 16 * 60;

TEST(Iterate, IsClippedToTheFramesThereAre) {
  Session session(writeCapture("clip.pcap", packetsOf(smallLidar(5))));
  ASSERT_TRUE(session.indexed(5));
  struct Case {
    int first, count, wantFirst, wantCount;  // a count of 0: nothing to do
  };
  for (const Case &c : {Case{0, 1, 0, 1}, Case{4, 1, 4, 1}, Case{5, 1, 0, 0}, Case{-1, 1, 0, 0}, Case{-3, 5, 0, 2},
                        Case{3, 10, 3, 2}, Case{-5, 100, 0, 5}, Case{2, 0, 0, 0}, Case{2, -1, 0, 0},
                        Case{2147483647, 2147483647, 0, 0}, Case{-2147483647, 2147483647, 0, 0}}) {
    SCOPED_TRACE(testing::Message() << c.first << ", " << c.count);
    ASSERT_EQ(session.decode(c.first, c.count), c.wantCount > 0);
    if (c.wantCount == 0) continue;
    EXPECT_EQ(session.source->mergedFrames, c.wantCount);
    EXPECT_EQ(session.source->pointCount, c.wantCount * frameSlots);
    EXPECT_EQ(session.source->points.size(), static_cast<std::size_t>(c.wantCount * frameSlots));
    EXPECT_EQ(session.runtime().DecodeFrame()->firstFrameId, c.wantFirst);
    EXPECT_NEAR(session.source->frameTimestamp, startSeconds + 0.1 * (c.wantFirst + c.wantCount - 1), 1e-6);
    EXPECT_EQ(session.source->remakeWidth, 16);
    EXPECT_EQ(session.source->laserPointCount, frameSlots);
  }
}

TEST(Iterate, TakesTheFramesOfATimeWindow) {
  Session session(writeCapture("time.pcap", packetsOf(smallLidar(5))));
  ASSERT_TRUE(session.indexed(5));
  ASSERT_TRUE(Session::poll([&] { return session.source->endSeconds > startSeconds + 0.45; }));
  struct Case {
    double begin, end;
    int first, count;
  };
  for (const Case &c : {Case{-0.1, 0.0, 0, 1}, Case{-5, -0.01, 0, 0}, Case{0.15, 0.251, 2, 1}, Case{0.05, 0.25, 1, 2},
                        Case{0.12, 0.15, 1, 1}, Case{0.1995, 0.3005, 3, 1}, Case{-9, 99, 0, 5}, Case{0.41, 0.45, 4, 1},
                        Case{7, 8, 0, 0}, Case{0.3, 0.1, 0, 0}, Case{std::nan(""), 1, 0, 0}}) {
    SCOPED_TRACE(testing::Message() << c.begin << " to " << c.end);
    ASSERT_EQ(session.decodeTime(startSeconds + c.begin, startSeconds + c.end), c.count > 0);
    if (c.count == 0) continue;
    EXPECT_EQ(session.runtime().DecodeFrame()->firstFrameId, c.first);
    EXPECT_EQ(session.source->mergedFrames, c.count);
  }
  EXPECT_EQ(session.runtime().FindFrameId(startSeconds - 0.01), -1);
  for (int frame = 0; frame < 5; ++frame) {
    const double micro = std::floor(session.runtime().GetFrameStartSeconds(frame) * 1e6) / 1e6;
    EXPECT_EQ(session.runtime().FindFrameId(micro), frame) << "a cursor set to a frame's start shows that frame";
  }
}

TEST(Iterate, AFrameThatCannotBeReadIsAnsweredWithoutPoints) {
  const std::string path = writeCapture("shrinking.pcap", packetsOf(smallLidar(5)));
  Session session(path);
  ASSERT_TRUE(session.indexed(5));
  ASSERT_TRUE(session.decode(1));
  ASSERT_GT(session.source->pointCount, 0);
  std::filesystem::resize_file(path, 200);
  ASSERT_TRUE(session.decode(4)) << "whoever waits must not wait in vain";
  EXPECT_EQ(session.source->pointCount, 0);
}

/// One frame by hand: 4 channels, 3 columns, 2 returns; each (column, return) a packet of its own.
class HandMade {
 public:
  HandMade() {
    descriptor.type = "KR2";
    descriptor.channels = descriptor.lasers = 4;
    descriptor.columns = 3;
    descriptor.echoes = 2;
    descriptor.pointsPerPacket = 4;
    descriptor.packetsPerFrame = 6;
    descriptor.motorSpeedRpm = 600;
    descriptor.elevationMinDeg = -10;
    descriptor.elevationMaxDeg = 20;
  }
  void describe() {
    begin(wire::PacketKind::FrameDescriptor);
    ASSERT_TRUE(wire::putDescriptor(writer, descriptor));
    end();
  }
  void points(unsigned column, unsigned echo, std::uint16_t raw, std::uint32_t mask = 0, const Bytes &parts = {},
              std::uint16_t channels = 4) {
    begin(wire::PacketKind::Points);
    wire::PointsHead head{mask, 4, 1, 4000, 0, static_cast<std::uint8_t>(4 + parts.size()), 57};
    wire::storePointsHead(writer.claim(wire::pointsHeadSize).first<wire::pointsHeadSize>(), head);
    wire::BlockHead block{static_cast<std::int32_t>(column * 90'000'000),
                          1000 * column,
                          static_cast<std::uint16_t>(column),
                          1,
                          channels,
                          static_cast<std::uint8_t>(echo)};
    wire::storeBlockHead(writer.claim(wire::blockHeadSize).first<wire::blockHeadSize>(), block);
    for (std::uint8_t i = 0; i < 4; ++i) {
      writer.put(static_cast<std::uint16_t>(i == 3 ? 0 : raw));  // the last channel has no return
      writer.put(static_cast<std::uint8_t>(10 + i));
      writer.put(static_cast<std::uint8_t>(0x80 + echo));
      writer.putBytes(parts);
    }
    end();
  }
  void calibration(wire::CalibrationKind kind, const std::string &text) {
    begin(wire::PacketKind::Calibration);
    const std::span bytes(reinterpret_cast<const std::uint8_t *>(text.data()), text.size());
    wire::putCalibration(writer, {kind, wire::crc32(bytes), {static_cast<std::uint32_t>(text.size()), 0, bytes}});
    end();
  }
  void whole(std::uint16_t raw) {
    describe();
    for (unsigned column = 0; column < 3; ++column)
      for (unsigned echo = 1; echo <= 2; ++echo) points(column, echo, raw);
  }
  std::string write(const std::string &name) { return writeCapture(name, packets); }

  void begin(wire::PacketKind kind) {
    wire::Header header;
    header.kind = kind;
    header.sequence = sequence++;
    header.frame = frame;
    header.frameTimeNs = sim::captureStartNs + frame * 100'000'000ULL;
    writer.begin(header);
  }
  void end() {
    const auto payload = writer.finish();
    packets.push_back({Bytes(payload.begin(), payload.end()), sim::captureStartNs});
  }

  wire::FrameDescriptor descriptor;
  wire::PacketWriter writer;
  std::vector<PacketLog::Packet> packets;
  std::uint32_t sequence = 0, frame = 0;
};

const SDKPointInfo &slot(const Session &session, unsigned column, unsigned echo, unsigned channel) {
  return session.source->points.at((column * 2 + echo - 1) * 4 + channel - 1);
}

TEST(Decode, PlacesPointsByTheirAnglesAndDistance) {
  HandMade made;
  made.whole(2500);  // 10 m
  made.calibration(wire::CalibrationKind::Corrections, "channel,elevation,azimuth\n1,30,0\n2,0,10\n3,-45,-20\n4,1,1\n");
  Session session(made.write("place.pcap"));
  ASSERT_TRUE(session.decode(0));
  const double elevations[]{30, 0, -45}, offsets[]{0, 10, -20}, nominal[]{20, 10, 0};
  for (unsigned column = 0; column < 3; ++column)
    for (unsigned channel = 1; channel <= 3; ++channel) {
      SCOPED_TRACE(testing::Message() << column << ", " << channel);
      const SDKPointInfo &p = slot(session, column, 1, channel);
      const double e = elevations[channel - 1] * std::numbers::pi / 180;
      const double a = (column * 90.0 + offsets[channel - 1]) * std::numbers::pi / 180;
      EXPECT_NEAR(p.x, 10 * std::cos(e) * std::sin(a), 1e-4);
      EXPECT_NEAR(p.y, 10 * std::cos(e) * std::cos(a), 1e-4);
      EXPECT_NEAR(p.z, 10 * std::sin(e), 1e-4);
      EXPECT_NEAR(p.distance, 10, 1e-4);
      EXPECT_FLOAT_EQ(p.azimuth, static_cast<float>(column) * 90.F);
      EXPECT_NEAR(p.azimuthCalib, std::fmod(column * 90.0 + offsets[channel - 1] + 360, 360), 1e-4);
      EXPECT_NEAR(p.elevation, nominal[channel - 1], 1e-4);
      EXPECT_FLOAT_EQ(p.elevationCalib, static_cast<float>(elevations[channel - 1]));
      EXPECT_EQ(p.channel, channel);
      EXPECT_EQ(p.intensity, 9 + channel);
      EXPECT_EQ(p.confidence, 0x81);
      EXPECT_EQ(p.timeNs, 1000 * column);
      EXPECT_NEAR(p.timestamp, startSeconds + 1e-6 * column, 1e-6);
    }
  EXPECT_EQ(slot(session, 0, 1, 4).channel, 0) << "no return, nothing to draw";
  EXPECT_EQ(session.runtime().DecodeFrame()->returnMode, 57);
  EXPECT_EQ(session.runtime().DecodeFrame()->motorSpeed, 600);
}

TEST(Decode, LossLeavesEmptySlotsAndNothingOfTheFrameBefore) {
  HandMade made;
  made.whole(2500);
  made.frame = 1;
  made.points(0, 1, 5000);
  made.points(2, 2, 5000);  // even the description is lost
  made.points(1, 2, 5000, 0, {}, 2);
  Session session(made.write("loss.pcap"));
  ASSERT_TRUE(session.indexed(2));
  ASSERT_TRUE(session.decode(0));
  ASSERT_TRUE(session.decode(1));
  ASSERT_EQ(session.source->pointCount, 24);
  for (unsigned column = 0; column < 3; ++column)
    for (unsigned echo = 1; echo <= 2; ++echo) {
      const bool came = (column == 0 && echo == 1) || (column != 0 && echo == 2);
      EXPECT_EQ(slot(session, column, echo, 2).channel, came ? 2 : 0);
      EXPECT_NEAR(slot(session, column, echo, 2).distance, came ? 20 : 0, 1e-4);
    }
  EXPECT_EQ(slot(session, 1, 2, 3).channel, 0) << "of a column that came in part the rest is empty too";
}

TEST(Decode, HonoursTheParameters) {
  HandMade made;
  made.whole(2500);
  made.calibration(wire::CalibrationKind::Firetimes, "channel,firetime_ns\n1,0\n2,5000\n3,0\n4,0\n");
  made.calibration(wire::CalibrationKind::Dcf, "channel,distance_offset\n1,0.5\n2,0\n3,0\n4,0\n");
  made.calibration(wire::CalibrationKind::NonlinearMapping, "input,output\n0,0\n100,1000\n");
  made.calibration(wire::CalibrationKind::ChannelConfig, "channel,enabled\n1,1\n2,1\n3,0\n4,1\n");
  Session session(made.write("param.pcap"));
  auto decodeWith = [&](auto change) {
    session.runtime().Params().write([&](FrameDecodeParam &param) {
      param = {};
      change(param);
    });
    ASSERT_TRUE(session.decode(0));
  };
  decodeWith([](FrameDecodeParam &p) { p.intensityMapping = false; });
  EXPECT_EQ(slot(session, 1, 1, 2).timeNs, 1000U);
  EXPECT_NEAR(slot(session, 1, 1, 1).distance, 10, 1e-4);
  EXPECT_EQ(slot(session, 1, 1, 2).intensity, 11);
  EXPECT_EQ(slot(session, 1, 1, 3).channel, 0) << "out of service";
  EXPECT_EQ(slot(session, 1, 2, 1).channel, 1);

  decodeWith([](FrameDecodeParam &p) { p.firetimeCorrection = true; });
  EXPECT_EQ(slot(session, 1, 1, 2).timeNs, 6000U);
  EXPECT_NEAR(slot(session, 1, 1, 2).azimuthCalib, 90 + 600 * 6 * 5e-6, 1e-4);
  EXPECT_EQ(slot(session, 1, 1, 2).intensity, 110) << "mapped, as by default";

  decodeWith([](FrameDecodeParam &p) { p.dcfCorrection = true; });
  EXPECT_NEAR(slot(session, 1, 1, 1).distance, 10.5, 1e-4);
  decodeWith([](FrameDecodeParam &p) { p.distanceCorrection = true; });
  EXPECT_NEAR(slot(session, 1, 1, 1).distance, 10.5, 1e-4);

  decodeWith([](FrameDecodeParam &p) { p.selectedEcho = 2; });
  EXPECT_EQ(slot(session, 1, 1, 1).channel, 0);
  EXPECT_EQ(slot(session, 1, 2, 1).channel, 1);
  EXPECT_EQ(session.runtime().DecodeFrame()->selectedEcho, 2);
}

TEST(Decode, FillsThePartsOfARecord) {
  HandMade made;
  made.describe();
  const auto mask = wire::bitOf(wire::PointPart::Colour) | wire::bitOf(wire::PointPart::Attribute2) |
                    wire::bitOf(wire::PointPart::Area) | wire::bitOf(wire::PointPart::ConfidenceHigh) |
                    wire::bitOf(wire::PointPart::WideIntensity);
  made.points(1, 2, 2500, mask, {1, 1, 2, 1, 3, 1, 44, 0x22, 0x11, 0x7F, 0x34, 0x12});
  Session session(made.write("parts.pcap"));
  ASSERT_TRUE(session.decode(0));
  const SDKPointInfo &p = slot(session, 1, 2, 1);
  EXPECT_EQ(p.red, 0x101);
  EXPECT_EQ(p.green, 0x102);
  EXPECT_EQ(p.blue, 0x103);
  EXPECT_EQ(fields::rawIntensity.get(p), 44);
  EXPECT_EQ(p.area, 0x1122);
  EXPECT_EQ(p.confidence, 0x7F82);
  EXPECT_EQ(p.intensity, 0x1234);
}

TEST(Decode, FillsStatusFaultsMotionAndPicture) {
  sim::Options options = smallLidar(6);
  options.telemetry = options.faults = options.imu = true;
  options.overlay = true;
  options.type = "NBQ_COLOR_V3";
  Session session(writeCapture("sides.pcap", packetsOf(options)));
  ASSERT_TRUE(session.indexed(6));
  session.runtime().Params().write([](FrameDecodeParam &p) { p.faultPackets = true; });
  ASSERT_TRUE(session.decode(0, 6));
  const SDKSource &source = *session.source;
  EXPECT_NE(session.runtime().DecodeFrame()->deviceStatus[0], 0);
  EXPECT_GT(source.statusPacketCount, 0);
  EXPECT_EQ(source.statusPacketBytes.size(),
            static_cast<std::size_t>(source.statusPacketCount * source.statusPacketStride));
  ASSERT_FALSE(source.imuSamples.empty());
  EXPECT_TRUE(source.imuSamples.front().valid);
  EXPECT_EQ(source.rgbMode, 4);
  EXPECT_GT(source.overlayColumns, 0);
  EXPECT_EQ(source.overlayPoints.size(), static_cast<std::size_t>(source.overlayColumns * source.overlayRows));
}

TEST(Decode, HandsFaultPacketsOnAsAskedAndWithinALimit) {
  struct Case {
    std::uint16_t recordSize;
    bool wanted;
    int handedOn, afterASecondDecode;
  };
  constexpr int storm = 100'000;
  constexpr int longest = (1 << 20) / 210;
  for (const Case &row : {Case{6, false, 0, 0}, Case{6, true, storm, storm}, Case{210, false, longest, longest}}) {
    SCOPED_TRACE(row.recordSize);
    HandMade made;
    made.whole(2500);
    const int most = 1100 / row.recordSize;
    for (int sent = 0; sent < storm; sent += most) {
      const Bytes records(std::size_t{row.recordSize} * static_cast<std::size_t>(std::min(most, storm - sent)), 1);
      made.begin(wire::PacketKind::Faults);
      ASSERT_TRUE(wire::putFaults(
          made.writer, {row.recordSize, static_cast<std::uint16_t>(records.size() / row.recordSize), records}));
      made.end();
    }
    Session session(made.write("storm.pcap"));
    session.runtime().Params().write([&](FrameDecodeParam &p) { p.faultPackets = row.wanted; });
    const SDKSource &source = *session.source;
    for (const int expected : {row.handedOn, row.afterASecondDecode}) {
      ASSERT_TRUE(session.decode(0));
      EXPECT_NEAR(source.statusPacketCount, expected, 5) << "whole packets, nobody has read them meanwhile";
      EXPECT_EQ(source.statusPacketBytes.size(),
                std::size_t{row.recordSize} * static_cast<unsigned>(source.statusPacketCount));
    }
  }
}

TEST(Decode, OffersThePictureToTheFastPath) {
  sim::Options options = smallLidar(1);
  options.type = "NBQ_COLOR_V3";
  options.overlay = true;
  Session session(writeCapture("fast.pcap", packetsOf(options)));
  bool taken = false;
  unsigned offered = 0;
  session.source->tryFillVertices = [&](const SDKPointInfo *points, unsigned count, int mode) {
    offered = points == session.source->points.data() && mode == 1 ? count : 0;
    return taken;
  };
  for (const int mode : {4, 1, 1}) {
    offered = 0;
    session.runtime().Params().write([&](FrameDecodeParam &p) { p.nbqRgbMode = mode; });
    ASSERT_TRUE(session.decode(0));
    EXPECT_EQ(session.source->rgbMode, mode);
    EXPECT_EQ(offered, mode == 1 ? session.source->points.size() : 0U);
    EXPECT_EQ(session.source->fastPathDone, mode == 1 && taken);
    taken = mode == 1;
  }
}

TEST(Decode, DamagedPacketsAreSkipped) {
  auto packets = packetsOf(smallLidar(4));
  std::uint64_t state = 1;
  for (std::size_t i = 0; i < packets.size(); ++i) {
    auto &payload = packets[i].payload;
    const auto draw = [&] { return (state = state * 6364136223846793005ULL + 1442695040888963407ULL) >> 33; };
    if (i < 3) continue;  // the description and the first points
    for (int hit = 0; hit < 4; ++hit)
      payload[wire::headerSize + draw() % (payload.size() - wire::headerSize)] = static_cast<std::uint8_t>(draw());
    if (i % 5 == 0) payload.resize(draw() % payload.size());
  }
  Session session(writeCapture("damaged.pcap", packets));
  ASSERT_TRUE(session.is(SvSdkInitFinish::Ready));
  const int frames = session.runtime().GetFrameCount();
  for (int frame = 0; frame < frames; ++frame) ASSERT_TRUE(session.decode(frame));
}

TEST(Decode, AResizeByThePlugInIsKeptAndUsed) {
  Session session(writeCapture("resize.pcap", packetsOf(smallLidar(5))));
  ASSERT_TRUE(session.indexed(5));
  DecodedFrame &frame = *session.runtime().DecodeFrame();
  ASSERT_TRUE(resizeDecodedFrame(frame, 4));
  const auto capacity = frame.packetCapacity;
  ASSERT_TRUE(session.decode(0, 2));
  EXPECT_EQ(frame.packetCapacity, capacity);
  EXPECT_EQ(session.source->pointCount, 2 * frameSlots);
  std::thread resizer([&] {
    for (int i = 0; i < 200; ++i) resizeDecodedFrame(frame, 1 + i % 3);
  });
  int decoded = 0;
  for (int i = 0; i < 20; ++i) {
    session.source->frameReady = false;
    decoded +=
        session.runtime().Iterate(i % 5, 1) && Session::poll([&] { return session.source->frameReady.load(); }, 1);
  }
  resizer.join();
  EXPECT_GT(decoded, 0);
  ASSERT_TRUE(session.decode(0, 5)) << "grows again as the decode needs it";
  EXPECT_EQ(session.source->pointCount, 5 * frameSlots);
}

TEST(Decode, FramesInARowAreThoseThatAreAskedForOneByOne) {
  const auto path = writeCapture("row.pcap", packetsOf(smallLidar(8)));
  Session inRow(path);
  ASSERT_TRUE(inRow.indexed(8));
  for (int frame = 0; frame < 8; ++frame) {
    Session alone(path);
    ASSERT_TRUE(alone.indexed(8));
    ASSERT_TRUE(inRow.decode(frame) && alone.decode(frame));
    ASSERT_EQ(inRow.source->points.size(), alone.source->points.size());
    EXPECT_EQ(std::memcmp(inRow.source->points.data(), alone.source->points.data(),
                          alone.source->points.size() * sizeof(SDKPointInfo)),
              0)
        << frame;
  }
  const DecodedFrame &frame = *inRow.runtime().DecodeFrame();
  EXPECT_EQ(frame.points, inRow.source->points.data()) << "a frame's points lie in memory once";
  EXPECT_EQ(frame.pointCount, inRow.source->points.size());
}

}  // namespace
}  // namespace tarvo::lidar::test
