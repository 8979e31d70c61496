#pragma once

#include <string>
#include <vector>

#include "runtime/wire/packet_writer.h"
#include "runtime/wire/point_layout.h"

/// Body of a FrameDescriptor packet: what a decoder must know to lay out a frame.
namespace tarvo::lidar::wire {

inline constexpr double nominalElevationUnitDeg = 0.005;

struct FrameDescriptor {
  std::uint16_t channels = 0;
  std::uint16_t lasers = 0;
  std::uint16_t columns = 0;  ///< firing positions of one frame
  std::uint8_t echoes = 1;    ///< returns recorded for each column
  std::uint8_t returnMode = 0;
  std::uint32_t frameRateMilliHz = 0;
  double motorSpeedRpm = 0;
  std::uint16_t pointsPerPacket = 0;
  std::uint16_t packetsPerFrame = 0;  ///< Points packets
  std::uint32_t partMask = 0;         ///< `PointPart` bits of the frame's records
  std::int32_t rgbMode = 0;
  std::int32_t laserPointCount = 0;
  std::uint16_t distanceUnitUm = 0;
  std::uint16_t calibrationMask = 0;  ///< bit by `CalibrationKind`: the capture carries that data
  std::uint8_t selectedEcho = 0;
  float elevationMinDeg = 0;  ///< nominal field of view
  float elevationMaxDeg = 0;
  std::string type;  ///< lidar type string, at most 255 bytes
  std::vector<std::int16_t>
      nominalElevations;  ///< per channel, in 0.005 degree; empty: evenly spaced, see `nominalElevationDeg`

  /// Elevation of `channel` (from 1) to use while no corrections are loaded.
  [[nodiscard]] double nominalElevationDeg(unsigned channel) const noexcept {
    if (channel >= 1 && channel <= nominalElevations.size())
      return nominalElevations[channel - 1] * nominalElevationUnitDeg;
    if (channels < 2 || channel < 1) return elevationMaxDeg;
    return elevationMaxDeg + (double{elevationMinDeg} - elevationMaxDeg) * (channel - 1) / (channels - 1);
  }
};

/// Bytes before the type string. The order of `putDescriptor` is the layout.
inline constexpr std::size_t descriptorFixedSize = 64;

/// False, with the packet unusable, when the type or the elevation table does not fit.
inline bool putDescriptor(PacketWriter &out, const FrameDescriptor &d) {
  if (d.type.size() > 255 || descriptorFixedSize + d.type.size() + 2 * d.nominalElevations.size() > bodyLimit)
    return false;
  out.put(d.channels);                                              // 0
  out.put(d.lasers);                                                // 2
  out.put(d.columns);                                               // 4
  out.put(d.echoes);                                                // 6
  out.put(d.returnMode);                                            // 7
  out.put(d.frameRateMilliHz);                                      // 8
  out.put(d.pointsPerPacket);                                       // 12
  out.put(d.packetsPerFrame);                                       // 14
  out.put(d.motorSpeedRpm);                                         // 16
  out.put(d.partMask);                                              // 24
  out.put(d.rgbMode);                                               // 28
  out.put(d.laserPointCount);                                       // 32
  out.put(d.distanceUnitUm);                                        // 36
  out.put(d.calibrationMask);                                       // 38
  out.put(d.elevationMinDeg);                                       // 40
  out.put(d.elevationMaxDeg);                                       // 44
  out.put(static_cast<std::uint16_t>(d.nominalElevations.size()));  // 48
  out.put(d.selectedEcho);                                          // 50
  out.put(static_cast<std::uint8_t>(d.type.size()));                // 51
  static_cast<void>(out.claim(descriptorFixedSize - 52));           // 52, reserved
  out.putBytes({reinterpret_cast<const std::uint8_t *>(d.type.data()), d.type.size()});
  for (const std::int16_t elevation : d.nominalElevations) out.put(elevation);
  return true;
}

/// None when the body is cut short, names no channel, has an unknown part or an unusable field of view.
[[nodiscard]] inline std::optional<FrameDescriptor> parseDescriptor(std::span<const std::uint8_t> body) {
  SpanReader in(body);
  FrameDescriptor d;
  d.channels = in.read<std::uint16_t>();
  d.lasers = in.read<std::uint16_t>();
  d.columns = in.read<std::uint16_t>();
  d.echoes = in.read<std::uint8_t>();
  d.returnMode = in.read<std::uint8_t>();
  d.frameRateMilliHz = in.read<std::uint32_t>();
  d.pointsPerPacket = in.read<std::uint16_t>();
  d.packetsPerFrame = in.read<std::uint16_t>();
  d.motorSpeedRpm = in.read<double>();
  d.partMask = in.read<std::uint32_t>();
  d.rgbMode = in.read<std::int32_t>();
  d.laserPointCount = in.read<std::int32_t>();
  d.distanceUnitUm = in.read<std::uint16_t>();
  d.calibrationMask = in.read<std::uint16_t>();
  d.elevationMinDeg = in.read<float>();
  d.elevationMaxDeg = in.read<float>();
  const auto elevationCount = in.read<std::uint16_t>();
  d.selectedEcho = in.read<std::uint8_t>();
  const auto typeLength = in.read<std::uint8_t>();
  in.skip(descriptorFixedSize - 52);
  d.type = in.readText(typeLength);
  if (in.failed() || in.remaining() < std::size_t{elevationCount} * 2) return std::nullopt;
  d.nominalElevations.reserve(elevationCount);
  for (unsigned i = 0; i < elevationCount; ++i) d.nominalElevations.push_back(in.read<std::int16_t>());
  const bool usableView =
      d.elevationMinDeg >= -90.f && d.elevationMaxDeg <= 90.f && d.elevationMinDeg <= d.elevationMaxDeg;
  if (d.channels == 0 || (d.partMask & ~knownParts) != 0 || !usableView) return std::nullopt;
  return d;
}

}  // namespace tarvo::lidar::wire
