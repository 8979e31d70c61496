#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "runtime/wire/blob_bodies.h"
#include "runtime/wire/crc32.h"
#include "runtime/wire/descriptor.h"

namespace {

using namespace tarvo::lidar::wire;
using Bytes = std::vector<std::uint8_t>;

Header sampleHeader() {
  return {PacketKind::Status, 7, 0xFFFFFFFE, 42, 1'715'673'600'123'456'789ull, 99'000'000, 0, 0};
}

/// The body that `fill` writes.
Bytes bodyBy(const std::function<bool(PacketWriter &)> &fill) {
  PacketWriter writer;
  writer.begin(sampleHeader());
  EXPECT_TRUE(fill(writer));
  const auto payload = writer.finish();
  const auto header = parseHeader(payload);
  if (!header) {
    ADD_FAILURE() << "header does not parse";
    return {};
  }
  const auto body = bodyOf(payload, *header);
  return {body.begin(), body.end()};
}

FrameDescriptor sampleDescriptor() {
  FrameDescriptor d;
  d.channels = 3;
  d.lasers = 4;
  d.columns = 900;
  d.echoes = 2;
  d.returnMode = 57;
  d.frameRateMilliHz = 10'000;
  d.motorSpeedRpm = 600.5;
  d.pointsPerPacket = 192;
  d.packetsPerFrame = 600;
  d.partMask = bitOf(PointPart::Colour) | bitOf(PointPart::SpadId);
  d.rgbMode = 4;
  d.laserPointCount = 5400;
  d.distanceUnitUm = 4000;
  d.calibrationMask = 3;
  d.selectedEcho = 1;
  d.elevationMinDeg = -25;
  d.elevationMaxDeg = 15;
  d.type = "NBQ_COLOR_V3";
  d.nominalElevations = {3000, -1, -5000};
  return d;
}

TEST(WireHeader, IsRefusedWhenItCannotBeOurs) {
  PacketWriter writer;
  writer.begin(sampleHeader());
  writer.put(std::uint64_t{0});
  const auto whole = writer.finish();
  const Bytes good(whole.begin(), whole.end());
  const auto changed = [&](std::size_t offset, int value) {
    Bytes bytes = good;
    bytes[offset] = static_cast<std::uint8_t>(value);
    return bytes;
  };
  Bytes longer = good;
  longer.push_back(1);
  EXPECT_TRUE(parseHeader(longer)) << "bytes after the body are of no matter";
  EXPECT_EQ(bodyOf(longer, *parseHeader(longer)).size(), 8u);
  const Bytes bad[] = {{},
                       Bytes(good.begin(), good.begin() + 31),
                       Bytes(good.begin(), good.end() - 1),
                       changed(0, 'X'),
                       changed(header_offset::version, 2),
                       changed(header_offset::bodyLength, 9)};
  for (const Bytes &bytes : bad) EXPECT_FALSE(parseHeader(bytes)) << bytes.size();
}

TEST(WireDescriptor, SpreadsElevationsEvenlyWithoutATable) {
  FrameDescriptor d = sampleDescriptor();
  d.nominalElevations.clear();
  d.channels = 5;
  EXPECT_DOUBLE_EQ(d.nominalElevationDeg(1), 15.0);
  EXPECT_DOUBLE_EQ(d.nominalElevationDeg(2), 5.0);
  EXPECT_DOUBLE_EQ(d.nominalElevationDeg(5), -25.0);
}

TEST(WireDescriptor, RefusesWhatDoesNotFitAPacket) {
  FrameDescriptor d = sampleDescriptor();
  d.nominalElevations.resize(560);
  PacketWriter writer;
  writer.begin(sampleHeader());
  EXPECT_FALSE(putDescriptor(writer, d));
}

PointsHead sampleHead() {
  const std::uint32_t mask = bitOf(PointPart::Attribute0);
  return {mask, 4, 2, 4000, 9, static_cast<std::uint8_t>(recordSizeOf(mask)), 55};
}

Bytes pointsBody(const PointsHead &head, const BlockHead &block, std::size_t blocks) {
  return bodyBy([&](PacketWriter &w) {
    storePointsHead(w.claim(pointsHeadSize).first<pointsHeadSize>(), head);
    for (std::size_t i = 0; i < blocks; ++i) storeBlockHead(w.claim(head.blockSize()).first<blockHeadSize>(), block);
    return true;
  });
}

TEST(WirePoints, HeadsThatContradictThemselvesAreRefused) {
  const auto with = [](auto change) {
    PointsHead head = sampleHead();
    change(head);
    return head;
  };
  const PointsHead bad[] = {
      with([](PointsHead &h) { h.partMask |= 1u << 20; }),     with([](PointsHead &h) { h.recordSize = 4; }),
      with([](PointsHead &h) { h.recordsPerBlock = 0; }),      with([](PointsHead &h) { h.blockCount = 3; }),
      with([](PointsHead &h) { h.recordsPerBlock = 0xFFFF; }),
  };
  for (const PointsHead &head : bad) {
    Bytes body = pointsBody(sampleHead(), {}, 2);
    storePointsHead(std::span(body).first<pointsHeadSize>(), head);
    EXPECT_FALSE(parsePointsHead(body)) << head.partMask << ' ' << head.recordsPerBlock << ' ' << head.blockCount;
  }
}

TEST(WirePoints, RecordCountStaysInsideTheBlockAndTheChannelNumbers) {
  struct Case {
    std::uint16_t firstChannel, count, expected;
  };
  for (const Case &c : {Case{1, 4, 4}, {1, 9, 4}, {0, 4, 0}, {65535, 4, 1}, {65532, 4, 4}}) {
    const Bytes body = pointsBody(sampleHead(), {0, 0, 0, c.firstChannel, c.count, 1}, 2);
    EXPECT_EQ(loadBlockHead(body.data() + pointsHeadSize, sampleHead()).recordCount, c.expected) << c.firstChannel;
  }
}

TEST(WirePoints, PartsLieBehindEachOtherInTheOrderOfTheirBits) {
  EXPECT_EQ(recordSizeOf(0), baseRecordSize);
  std::size_t end = baseRecordSize;
  for (std::size_t bit = 0; bit < pointPartSizes.size(); ++bit) {
    EXPECT_EQ(partOffset(knownParts, static_cast<PointPart>(bit)), end);
    end += pointPartSizes[bit];
  }
  EXPECT_EQ(recordSizeOf(knownParts), end);
  EXPECT_EQ(partOffset(bitOf(PointPart::Colour) | bitOf(PointPart::SpadId), PointPart::SpadId), 10u);
}

TEST(WirePoints, PlansHoldEveryChannelAndFitAPacket) {
  for (const unsigned channels : {1u, 3u, 64u, 128u, 229u, 1000u, 2048u}) {
    for (const std::uint32_t mask : {0u, bitOf(PointPart::Attribute0), knownParts}) {
      const std::size_t size = recordSizeOf(mask);
      const BlockPlan plan = planBlocks(static_cast<std::uint16_t>(channels), size);
      EXPECT_GE(plan.recordsPerBlock * plan.blocksPerColumn, static_cast<int>(channels));
      EXPECT_LT(plan.recordsPerBlock * (plan.blocksPerColumn - 1), static_cast<int>(channels));
      EXPECT_GE(plan.blocksPerPacket, 1);
      EXPECT_LE(plan.blocksPerPacket * (blockHeadSize + plan.recordsPerBlock * size), pointsRoom);
    }
  }
}

/// A side body, how to write it and what must hold of the parsed one.
struct SideBody {
  const char *name;
  std::function<bool(PacketWriter &)> put;
  std::function<bool(std::span<const std::uint8_t>)> comesBack;  ///< false also when the parser refuses
};

std::vector<SideBody> sideBodies() {
  static const Bytes run{1, 2, 3};
  static const Bytes faults(2 * longFaultSize, 0xA5);
  static const ImuSample imu{1.5, {0.1, -0.2, 1.0}, {3, 4, 5}, 1};
  const auto equal = [](std::span<const std::uint8_t> a, const Bytes &b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
  };
  return {
      {"descriptor", [](PacketWriter &w) { return putDescriptor(w, sampleDescriptor()); },
       [](auto body) {
         const auto d = parseDescriptor(body);
         return d && d->selectedEcho == 1 && d->nominalElevations == sampleDescriptor().nominalElevations;
       }},
      {"status",
       [](PacketWriter &w) {
         return putStatus(w, {statusBlockSize, 2307, run});
       },
       [=](auto body) {
         const auto f = parseStatus(body);
         return f && f->total == 2310 && f->offset == 2307 && equal(f->bytes, run);
       }},
      {"faults",
       [](PacketWriter &w) {
         return putFaults(w, {longFaultSize, 2, faults});
       },
       [=](auto body) {
         const auto f = parseFaults(body);
         return f && f->recordSize == 210 && f->count == 2 && equal(f->bytes, faults);
       }},
      {"imu",
       [](PacketWriter &w) {
         return putImu(w, std::array{imu, imu});
       },
       [](auto body) {
         const auto records = parseImu(body);
         if (!records || records->size() != 128 || (*records)[56] != 1) return false;
         const ImuSample s = loadImuSample(records->template subspan<64, 64>());
         return s.timeSeconds == imu.timeSeconds && s.accelG == imu.accelG && s.angularDegPerS == imu.angularDegPerS;
       }},
      {"motion",
       [](PacketWriter &w) {
         return putMotion(w, {12.5f, 0.25f, -0.5f});
       },
       [](auto body) {
         const auto m = parseMotion(body);
         return m && m->speedMetresPerS == 12.5f && m->azimuthRad == 0.25f && m->elevationRad == -0.5f;
       }},
      {"overlay",
       [](PacketWriter &w) {
         return putOverlayHead(w, {4, 3, 11, 1, {}}) && putOverlayPixel(w, {1, 2, 3, 400, 500, 600, 7});
       },
       [](auto body) {
         const auto r = parseOverlay(body);
         if (!r || r->firstPixel != 11 || r->count != 1) return false;
         const OverlayPixel p = loadOverlayPixel(r->bytes.template first<overlayPixelSize>());
         return p.y == 2 && p.blue == 600 && p.channel == 7;
       }},
      {"grid",
       [](PacketWriter &w) {
         return putGrid(w, {150, 200, {1, -2, 3}});
       },
       [](auto body) {
         const auto g = parseGrid(body);
         return g && g->rows == 150 && g->columns == 200 && g->dirt == std::vector<std::int32_t>{1, -2, 3};
       }},
      {"calibration",
       [](PacketWriter &w) {
         return putCalibration(w, {CalibrationKind::Firetimes, 0xCBF43926, {100, 97, run}});
       },
       [=](auto body) {
         const auto c = parseCalibration(body);
         return c && c->kind == CalibrationKind::Firetimes && c->crc == 0xCBF43926 && c->part.offset == 97 &&
                equal(c->part.bytes, run);
       }},
  };
}

TEST(WireSideBodies, ComeBackWholeAndAreRefusedWhenCutShort) {
  for (const SideBody &side : sideBodies()) {
    const Bytes body = bodyBy(side.put);
    EXPECT_TRUE(side.comesBack(body)) << side.name;
    for (std::size_t size = 0; size < body.size(); ++size) {
      const Bytes cut(body.begin(),
                      body.begin() + static_cast<std::ptrdiff_t>(size));  // own memory: a sanitizer sees over-reads
      EXPECT_FALSE(side.comesBack(cut)) << side.name << " cut to " << size;
    }
  }
}

TEST(WireSideBodies, RunsOutsideTheirWholeAreRefused) {
  const auto patched = [](std::size_t which, std::size_t offset, std::uint8_t value) {
    Bytes body = bodyBy(sideBodies()[which].put);
    body[offset] = value;
    return body;
  };
  EXPECT_FALSE(parseStatus(patched(1, 2, 4))) << "offset 2308 + 3 bytes";
  EXPECT_FALSE(parseStatus(patched(1, 0, 0))) << "another length of the block";
  EXPECT_FALSE(parseFaults(patched(2, 0, 209))) << "no such record size";
  EXPECT_FALSE(parseOverlay(patched(5, 4, 12))) << "pixel 12 of 12";
  EXPECT_FALSE(parseCalibration(patched(7, 8, 98))) << "offset 98 + 3 bytes of 100";
  EXPECT_FALSE(parseCalibration(patched(7, 0, 5))) << "unknown kind";
  EXPECT_FALSE(parseCalibration(patched(7, 7, 2))) << "blob above the limit";
}

TEST(WireSideBodies, DamagedBytesNeverLeadOutsideTheBody) {
  std::mt19937 random(1);
  for (const SideBody &side : sideBodies()) {
    const Bytes good = bodyBy(side.put);
    for (int round = 0; round < 2000; ++round) {
      Bytes body = good;
      for (int change = 0; change < 3; ++change) body[random() % body.size()] = static_cast<std::uint8_t>(random());
      body.resize(body.size() - random() % 4);
      body.shrink_to_fit();
      static_cast<void>(side.comesBack(body));
      if (const auto head = parsePointsHead(body)) {
        EXPECT_LE(pointsHeadSize + head->blockCount * head->blockSize(), body.size());
      }
    }
  }
}

TEST(WirePacketWriter, RefusesWhatIsTooLongAndKeepsWhatItHas) {
  PacketWriter writer;
  writer.begin(sampleHeader());
  EXPECT_EQ(writer.claim(bodyLimit - 3).size(), bodyLimit - 3);
  EXPECT_FALSE(writer.put(std::uint32_t{1}));
  EXPECT_TRUE(writer.claim(4).empty());
  EXPECT_TRUE(writer.put(std::uint16_t{1}));
  EXPECT_EQ(writer.finish().size(), payloadLimit - 1);
}

TEST(WireCrc, MatchesTheStandardCheckValue) {
  const std::string check = "123456789";
  EXPECT_EQ(crc32({reinterpret_cast<const std::uint8_t *>(check.data()), check.size()}), 0xCBF43926u);
}

}  // namespace
