#include "tools/sim/sensor.h"

#include <cmath>
#include <cstdio>

#include "tools/sim/noise.h"

namespace tarvo::lidar::sim {
namespace {

using wire::PointPart;

template <typename... Parts>
constexpr std::uint32_t mask(Parts... parts) noexcept {
  return (wire::bitOf(parts) | ...);
}

constexpr std::uint32_t fieldAndGlare = mask(PointPart::Attribute0, PointPart::Attribute1);
constexpr std::uint32_t attributes = mask(PointPart::Attribute0, PointPart::Attribute1, PointPart::Attribute2,
                                          PointPart::Attribute3, PointPart::Attribute4);
constexpr std::uint32_t attributesAndArea = attributes | mask(PointPart::Area, PointPart::RawArea, PointPart::Peak);
constexpr std::uint32_t alternate =
    fieldAndGlare | mask(PointPart::AlternateArea, PointPart::CentreDifference, PointPart::FrontDifference,
                         PointPart::StepId, PointPart::SpadId);
constexpr std::uint32_t velocity = mask(PointPart::RelativeVelocity, PointPart::SpikeValues, PointPart::AngleId);

constexpr std::string_view alternateTypes[] = {
    "NBQ_TU_410", "NBQ_TU_410_RS", "NBQ_TU_830",   "NBQ_TU_RS5_41", "NBQ_TU_RS5_43", "NBQ_TU_RS5_47", "NBQ_TU_5_42",
    "NBW_TOP_V2", "NBW_TOP_V3_V4", "COLOR_FLD_V6", "COLOR_FLD_V7",  "COLOR_FLD_V11", "NBW_PEAK_V8",   "NBW_PEAK_V8_C",
};

struct FamilyRow {
  std::string_view prefix;
  TypeTraits traits;
};

/// First row whose prefix fits the type.
constexpr FamilyRow families[] = {
    {"FMCW", {.parts = velocity, .fieldOfViewDeg = 120.0}},
    {"QS", {.parts = mask(PointPart::GridPoint), .fieldOfViewDeg = 110.0, .grid = true}},
    {"OrnikaQS", {.parts = mask(PointPart::GridPoint), .fieldOfViewDeg = 110.0, .grid = true}},
    {"HU", {.parts = mask(PointPart::Attribute0), .confidenceIsEcho = true}},
    {"KR", {.parts = fieldAndGlare}},
    {"NBQ", {.parts = attributesAndArea}},
    {"NBW", {.parts = attributesAndArea}},
    {"COLOR", {.parts = attributesAndArea}},
    {"NB", {.parts = mask(PointPart::Attribute0, PointPart::Attribute2, PointPart::Attribute3)}},
    {"", {.parts = attributes}},
};

struct ScaleRow {
  std::string_view type;
  double scale, scaleLong;
};

/// Raw colour ranges that differ from 12 bits.
constexpr ScaleRow colourScales[] = {
    {"NBW_TOP_COLOR_V6", 255, 255}, {"COLOR_FLD_V6", 255, 255}, {"NBW_PEAK_V8", 4095, 512}, {"NBW_PEAK_V8_C", 255, 31}};

constexpr double topDeg = 15.0, bottomDeg = -25.0;

/// Channels stand close near the horizon and apart at the edges: share 0 is the top channel, 1 the bottom one.
double elevationAt(double share) noexcept {
  constexpr double horizon = 0.42;
  const auto spread = [](double s) { return 0.3 * s + 0.7 * s * s; };
  return share < horizon ? topDeg * spread((horizon - share) / horizon)
                         : bottomDeg * spread((share - horizon) / (1.0 - horizon));
}

unsigned defaultReturnMode(unsigned echoes) noexcept {
  constexpr unsigned strongest = 55, lastAndStrongest = 57;
  return echoes == 1 ? strongest : lastAndStrongest;
}

std::string fixed(double value, int decimals) {
  char text[48];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

}  // namespace

TypeTraits traitsOf(std::string_view type) {
  TypeTraits traits;
  for (const FamilyRow &row : families) {
    if (type.starts_with(row.prefix)) {
      traits = row.traits;
      break;
    }
  }
  for (const std::string_view name : alternateTypes) {
    if (type == name) {
      traits.parts = alternate;
      traits.rawIntensityFirst = true;
    }
  }
  if (type.find("COLOR") != std::string_view::npos || type.find("PEAK") != std::string_view::npos)
    traits.parts |= wire::bitOf(PointPart::Colour);
  traits.fourSections = type == "NBW_PEAK_V8" || type == "NBW_PEAK_V8_C";
  for (const ScaleRow &row : colourScales) {
    if (type == row.type) {
      traits.colourScale = row.scale;
      traits.colourScaleLong = row.scaleLong;
    }
  }
  return traits;
}

Sensor::Sensor(const Options &options) : traits(traitsOf(options.type)) {
  fieldOfViewDeg = options.fieldOfViewDeg > 0 ? options.fieldOfViewDeg : traits.fieldOfViewDeg;
  motorSpeedRpm = fieldOfViewDeg >= 360.0 ? options.rateHz * 60.0 : 0.0;
  returnMode = options.returnMode != 0 ? options.returnMode : defaultReturnMode(options.echoes);
  constexpr double stagger[] = {-0.3, 0.1, -0.1, 0.3};
  const double columnNs = 1e9 / options.rateHz / options.columns;
  for (unsigned i = 0; i < options.channels; ++i) {
    const double share = options.channels > 1 ? static_cast<double>(i) / (options.channels - 1) : 0.42;
    const double nominal =
        std::round(elevationAt(share) / wire::nominalElevationUnitDeg) * wire::nominalElevationUnitDeg;
    Draw draw(options.seed, 101, options.sensorId, i);
    nominalElevationDeg.push_back(nominal);
    elevationDeg.push_back(std::round((nominal + draw.between(-0.04, 0.04)) * 1e4) / 1e4);
    azimuthOffsetDeg.push_back(std::round((stagger[i % 4] + draw.between(-0.03, 0.03)) * 1e4) / 1e4);
    firetimeNs.push_back(std::floor(columnNs * 0.8 * i / options.channels));
  }
}

double Sensor::columnAzimuthDeg(unsigned column, unsigned columns) const noexcept {
  const double start = fieldOfViewDeg >= 360.0 ? 0.0 : -fieldOfViewDeg / 2;
  return start + fieldOfViewDeg * column / columns;
}

std::string Sensor::correctionsCsv() const {
  std::string text = traits.fourSections ? "channel,elevation,azimuth,section\n" : "channel,elevation,azimuth\n";
  for (std::size_t i = 0; i < elevationDeg.size(); ++i) {
    text += std::to_string(i + 1) + ',' + fixed(elevationDeg[i], 4) + ',' + fixed(azimuthOffsetDeg[i], 4);
    if (traits.fourSections) text += ',' + std::to_string(4 * i / elevationDeg.size());
    text += '\n';
  }
  return text;
}

std::string Sensor::firetimesCsv() const {
  std::string text = "channel,firetime_ns\n";
  for (std::size_t i = 0; i < firetimeNs.size(); ++i)
    text += std::to_string(i + 1) + ',' + fixed(firetimeNs[i], 0) + '\n';
  return text;
}

}  // namespace tarvo::lidar::sim
