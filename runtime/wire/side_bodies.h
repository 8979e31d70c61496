#pragma once

#include <vector>

#include "runtime/wire/packet_writer.h"

/// Bodies of the packets beside the points: status, faults, IMU, motion, camera overlay, grid, calibration.
/// A parser gives none for a body that is cut short or contradicts itself. Spans lie in the packet's own memory.
namespace tarvo::lidar::wire {

/// A run of bytes of something too long for one packet.
struct Fragment {
  std::uint32_t total = 0;   ///< length of the whole
  std::uint32_t offset = 0;  ///< where `bytes` belongs; offset + size is at most `total`
  std::span<const std::uint8_t> bytes;
};

[[nodiscard]] inline bool fits(const Fragment &f) noexcept {
  return f.offset <= f.total && f.bytes.size() <= f.total - f.offset;
}

/// Status: a run of the device-status block (presence byte, variant byte, u32 cell count, 3 groups of 256 cells of 3
/// bytes).
inline constexpr std::size_t statusBlockSize = 6 + 3 * 256 * 3;
inline constexpr std::size_t statusHeadSize = 8;

inline bool putStatus(PacketWriter &out, const Fragment &f) noexcept {
  return fits(f) && f.total == statusBlockSize && out.room() >= statusHeadSize + f.bytes.size() &&
         out.put(static_cast<std::uint16_t>(f.total)) && out.put(static_cast<std::uint16_t>(f.offset)) &&
         out.put(static_cast<std::uint16_t>(f.bytes.size())) && out.put(std::uint16_t{0}) && out.putBytes(f.bytes);
}

[[nodiscard]] inline std::optional<Fragment> parseStatus(std::span<const std::uint8_t> body) noexcept {
  SpanReader in(body);
  Fragment f;
  f.total = in.read<std::uint16_t>();
  f.offset = in.read<std::uint16_t>();
  const auto count = in.read<std::uint16_t>();
  in.skip(2);
  f.bytes = in.readBytes(count);
  if (in.failed() || f.total != statusBlockSize || !fits(f)) return std::nullopt;
  return f;
}

/// Faults: whole fault records of one size, as the plug-in's fault views read them.
inline constexpr std::uint16_t shortFaultSize = 6;
inline constexpr std::uint16_t longFaultSize = 210;
inline constexpr std::size_t faultsHeadSize = 4;

struct FaultRecords {
  std::uint16_t recordSize = 0;  ///< `shortFaultSize` or `longFaultSize`
  std::uint16_t count = 0;
  std::span<const std::uint8_t> bytes;  ///< count x recordSize
};

inline bool putFaults(PacketWriter &out, const FaultRecords &f) noexcept {
  return f.bytes.size() == std::size_t{f.recordSize} * f.count && out.room() >= faultsHeadSize + f.bytes.size() &&
         out.put(f.recordSize) && out.put(f.count) && out.putBytes(f.bytes);
}

[[nodiscard]] inline std::optional<FaultRecords> parseFaults(std::span<const std::uint8_t> body) noexcept {
  SpanReader in(body);
  FaultRecords f;
  f.recordSize = in.read<std::uint16_t>();
  f.count = in.read<std::uint16_t>();
  f.bytes = in.readBytes(std::size_t{f.recordSize} * f.count);
  if (in.failed() || (f.recordSize != shortFaultSize && f.recordSize != longFaultSize)) return std::nullopt;
  return f;
}

/// IMU: samples of 64 bytes, the layout of the source's IMU records.
struct ImuSample {
  double timeSeconds = 0;
  std::array<double, 3> accelG{};          ///< x, y, z, in g
  std::array<double, 3> angularDegPerS{};  ///< x, y, z, degrees a second
  std::uint8_t valid = 0;                  ///< at byte 56; bytes 57 to 63 are zero
};
inline constexpr std::size_t imuSampleSize = 64;
inline constexpr std::size_t imuHeadSize = 8;  // u16 count, 6 reserved bytes
inline constexpr std::size_t imuSamplesPerPacket = (bodyLimit - imuHeadSize) / imuSampleSize;

inline bool putImu(PacketWriter &out, std::span<const ImuSample> samples) noexcept {
  if (out.room() < imuHeadSize + samples.size() * imuSampleSize) return false;
  storeLittle(out.claim(imuHeadSize).data(), static_cast<std::uint16_t>(samples.size()));
  for (const ImuSample &sample : samples) {
    out.put(sample.timeSeconds);
    for (const double value : sample.accelG) out.put(value);
    for (const double value : sample.angularDegPerS) out.put(value);
    out.claim(8)[0] = sample.valid;
  }
  return true;
}

/// `ImuSample` views are read one by one with `loadImuSample`; the span holds whole records.
[[nodiscard]] inline std::optional<std::span<const std::uint8_t>> parseImu(
    std::span<const std::uint8_t> body) noexcept {
  SpanReader in(body);
  const auto count = in.read<std::uint16_t>();
  in.skip(imuHeadSize - 2);
  const auto records = in.readBytes(count * imuSampleSize);
  if (in.failed()) return std::nullopt;
  return records;
}

[[nodiscard]] inline ImuSample loadImuSample(std::span<const std::uint8_t, imuSampleSize> record) noexcept {
  SpanReader in(record);
  ImuSample sample;
  sample.timeSeconds = in.read<double>();
  for (double &value : sample.accelG) value = in.read<double>();
  for (double &value : sample.angularDegPerS) value = in.read<double>();
  sample.valid = in.read<std::uint8_t>();
  return sample;
}

/// Motion: speed and attitude of the vehicle during the frame.
struct Motion {
  float speedMetresPerS = 0;
  float azimuthRad = 0;
  float elevationRad = 0;
};

inline bool putMotion(PacketWriter &out, const Motion &m) noexcept {
  return out.put(m.speedMetresPerS) && out.put(m.azimuthRad) && out.put(m.elevationRad) && out.put(std::uint32_t{0});
}

[[nodiscard]] inline std::optional<Motion> parseMotion(std::span<const std::uint8_t> body) noexcept {
  SpanReader in(body);
  Motion m;
  m.speedMetresPerS = in.read<float>();
  m.azimuthRad = in.read<float>();
  m.elevationRad = in.read<float>();
  in.skip(4);
  return in.failed() ? std::nullopt : std::optional(m);
}

}  // namespace tarvo::lidar::wire
