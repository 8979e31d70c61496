#include "default/frame/attribute_catalogue.h"

#include <algorithm>
#include <array>

#include "contracts/runtime/point_fields.h"

namespace tarvo::skarnvisor {

using lidar::SDKPointInfo;
namespace fields = lidar::fields;

namespace {

using Settings = AttributeSettings;

using ValueOf = float (*)(const Settings &, const SDKPointInfo &);
using ValuesOf = void (*)(const Settings &, std::span<const SDKPointInfo>, float *);

struct AttributeRow {
  std::string_view title;
  ValueOf value;
  ValuesOf values;
};

template <auto value>
void valuesOf(const Settings &settings, std::span<const SDKPointInfo> points, float *values) {
  const Settings local = settings;  // a copy, so that the writes cannot touch what the loop reads
  for (std::size_t i = 0; i < points.size(); ++i) {
    values[i] = value(local, points[i]);
  }
}

template <auto value>
constexpr AttributeRow row(std::string_view title) {
  return {title, value, &valuesOf<value>};
}

/// An integer field under the attribute mask, divided by `full`.
template <const auto &field, int full>
float masked(const Settings &settings, const SDKPointInfo &point) {
  return static_cast<float>(field.get(point) & settings.attributeMask) / static_cast<float>(full);
}

/// Bits of the confidence word, shifted down and divided by `full`; the mask does not touch them.
template <const auto &bits, int full>
float plainBits(const Settings &, const SDKPointInfo &point) {
  return static_cast<float>(bits.get(point)) / static_cast<float>(full);
}

/// A coordinate from -300 m to 300 m.
template <const auto &field>
float coordinate(const Settings &, const SDKPointInfo &point) {
  return (field.get(point) + 300.0F) / 600.0F;
}

/// An elevation from -45 to 95 degrees.
template <const auto &field>
float elevation(const Settings &, const SDKPointInfo &point) {
  return (field.get(point) + 45.0F) / 140.0F;
}

/// A value that the alternate layout holds elsewhere and on another scale.
template <const auto &usual, int usualFull, const auto &alternate, int alternateFull>
float byLayout(const Settings &settings, const SDKPointInfo &point) {
  return settings.nbqPointLayout ? masked<alternate, alternateFull>(settings, point)
                                 : masked<usual, usualFull>(settings, point);
}

/// A distance difference: a byte, or a float in the alternate layout.
template <const auto &usual, const auto &alternate>
float difference(const Settings &settings, const SDKPointInfo &point) {
  return settings.nbqPointLayout ? alternate.get(point) / (settings.diffByThree ? 3.0F : 256.0F)
                                 : masked<usual, 256>(settings, point);
}

float channel(const Settings &settings, const SDKPointInfo &point) {
  return static_cast<float>(point.channel & settings.attributeMask) / static_cast<float>(settings.channelCount + 1);
}

float timestamp(const Settings &, const SDKPointInfo &point) { return static_cast<float>(point.timeNs) / 1e9F; }

float azimuth(const Settings &, const SDKPointInfo &point) {
  const float degrees = point.azimuth;
  const float shift = degrees < 0.0F ? 360.0F : degrees > 360.0F ? -360.0F : 0.0F;
  return (degrees + shift) / 360.0F;
}

float azimuthCalib(const Settings &, const SDKPointInfo &point) { return point.azimuthCalib / 360.0F; }

float distance(const Settings &, const SDKPointInfo &point) { return point.distance / 300.0F; }

/// Velocities have no value outside the family that measures them: drawn as highlighted.
float foreignVelocity(const Settings &, const SDKPointInfo &) { return 256.0F; }

float echo(const Settings &settings, const SDKPointInfo &point) {
  const int value = point.confidence & settings.attributeMask;
  return value < 2 ? 0.0F : value == 2 ? 0.5F : 1.0F;
}

float plainIntensity(const Settings &, const SDKPointInfo &point) {
  return static_cast<float>(point.intensity) / 256.0F;
}

/// Row k is the attribute of id k.
constexpr std::array<AttributeRow, attributeCount> catalogue{
    row<channel>("channel"),
    row<timestamp>("timestamp"),
    row<azimuth>("azimuth"),
    row<azimuthCalib>("azimuthCalib"),
    row<elevation<fields::elevation>>("elevation"),
    row<elevation<fields::elevationCalib>>("elevationCalib"),
    row<masked<fields::intensity, 256>>("intensity"),
    row<distance>("distance"),
    row<coordinate<fields::x>>("x"),
    row<coordinate<fields::y>>("y"),
    row<coordinate<fields::z>>("z"),
    row<masked<fields::weightFactor, 256>>("WeightFactor"),
    row<masked<fields::envLight, 256>>("EnvLight"),
    row<masked<fields::field, 4>>("Field"),
    row<masked<fields::aziState, 256>>("AziState"),
    row<masked<fields::dirtyDegree, 4>>("DirtyDegree"),
    row<masked<fields::turnIndex, 16>>("TurnIndex"),
    row<masked<fields::pointId, 65536>>("PointId"),
    row<plainBits<fields::confidence0, 1>>("confidence0"),
    row<plainBits<fields::confidence1, 1>>("confidence1"),
    row<plainBits<fields::confidence2, 1>>("confidence2"),
    row<plainBits<fields::confidence4567, 16>>("confidence4567"),
    row<masked<fields::confidence, 256>>("confidence"),
    row<masked<fields::glareInD, 16>>("GlareInD"),
    row<masked<fields::rainTag, 4>>("RainTag"),
    row<plainBits<fields::confidence3, 1>>("confidence3"),
    row<plainBits<fields::confidence5, 1>>("confidence5"),
    row<plainBits<fields::confidence6, 1>>("confidence6"),
    row<plainBits<fields::confidence7, 1>>("confidence7"),
    row<plainBits<fields::confidence01234, 32>>("confidence01234"),
    row<masked<fields::background, 256>>("Background"),
    row<foreignVelocity>("VelocityIntensity"),
    row<foreignVelocity>("OptVelocityIntensity"),
    row<foreignVelocity>("Velocity"),
    row<masked<fields::qswConfidence, 256>>("QswConfidence"),
    row<masked<fields::dirtyLevel, 4>>("DirtyLevel"),
    row<masked<fields::noiseLevel, 64>>("NoiseLevel"),
    row<byLayout<fields::rawIntensity, 256, fields::rawIntensityAlternate, 256>>("RawIntensity"),
    row<byLayout<fields::area, 65536, fields::areaAlternate, 256>>("Area"),
    row<byLayout<fields::peak, 256, fields::peakAlternate, 256>>("Peak"),
    row<plainBits<fields::confidence012345, 64>>("confidence012345"),
    row<difference<fields::frontCenterDistDiff, fields::frontCenterDistDiffAlternate>>("FrontCenterDistDiff"),
    row<difference<fields::frontDistDiff, fields::frontDistDiffAlternate>>("FrontDistDiff"),
    row<echo>("Echo"),
};

constexpr AttributeRow noAttribute = row<plainIntensity>("");

const AttributeRow &rowOf(int id) {
  return id >= 0 && id < attributeCount ? catalogue[static_cast<std::size_t>(id)] : noAttribute;
}

}  // namespace

std::string_view attributeTitle(int id) noexcept { return rowOf(id).title; }

std::optional<int> attributeIdOf(std::string_view title) noexcept {
  const auto found = std::ranges::find(catalogue, title, &AttributeRow::title);
  if (found == catalogue.end()) {
    return std::nullopt;
  }
  return static_cast<int>(found - catalogue.begin());
}

float attributeValue(const AttributeSettings &settings, int id, const SDKPointInfo &point) noexcept {
  return rowOf(id).value(settings, point);
}

void attributeValues(const AttributeSettings &settings, int id, std::span<const SDKPointInfo> points,
                     std::span<float> values) noexcept {
  rowOf(id).values(settings, points, values.data());
}

}  // namespace tarvo::skarnvisor
