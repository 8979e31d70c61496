#pragma once

#include "runtime/wire/side_bodies.h"

/// Bodies of the larger side packets: camera overlay, channel grid, calibration data.
namespace tarvo::lidar::wire {

/// Overlay: a run of the camera picture's pixels, in rows from the top left.
struct OverlayRun {
  std::uint16_t columns = 0;
  std::uint16_t rows = 0;
  std::uint32_t firstPixel = 0;
  std::uint16_t count = 0;
  std::span<const std::uint8_t> bytes;  ///< count x overlayPixelSize
};

struct OverlayPixel {
  float x = 0, y = 0, z = 0;  ///< metres, lidar frame
  std::uint16_t red = 0, green = 0, blue = 0;
  std::uint16_t channel = 0;  ///< 0: the pixel has no position and is hidden
};
inline constexpr std::size_t overlayPixelSize = 20;
inline constexpr std::size_t overlayHeadSize = 12;
inline constexpr std::uint32_t overlayPixelLimit = 4u << 20;  ///< a larger picture is refused
inline constexpr std::size_t overlayPixelsPerPacket = (bodyLimit - overlayHeadSize) / overlayPixelSize;

inline bool putOverlayHead(PacketWriter &out, const OverlayRun &run) noexcept {
  return out.put(run.columns) && out.put(run.rows) && out.put(run.firstPixel) && out.put(run.count) &&
         out.put(std::uint16_t{0});
}

inline bool putOverlayPixel(PacketWriter &out, const OverlayPixel &p) noexcept {
  return out.room() >= overlayPixelSize && out.put(p.x) && out.put(p.y) && out.put(p.z) && out.put(p.red) &&
         out.put(p.green) && out.put(p.blue) && out.put(p.channel);
}

[[nodiscard]] inline std::optional<OverlayRun> parseOverlay(std::span<const std::uint8_t> body) noexcept {
  SpanReader in(body);
  OverlayRun run;
  run.columns = in.read<std::uint16_t>();
  run.rows = in.read<std::uint16_t>();
  run.firstPixel = in.read<std::uint32_t>();
  run.count = in.read<std::uint16_t>();
  in.skip(2);
  run.bytes = in.readBytes(run.count * overlayPixelSize);
  const std::uint32_t pixels = std::uint32_t{run.columns} * run.rows;
  if (in.failed() || pixels > overlayPixelLimit || run.firstPixel > pixels || run.count > pixels - run.firstPixel)
    return std::nullopt;
  return run;
}

[[nodiscard]] inline OverlayPixel loadOverlayPixel(std::span<const std::uint8_t, overlayPixelSize> record) noexcept {
  SpanReader in(record);
  OverlayPixel p;
  p.x = in.read<float>();
  p.y = in.read<float>();
  p.z = in.read<float>();
  p.red = in.read<std::uint16_t>();
  p.green = in.read<std::uint16_t>();
  p.blue = in.read<std::uint16_t>();
  p.channel = in.read<std::uint16_t>();
  return p;
}

/// Grid: rows and columns of a lidar whose channels form a grid, with its dirt values (the overall value last).
struct Grid {
  std::uint16_t rows = 0;
  std::uint16_t columns = 0;
  std::vector<std::int32_t> dirt;
};
inline constexpr std::size_t gridHeadSize = 8;  // u16 rows, u16 columns, u16 count, 2 reserved bytes

inline bool putGrid(PacketWriter &out, const Grid &grid) noexcept {
  if (out.room() < gridHeadSize + grid.dirt.size() * 4) return false;
  out.put(grid.rows);
  out.put(grid.columns);
  out.put(static_cast<std::uint16_t>(grid.dirt.size()));
  out.put(std::uint16_t{0});
  for (const std::int32_t value : grid.dirt) out.put(value);
  return true;
}

[[nodiscard]] inline std::optional<Grid> parseGrid(std::span<const std::uint8_t> body) {
  SpanReader in(body);
  Grid grid;
  grid.rows = in.read<std::uint16_t>();
  grid.columns = in.read<std::uint16_t>();
  const auto count = in.read<std::uint16_t>();
  in.skip(2);
  if (in.failed() || in.remaining() < std::size_t{count} * 4) return std::nullopt;
  grid.dirt.reserve(count);
  for (unsigned i = 0; i < count; ++i) grid.dirt.push_back(in.read<std::int32_t>());
  return grid;
}

/// Which file form a calibration blob has; the value is its bit in `FrameDescriptor::calibrationMask`.
enum class CalibrationKind : std::uint8_t {
  Corrections = 0,
  Firetimes = 1,
  Dcf = 2,
  NonlinearMapping = 3,
  ChannelConfig = 4
};
inline constexpr unsigned calibrationKinds = 5;

/// Calibration: a run of a calibration file's bytes.
struct CalibrationRun {
  CalibrationKind kind = CalibrationKind::Corrections;
  std::uint32_t crc = 0;  ///< CRC-32 of the whole blob; tells one blob from the next
  Fragment part;
};
inline constexpr std::size_t calibrationHeadSize = 20;
inline constexpr std::uint32_t calibrationSizeLimit = 16u << 20;  ///< a longer blob is refused

inline bool putCalibration(PacketWriter &out, const CalibrationRun &run) noexcept {
  return fits(run.part) && run.part.total <= calibrationSizeLimit &&
         out.room() >= calibrationHeadSize + run.part.bytes.size() && out.put(static_cast<std::uint8_t>(run.kind)) &&
         out.put(std::uint8_t{0}) && out.put(static_cast<std::uint16_t>(run.part.bytes.size())) &&
         out.put(run.part.total) && out.put(run.part.offset) && out.put(run.crc) && out.put(std::uint32_t{0}) &&
         out.putBytes(run.part.bytes);
}

[[nodiscard]] inline std::optional<CalibrationRun> parseCalibration(std::span<const std::uint8_t> body) noexcept {
  SpanReader in(body);
  CalibrationRun run;
  const auto kind = in.read<std::uint8_t>();
  in.skip(1);
  const auto count = in.read<std::uint16_t>();
  run.part.total = in.read<std::uint32_t>();
  run.part.offset = in.read<std::uint32_t>();
  run.crc = in.read<std::uint32_t>();
  in.skip(4);
  run.part.bytes = in.readBytes(count);
  if (in.failed() || kind >= calibrationKinds || run.part.total > calibrationSizeLimit || !fits(run.part))
    return std::nullopt;
  run.kind = static_cast<CalibrationKind>(kind);
  return run;
}

}  // namespace tarvo::lidar::wire
