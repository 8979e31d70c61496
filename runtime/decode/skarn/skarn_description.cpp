#include "runtime/decode/skarn/skarn_description.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "runtime/wire/descriptor.h"

namespace tarvo::lidar {

std::optional<StreamDescription> readDescription(std::span<const std::uint8_t> body) {
  const auto told = wire::parseDescriptor(body);
  if (!told) return std::nullopt;
  StreamDescription out;
  out.type = told->type;
  out.channels = told->channels;
  out.lasers = told->lasers != 0 ? told->lasers : told->channels;
  out.columns = told->columns;
  out.echoes = std::max<std::uint8_t>(told->echoes, 1);
  out.rgbMode = told->rgbMode;
  out.motorSpeedRpm = std::isfinite(told->motorSpeedRpm) ? told->motorSpeedRpm : 0.0;
  out.elevationMinDeg = told->elevationMinDeg;
  out.elevationMaxDeg = told->elevationMaxDeg;
  const std::uint64_t points = out.framePoints();
  if (points == 0 || points > framePointLimit) return std::nullopt;
  // Slots are given out by column, so the packets of a frame only have to make room for all of them.
  out.packetsPerFrame = std::max<std::uint16_t>(told->packetsPerFrame, 1);
  out.pointsPerPacket = std::max<std::uint32_t>(
      told->pointsPerPacket, static_cast<std::uint32_t>((points + out.packetsPerFrame - 1) / out.packetsPerFrame));
  if (std::uint64_t{out.packetsPerFrame} * out.pointsPerPacket > 2 * framePointLimit) return std::nullopt;
  out.nominalElevationsDeg.reserve(out.channels);
  for (unsigned channel = 1; channel <= out.channels; ++channel)
    out.nominalElevationsDeg.push_back(static_cast<float>(told->nominalElevationDeg(channel)));
  return out;
}

}  // namespace tarvo::lidar
