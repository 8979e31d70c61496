#include "tools/sim/frame_encoder.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace tarvo::lidar::sim {
namespace {

constexpr std::uint16_t distanceUnitUm = 4000;
constexpr std::uint32_t sendingDelayNs = 20'000;  // from the last firing of a packet to its way onto the wire
constexpr std::uint64_t leastGapNs = 1'000;

std::uint16_t raw16(double value) noexcept { return static_cast<std::uint16_t>(std::clamp(value, 0.0, 65535.0)); }
std::uint8_t raw8(double value) noexcept { return static_cast<std::uint8_t>(std::clamp(value, 0.0, 255.0)); }

wire::FrameDescriptor describe(const Options &options, const Sensor &sensor, const wire::BlockPlan &plan) {
  wire::FrameDescriptor d;
  d.type = options.type;
  d.channels = d.lasers = static_cast<std::uint16_t>(options.channels);
  d.columns = static_cast<std::uint16_t>(options.columns);
  d.echoes = static_cast<std::uint8_t>(options.echoes);
  d.returnMode = static_cast<std::uint8_t>(sensor.returnMode);
  d.frameRateMilliHz = static_cast<std::uint32_t>(std::lround(options.rateHz * 1000));
  d.motorSpeedRpm = sensor.motorSpeedRpm;
  d.partMask = sensor.traits.parts;
  d.distanceUnitUm = distanceUnitUm;
  const bool coloured = wire::hasPart(d.partMask, wire::PointPart::Colour);
  d.rgbMode = options.overlay ? 4 : coloured ? 1 : 0;
  d.laserPointCount = static_cast<std::int32_t>(std::size_t{options.channels} * options.columns * options.echoes);
  const std::size_t blocks = std::size_t{options.columns} * options.echoes * plan.blocksPerColumn;
  const std::size_t packets = (blocks + plan.blocksPerPacket - 1) / plan.blocksPerPacket;
  if (packets > 65535)
    throw std::runtime_error("a frame of " + std::to_string(packets) +
                             " packets is more than the format holds (65535)");
  d.packetsPerFrame = static_cast<std::uint16_t>(packets);
  d.pointsPerPacket = static_cast<std::uint16_t>(plan.recordsPerBlock * plan.blocksPerPacket);
  d.elevationMaxDeg = static_cast<float>(sensor.nominalElevationDeg.front());
  d.elevationMinDeg = static_cast<float>(sensor.nominalElevationDeg.back());
  if (options.calibrationInside)
    d.calibrationMask = 1u << static_cast<unsigned>(wire::CalibrationKind::Corrections) |
                        1u << static_cast<unsigned>(wire::CalibrationKind::Firetimes);
  if (wire::descriptorFixedSize + d.type.size() + 2 * std::size_t{options.channels} <= wire::bodyLimit)
    for (const double elevation : sensor.nominalElevationDeg)
      d.nominalElevations.push_back(static_cast<std::int16_t>(std::lround(elevation / wire::nominalElevationUnitDeg)));
  return d;
}

}  // namespace

FrameEncoder::FrameEncoder(const Options &options, const Sensor &sensor, PacketSink &sink)
    : options_(options),
      sensor_(sensor),
      sink_(sink),
      plan_(wire::planBlocks(static_cast<std::uint16_t>(options.channels), wire::recordSizeOf(sensor.traits.parts))),
      corrections_(sensor.correctionsCsv()),
      firetimes_(sensor.firetimesCsv()) {
  descriptor_ = describe(options, sensor, plan_);
}

void FrameEncoder::encode(std::uint32_t frame, std::uint64_t frameTimeNs, const FrameContent &content) {
  frame_ = frame;
  frameTimeNs_ = frameTimeNs;
  sendDescriptor();
  sendSidePackets(content);
  sendPoints(content);
}

void FrameEncoder::begin(wire::PacketKind kind, std::uint32_t timeOffsetNs) {
  packetOffsetNs_ = timeOffsetNs;
  writer_.begin(
      {kind, static_cast<std::uint16_t>(options_.sensorId), sequence_++, frame_, frameTimeNs_, timeOffsetNs, 0, 0});
}

void FrameEncoder::send() {
  lastStampNs_ = std::max(frameTimeNs_ + packetOffsetNs_ + sendingDelayNs, lastStampNs_ + leastGapNs);
  sink_.take(writer_.finish(), lastStampNs_);
}

std::uint32_t FrameEncoder::columnOffsetNs(unsigned column) const noexcept {
  return static_cast<std::uint32_t>(1e9 / options_.rateHz * column / options_.columns);
}

void FrameEncoder::sendDescriptor() {
  begin(wire::PacketKind::FrameDescriptor, 0);
  if (!wire::putDescriptor(writer_, descriptor_)) throw std::logic_error("frame descriptor does not fit a packet");
  send();
}

void FrameEncoder::sendPoints(const FrameContent &content) {
  const std::size_t recordSize = wire::recordSizeOf(descriptor_.partMask);
  wire::PointsHead head{
      descriptor_.partMask,  plan_.recordsPerBlock, 0, distanceUnitUm, 0, static_cast<std::uint8_t>(recordSize),
      descriptor_.returnMode};
  std::span<std::uint8_t> headBytes;
  const auto close = [&](bool last) {
    wire::storePointsHead(headBytes.first<wire::pointsHeadSize>(), head);
    if (last) writer_.addFlags(wire::EndOfFrame);
    send();
    ++head.packetOfFrame;
    head.blockCount = 0;
  };
  for (unsigned column = 0; column < content.columns; ++column) {
    const std::uint32_t offsetNs = columnOffsetNs(column);
    const auto azimuth = static_cast<std::int32_t>(
        std::lround(sensor_.columnAzimuthDeg(column, content.columns) / wire::azimuthUnitDeg));
    for (unsigned echo = 0; echo < content.echoes; ++echo) {
      const auto samples = content.ofColumn(column, echo);
      for (unsigned first = 0; first < content.channels; first += plan_.recordsPerBlock) {
        if (head.blockCount == 0) {
          begin(wire::PacketKind::Points, offsetNs);
          headBytes = writer_.claim(wire::pointsHeadSize);
        }
        packetOffsetNs_ = offsetNs;
        const unsigned count = std::min<unsigned>(plan_.recordsPerBlock, content.channels - first);
        const auto block = writer_.claim(head.blockSize());
        wire::storeBlockHead(
            block.first<wire::blockHeadSize>(),
            {azimuth, offsetNs, static_cast<std::uint16_t>(column), static_cast<std::uint16_t>(first + 1),
             static_cast<std::uint16_t>(count), static_cast<std::uint8_t>(echo + 1)});
        std::uint8_t *record = block.data() + wire::blockHeadSize;
        for (unsigned i = 0; i < count; ++i, record += recordSize)
          writeRecord(record, samples[first + i], column, first + i);
        if (++head.blockCount == plan_.blocksPerPacket) close(head.packetOfFrame + 1u == descriptor_.packetsPerFrame);
      }
    }
  }
  if (head.blockCount != 0) close(true);
}

void FrameEncoder::writeRecord(std::uint8_t *to, const Sample &sample, unsigned column, unsigned channel) const {
  using wire::PointPart;
  const std::uint32_t mask = descriptor_.partMask;
  wire::storeLittle(to, raw16(sample.distance * (1e6 / distanceUnitUm) + 0.5));
  to[wire::record_offset::intensity] = sample.intensity;
  to[wire::record_offset::confidence] = sample.confidence;
  const auto at = [&](PointPart part) { return to + wire::partOffset(mask, part); };
  const auto put8 = [&](PointPart part, double value) {
    if (wire::hasPart(mask, part)) *at(part) = raw8(value);
  };
  const auto put16 = [&](PointPart part, double value) {
    if (wire::hasPart(mask, part)) wire::storeLittle(at(part), raw16(value));
  };
  const auto putFloat = [&](PointPart part, float value) {
    if (wire::hasPart(mask, part)) wire::storeLittle(at(part), value);
  };
  const bool longFocus = channel > options_.channels / 4 && channel < options_.channels / 2;
  const double rough = sample.foliage ? 1.0 : 0.0;
  if (wire::hasPart(mask, PointPart::Colour)) {
    const double scale = longFocus ? sensor_.traits.colourScaleLong : sensor_.traits.colourScale;
    for (std::size_t i = 0; i < 3; ++i)
      wire::storeLittle(at(PointPart::Colour) + 2 * i, raw16(std::min(sample.colour[i], 1.f) * scale));
  }
  put8(PointPart::Attribute0, 4.0 * column / options_.columns);
  put8(PointPart::Attribute1, sensor_.traits.rawIntensityFirst ? sample.intensity * 0.85 : sample.intensity / 64.0);
  put8(PointPart::Attribute2, sample.intensity * 0.85);
  put8(PointPart::Attribute3, 3.0 * rough);
  put8(PointPart::Attribute4, 40.0 * rough + sample.distance / 8.0);
  put16(PointPart::Area, sample.intensity * 190.0 + sample.distance);
  put16(PointPart::RawArea, sample.intensity * 210.0);
  put8(PointPart::Peak, sample.intensity * 0.9 + 12.0);
  if (wire::hasPart(mask, PointPart::AlternateArea)) {
    std::uint8_t *area = at(PointPart::AlternateArea);
    area[0] = raw8(sample.intensity * 0.75);
    area[1] = raw8(sample.intensity * 0.8);
    area[2] = raw8(sample.intensity * 0.9 + 12.0);
  }
  putFloat(PointPart::CentreDifference, static_cast<float>(0.02 + 0.9 * rough));
  putFloat(PointPart::FrontDifference, static_cast<float>(0.03 + 1.4 * rough));
  put16(PointPart::StepId, column & 1u);
  put8(PointPart::SpadId, longFocus ? 1.0 : 0.0);
  putFloat(PointPart::RelativeVelocity, sample.velocity);
  if (wire::hasPart(mask, PointPart::SpikeValues)) {
    const bool spike = Draw(options_.seed, 55, frame_, column, channel).uniform() < 0.0005;
    wire::storeLittle(at(PointPart::SpikeValues), sample.velocity);
    wire::storeLittle(at(PointPart::SpikeValues) + 4, sample.velocity + (spike ? 9.0f : 0.05f));
  }
  if (wire::hasPart(mask, PointPart::AngleId))
    wire::storeLittle(at(PointPart::AngleId),
                      static_cast<std::int32_t>(1 + column % 9999 + 10000 * (3 * column / options_.columns)));
  if (wire::hasPart(mask, PointPart::GridPoint)) {
    std::uint8_t *point = at(PointPart::GridPoint);
    wire::storeLittle(point, static_cast<std::uint16_t>(column + 1));
    wire::storeLittle(point + 2, raw16(40.0 + 0.3 * sample.intensity));
    wire::storeLittle(point + 4, static_cast<std::uint16_t>(sample.confidence));
  }
}

}  // namespace tarvo::lidar::sim
