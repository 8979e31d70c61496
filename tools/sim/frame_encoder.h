#pragma once

#include "tools/sim/frame_content.h"
#include "tools/sim/packet_sink.h"

namespace tarvo::lidar::sim {

/// Packs frames into packets of the capture format and hands them to a sink, numbered in one sequence.
class FrameEncoder {
 public:
  FrameEncoder(const Options &options, const Sensor &sensor, PacketSink &sink);

  /// `frameTimeNs` is the start of the frame, Unix time.
  void encode(std::uint32_t frame, std::uint64_t frameTimeNs, const FrameContent &content);

 private:
  void begin(wire::PacketKind kind, std::uint32_t timeOffsetNs);
  void send();
  void sendDescriptor();
  void sendPoints(const FrameContent &content);
  void writeRecord(std::uint8_t *to, const Sample &sample, unsigned column, unsigned channel) const;
  void sendSidePackets(const FrameContent &content);
  void sendCalibration();
  void sendBlob(wire::CalibrationKind kind, const std::string &blob);
  void sendTelemetry();
  void sendOverlay(const FrameContent &content);
  [[nodiscard]] std::uint32_t columnOffsetNs(unsigned column) const noexcept;

  const Options &options_;
  const Sensor &sensor_;
  PacketSink &sink_;
  wire::FrameDescriptor descriptor_;
  wire::BlockPlan plan_;
  wire::PacketWriter writer_;
  std::string corrections_, firetimes_;
  std::uint32_t sequence_ = 0;
  std::uint32_t frame_ = 0;
  std::uint64_t frameTimeNs_ = 0;
  std::uint32_t packetOffsetNs_ = 0;  ///< when the packet in work leaves the lidar, from the frame's start
  std::uint64_t lastStampNs_ = 0;
};

}  // namespace tarvo::lidar::sim
