#include "runtime/decode/channel_table.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tarvo::lidar {

namespace {

constexpr double radians(double degrees) { return degrees * std::numbers::pi / 180.0; }
constexpr double degreesPerNsAtOneRpm = 360.0 / 60.0 * 1e-9;

template <class T>
T valueOr(const std::vector<T> *values, std::size_t index, T otherwise) {
  return values != nullptr && index < values->size() ? (*values)[index] : otherwise;
}

}  // namespace

void ChannelTable::build(const StreamDescription &shape, std::uint32_t frameNumber, const ChannelTableInput &input) {
  const CalibrationSnapshot &calibration = *input.calibration;
  const CorrectionTable *corrections = input.useCorrections ? calibration.corrections.get() : nullptr;
  const std::vector<float> *azimuths = nullptr;
  if (corrections != nullptr) {
    // The second azimuth of a table belongs to the second mirror face, which takes every other frame.
    const bool second = frameNumber % 2 != 0 && !corrections->azimuthsOdd.empty();
    azimuths = second ? &corrections->azimuthsOdd : &corrections->azimuths;
  }
  const std::vector<float> *elevations = corrections != nullptr ? &corrections->elevations : nullptr;
  const std::vector<float> *delays =
      input.firetimes && calibration.firetimes ? &calibration.firetimes->nanoseconds : nullptr;
  const std::vector<float> *offsets =
      input.distanceOffsets && calibration.dcf ? &calibration.dcf->distanceOffsets : nullptr;
  const std::vector<bool> *inService = calibration.channelConfig ? &calibration.channelConfig->enabled : nullptr;

  turning = shape.motorSpeedRpm > 0;
  entries.resize(shape.channels);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    ChannelEntry &entry = entries[i];
    const float delay = std::clamp(valueOr(delays, i, 0.0F), 0.0F, 1e9F);
    entry.delayNs = static_cast<std::uint32_t>(std::lround(delay));
    // A channel that fires later in its block sees the mirror that much further on.
    const double turned = turning ? shape.motorSpeedRpm * degreesPerNsAtOneRpm * entry.delayNs : 0.0;
    entry.azimuthOffsetDeg = static_cast<float>(valueOr(azimuths, i, 0.0F) + turned);
    entry.elevationDeg = valueOr(&shape.nominalElevationsDeg, i, 0.0F);
    entry.elevationCalibDeg = valueOr(elevations, i, entry.elevationDeg);
    entry.distanceOffset = valueOr(offsets, i, 0.0F);
    entry.shown = input.store->isDisplayed(static_cast<int>(i)) &&
                  (inService == nullptr || i >= inService->size() || (*inService)[i]);
    const double elevation = radians(entry.elevationCalibDeg);
    const double offset = radians(entry.azimuthOffsetDeg);
    entry.alongCos = static_cast<float>(std::cos(elevation) * std::cos(offset));
    entry.alongSin = static_cast<float>(std::cos(elevation) * std::sin(offset));
    entry.upward = static_cast<float>(std::sin(elevation));
  }
}

}  // namespace tarvo::lidar
