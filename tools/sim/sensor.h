#pragma once

#include "runtime/wire/blob_bodies.h"
#include "runtime/wire/descriptor.h"
#include "tools/sim/options.h"

namespace tarvo::lidar::sim {

/// What a lidar type puts on the wire, as far as the simulator knows.
struct TypeTraits {
  std::uint32_t parts = 0;  ///< `wire::PointPart` bits
  double fieldOfViewDeg = 360.0;
  bool rawIntensityFirst = false;  ///< alternate layout: attribute byte 1 is the raw intensity
  bool confidenceIsEcho = false;
  bool grid = false;                ///< channels are rows of a grid
  bool fourSections = false;        ///< corrections name four sets of channels
  double colourScale = 4095.0;      ///< raw value of full colour
  double colourScaleLong = 4095.0;  ///< the same for long-focus points
};

[[nodiscard]] TypeTraits traitsOf(std::string_view type);

/// One simulated lidar with its own small deviations from the nominal angles.
struct Sensor {
  TypeTraits traits;
  std::vector<double> nominalElevationDeg;  ///< by channel, from the top
  std::vector<double> elevationDeg;         ///< true angles
  std::vector<double> azimuthOffsetDeg;
  std::vector<double> firetimeNs;
  double fieldOfViewDeg = 360.0;
  double motorSpeedRpm = 0;
  unsigned returnMode = 0;

  explicit Sensor(const Options &options);

  /// Direction of a column before the channel's offset, degrees.
  [[nodiscard]] double columnAzimuthDeg(unsigned column, unsigned columns) const noexcept;
  /// Corrections as the CSV file that a user could load: channel, elevation and azimuth in degrees,
  /// and the section for a type with four.
  [[nodiscard]] std::string correctionsCsv() const;
  [[nodiscard]] std::string firetimesCsv() const;
};

}  // namespace tarvo::lidar::sim
