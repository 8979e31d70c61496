#include <algorithm>

#include "runtime/decode/channel_table.h"
#include "runtime/decode/skarn/skarn_frame.h"
#include "runtime/wire/blob_bodies.h"
#include "runtime/wire/side_bodies.h"

namespace tarvo::lidar {

namespace {

// Lists that a sensor could fill without end.
constexpr std::size_t faultByteLimit = 1u << 20;
constexpr std::size_t imuSampleLimit = 4096;

static_assert(wire::statusBlockSize == DecodedParts::statusBytes);

void takeFaults(const wire::FaultRecords &faults, DecodedParts &parts) {
  if (parts.faultStride != faults.recordSize) parts.faults.clear();
  parts.faultStride = faults.recordSize;
  if (parts.faults.size() + faults.bytes.size() <= faultByteLimit)
    parts.faults.insert(parts.faults.end(), faults.bytes.begin(), faults.bytes.end());
}

void takeImu(std::span<const std::uint8_t> records, DecodedParts &parts) {
  for (; !records.empty() && parts.imu.size() < imuSampleLimit; records = records.subspan(wire::imuSampleSize)) {
    const wire::ImuSample told = wire::loadImuSample(records.first<wire::imuSampleSize>());
    ImuSample sample;
    sample.timestamp = told.timeSeconds;
    sample.acceleration = told.accelG;
    sample.angularVelocity = told.angularDegPerS;
    sample.valid = told.valid != 0;
    parts.imu.push_back(sample);
  }
}

void takeOverlay(const wire::OverlayRun &run, DecodedParts &parts) {
  const std::size_t pixels = std::size_t{run.columns} * run.rows;
  if (!parts.picture || parts.picture->columns != run.columns || parts.picture->rows != run.rows)
    parts.picture = CameraPicture{run.columns, run.rows, std::vector<SDKPointInfo>(pixels)};
  for (std::size_t i = 0; i < run.count; ++i) {
    const wire::OverlayPixel told =
        wire::loadOverlayPixel(run.bytes.subspan(i * wire::overlayPixelSize).first<wire::overlayPixelSize>());
    SDKPointInfo &pixel = parts.picture->pixels[run.firstPixel + i];
    pixel.x = told.x;
    pixel.y = told.y;
    pixel.z = told.z;
    pixel.red = told.red;
    pixel.green = told.green;
    pixel.blue = told.blue;
    pixel.channel = told.channel;
  }
}

}  // namespace

void SkarnFrameDecoder::takeStatus(const SidePacket &packet, DecodedParts &parts, bool &good) {
  const auto run = wire::parseStatus(packet.body);
  good = run.has_value();
  if (!good) return;
  std::copy(run->bytes.begin(), run->bytes.end(), status_.begin() + run->offset);
  statusRuns_.add(run->offset, run->offset + static_cast<std::uint32_t>(run->bytes.size()));
  if (!statusRuns_.covers(DecodedParts::statusBytes)) return;
  parts.status = status_;
  statusRuns_.clear();
}

/// False for a damaged packet. Kinds without a place here are passed over: what describes the stream was read by its
/// walker.
bool SkarnFrameDecoder::takeSide(const SidePacket &packet, DecodedParts &parts) {
  bool good = true;
  switch (packet.kind) {
    case wire::PacketKind::Status:
      takeStatus(packet, parts, good);
      break;
    case wire::PacketKind::Faults: {
      const auto faults = wire::parseFaults(packet.body);
      good = faults.has_value();
      if (good) takeFaults(*faults, parts);
      break;
    }
    case wire::PacketKind::Imu: {
      const auto records = wire::parseImu(packet.body);
      good = records.has_value();
      if (good) takeImu(*records, parts);
      break;
    }
    case wire::PacketKind::Motion: {
      const auto motion = wire::parseMotion(packet.body);
      good = motion.has_value();
      if (good) parts.motion = VehicleMotion{motion->speedMetresPerS, motion->azimuthRad, motion->elevationRad};
      break;
    }
    case wire::PacketKind::Overlay: {
      const auto run = wire::parseOverlay(packet.body);
      good = run.has_value();
      if (good) takeOverlay(*run, parts);
      break;
    }
    case wire::PacketKind::Grid: {
      auto grid = wire::parseGrid(packet.body);
      good = grid.has_value();
      if (good) parts.grid = SensorGrid{grid->rows, grid->columns, std::move(grid->dirt)};
      break;
    }
    default:
      break;
  }
  return good;
}

void SkarnFrameDecoder::decodeParts(DecodedParts &parts) {
  statusRuns_.clear();
  parts.frameStartNs = head_.startNs;
  parts.returnMode = returnMode_;
  parts.motorSpeedRpm = shape_.motorSpeedRpm;
  parts.laserPointCount = static_cast<std::int32_t>(shape_.framePoints());
  parts.damagedPackets += damaged_;
  for (const SidePacket &packet : sides_)
    if (!takeSide(packet, parts)) ++parts.damagedPackets;
  for (const PointPacket &packet : points_)
    for (unsigned i = 0; i < packet.head.blockCount; ++i)
      if (!holds(wire::loadBlockHead(packet.blocks + i * packet.head.blockSize(), packet.head))) {
        ++parts.damagedPackets;
        break;
      }
}

}  // namespace tarvo::lidar
