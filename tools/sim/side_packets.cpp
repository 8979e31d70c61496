#include <algorithm>
#include <cmath>

#include "runtime/wire/crc32.h"
#include "tools/sim/device_report.h"
#include "tools/sim/frame_encoder.h"

/// The packets of a frame beside descriptor and points.
namespace tarvo::lidar::sim {
namespace {

/// Calls `put(offset, run)` for each run of at most `most` bytes.
template <typename Put>
void inRuns(std::span<const std::uint8_t> whole, std::size_t most, const Put &put) {
  for (std::size_t offset = 0; offset < whole.size(); offset += most)
    put(offset, whole.subspan(offset, std::min(most, whole.size() - offset)));
}

}  // namespace

void FrameEncoder::sendSidePackets(const FrameContent &content) {
  if (sensor_.traits.grid) {
    begin(wire::PacketKind::Grid, 0);
    const auto dirt = static_cast<std::int32_t>(frame_ / 20 % 4);
    wire::putGrid(writer_, {static_cast<std::uint16_t>(content.channels),
                            static_cast<std::uint16_t>(content.columns),
                            {0, dirt, 0, 1, 0, std::max(dirt, 1)}});
    send();
  }
  const auto framesASecond = static_cast<std::uint32_t>(std::max(1l, std::lround(options_.rateHz)));
  if (options_.calibrationInside && frame_ % framesASecond == 0) sendCalibration();
  if (options_.imu || options_.speed > 0 || wire::hasPart(descriptor_.partMask, wire::PointPart::RelativeVelocity)) {
    begin(wire::PacketKind::Motion, 0);
    wire::putMotion(writer_, {static_cast<float>(options_.speed), 0.f, 0.f});
    send();
  }
  sendTelemetry();
  if (!content.overlay.empty()) sendOverlay(content);
}

void FrameEncoder::sendCalibration() {
  sendBlob(wire::CalibrationKind::Corrections, corrections_);
  sendBlob(wire::CalibrationKind::Firetimes, firetimes_);
}

void FrameEncoder::sendBlob(wire::CalibrationKind kind, const std::string &blob) {
  const std::span bytes(reinterpret_cast<const std::uint8_t *>(blob.data()), blob.size());
  const std::uint32_t crc = wire::crc32(bytes);
  inRuns(
      bytes, wire::bodyLimit - wire::calibrationHeadSize, [&](std::size_t offset, std::span<const std::uint8_t> run) {
        begin(wire::PacketKind::Calibration, 0);
        wire::putCalibration(
            writer_, {kind, crc, {static_cast<std::uint32_t>(bytes.size()), static_cast<std::uint32_t>(offset), run}});
        send();
      });
}

void FrameEncoder::sendTelemetry() {
  const double frameSeconds = 1.0 / options_.rateHz;
  if (options_.telemetry) {
    const StatusBlock block = statusBlock(options_.type, options_.variant, frame_ * frameSeconds);
    inRuns(block, wire::bodyLimit - wire::statusHeadSize, [&](std::size_t offset, std::span<const std::uint8_t> run) {
      begin(wire::PacketKind::Status, 0);
      wire::putStatus(writer_, {static_cast<std::uint32_t>(block.size()), static_cast<std::uint32_t>(offset), run});
      send();
    });
  }
  if (options_.faults) {
    const FaultBatch batch = faultBatch(options_.type, frameTimeNs_, frame_);
    begin(wire::PacketKind::Faults, 0);
    wire::putFaults(writer_, {batch.recordSize, batch.count, batch.bytes});
    send();
  }
  if (options_.imu) {
    const auto samples = imuSamples(frameTimeNs_, frameSeconds, options_.seed);
    for (std::size_t first = 0; first < samples.size(); first += wire::imuSamplesPerPacket) {
      begin(wire::PacketKind::Imu, 0);
      wire::putImu(writer_,
                   std::span(samples).subspan(first, std::min(wire::imuSamplesPerPacket, samples.size() - first)));
      send();
    }
  }
}

void FrameEncoder::sendOverlay(const FrameContent &content) {
  const std::size_t pixels = content.overlay.size();
  for (std::size_t first = 0; first < pixels; first += wire::overlayPixelsPerPacket) {
    const std::size_t count = std::min(wire::overlayPixelsPerPacket, pixels - first);
    begin(wire::PacketKind::Overlay, 0);
    wire::putOverlayHead(
        writer_,
        {overlayColumns, overlayRows, static_cast<std::uint32_t>(first), static_cast<std::uint16_t>(count), {}});
    for (std::size_t i = first; i < first + count; ++i) wire::putOverlayPixel(writer_, content.overlay[i]);
    send();
  }
}

}  // namespace tarvo::lidar::sim
