#include "default/frame/filter_ranges.h"

#include <algorithm>
#include <array>

#include "contracts/runtime/point_fields.h"

namespace tarvo::skarnvisor {

using lidar::SDKPointInfo;
namespace fields = lidar::fields;

namespace {

struct FileAttribute {
  std::string_view name;
  float (*value)(const SDKPointInfo &);
};

template <const auto &field>
float plain(const SDKPointInfo &point) {
  return static_cast<float>(field.get(point));
}

float microseconds(const SDKPointInfo &point) { return static_cast<float>(point.timeNs / 1000U); }

/// Row k is the attribute of id k.
constexpr std::array<FileAttribute, 32> attributes{{
    {"Ch", plain<fields::channel>},
    {"t(us)", microseconds},
    {"Azi(deg)", plain<fields::azimuth>},
    {"AziCorr(deg)", plain<fields::azimuthCalib>},
    {"Ele(deg)", plain<fields::elevation>},
    {"EleCorr(deg)", plain<fields::elevationCalib>},
    {"RFL", plain<fields::intensity>},
    {"Dist(m)", plain<fields::distance>},
    {"x(m)", plain<fields::x>},
    {"y(m)", plain<fields::y>},
    {"z(m)", plain<fields::z>},
    {"confidence", plain<fields::confidence>},
    {"WeightFactor", plain<fields::weightFactor>},
    {"EnvLight", plain<fields::envLight>},
    {"AziState", plain<fields::aziState>},
    {"DirtyDegree", plain<fields::dirtyDegree>},
    {"Confidence4567", plain<fields::confidence4567>},
    {"Field", plain<fields::field>},
    {"GlareInD", plain<fields::glareInD>},
    {"TurnIndex", plain<fields::turnIndex>},
    {"PointId", plain<fields::pointId>},
    {"RelVelocity", plain<fields::relVelocity>},
    {"AngleId", plain<fields::angleIdUnsigned>},
    {"Col", plain<fields::column>},
    {"Row", plain<fields::channel>},
    {"Background", plain<fields::background>},
    {"QswConfidence", plain<fields::qswConfidence>},
    {"DirtyLevel", plain<fields::dirtyLevel>},
    {"NoiseLevel", plain<fields::noiseLevel>},
    {"RawIntensity", plain<fields::rawIntensity>},
    {"Area", plain<fields::area>},
    {"Peak", plain<fields::peak>},
}};

}  // namespace

RangeOutcome FilterRanges::outcomeOf(const SDKPointInfo &point) const noexcept {
  for (const auto &[id, ranges] : byAttribute) {
    const float value = valueOf(id, point);
    for (const FilterRange &range : ranges) {
      if (range.min <= value && value <= range.max) {
        return range.hide ? RangeOutcome::Hide : RangeOutcome::Highlight;
      }
    }
  }
  return RangeOutcome::None;
}

std::optional<int> FilterRanges::attributeIdOf(std::string_view name) noexcept {
  const auto found = std::ranges::find(attributes, name, &FileAttribute::name);
  if (found == attributes.end()) {
    return std::nullopt;
  }
  return static_cast<int>(found - attributes.begin());
}

float FilterRanges::valueOf(int id, const SDKPointInfo &point) noexcept {
  return attributes[static_cast<std::size_t>(id)].value(point);
}

}  // namespace tarvo::skarnvisor
