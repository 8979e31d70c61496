#include "tools/sim/ray_caster.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tarvo::lidar::sim {
namespace {

constexpr double reach = 250.0;
constexpr double leafFreePath = 1.5;  // metres that a beam goes through leaves on average

/// Moves a shape to the copy of itself that lies nearest to the lidar, for a scene that repeats along y.
void wrapAlong(Primitive &p, double period) noexcept {
  const double middle = (p.low.y + p.high.y) * 0.5;
  const double shift = -std::round(middle / period) * period;
  p.low.y += shift;
  p.high.y += shift;
}

/// Azimuth from the y axis towards x as a sector position in [0, count).
double sectorOf(double x, double y, double count) noexcept {
  const double turn = std::atan2(x, y) / (2.0 * std::numbers::pi);
  return (turn < 0 ? turn + 1.0 : turn) * count;
}

double gap(double low, double high) noexcept { return std::max({low, -high, 0.0}); }

}  // namespace

RayCaster::RayCaster(const Scene &scene, double seconds, double travel, double speed)
    : ground_(scene.ground()),
      lidar_{scene.laneOffset(), scene.period() > 0 ? travel : 0.0, lidarHeight},
      velocity_{0, scene.period() > 0 ? speed : 0.0, 0} {
  scene.place(seconds, primitives_);
  for (std::uint32_t i = 0; i < primitives_.size(); ++i) {
    Primitive &p = primitives_[i];
    p.low = p.low - lidar_;
    p.high = p.high - lidar_;
    if (scene.period() > 0) wrapAlong(p, scene.period());
    file(i);
  }
  for (auto &sector : bySector_)
    std::sort(sector.begin(), sector.end(), [](const Candidate &a, const Candidate &b) {
      return a.nearest != b.nearest ? a.nearest < b.nearest : a.index < b.index;
    });
}

void RayCaster::file(std::uint32_t index) {
  const Primitive &p = primitives_[index];
  const double nearest = std::hypot(gap(p.low.x, p.high.x), gap(p.low.y, p.high.y));
  if (nearest > reach) return;
  if (nearest <= 0.0) {
    for (auto &sector : bySector_) sector.push_back({nearest, index});
    return;
  }
  // The lidar is outside the box, so its corners span less than half a turn: measure them from the centre's direction.
  const double centre = sectorOf(p.low.x + p.high.x, p.low.y + p.high.y, sectors);
  double before = 0, after = 0;
  for (const double x : {p.low.x, p.high.x}) {
    for (const double y : {p.low.y, p.high.y}) {
      double offset = sectorOf(x, y, sectors) - centre;
      offset -= std::round(offset / sectors) * sectors;
      before = std::min(before, offset);
      after = std::max(after, offset);
    }
  }
  const auto first = static_cast<long>(std::floor(centre + before));
  const auto last = static_cast<long>(std::floor(centre + after));
  constexpr auto count = static_cast<long>(sectors);
  for (long sector = first; sector <= last; ++sector)
    bySector_[static_cast<std::size_t>((sector % count + count) % count)].push_back({nearest, index});
}

Echo RayCaster::echoOf(const Primitive &hit, const Crossing &crossing, double distance, Vec3 direction,
                       Draw &draw) const {
  const Vec3 point = direction * distance;
  const SurfaceSpot spot{point + lidar_, point - hit.low, crossing.axis, crossing.incidence};
  Echo echo;
  echo.paint = paint(hit.surface, spot, draw);
  echo.distance = distance + echo.paint.inset;
  echo.radialVelocity = dot(hit.velocity - velocity_, direction);
  echo.foliage = hit.shape == Shape::Crown;
  return echo;
}

Echo RayCaster::groundEcho(double distance, Vec3 direction, Draw &draw) const {
  const Vec3 point = direction * distance + lidar_;
  Echo echo;
  echo.paint = paint(ground_, {point, point, 2, std::abs(direction.z)}, draw);
  echo.distance = distance;
  echo.radialVelocity = dot(Vec3{} - velocity_, direction);
  return echo;
}

Echoes RayCaster::cast(Vec3 direction, Draw &draw) const {
  struct Found {
    double distance = reach;
    const Primitive *primitive = nullptr;
    Crossing crossing;
  };
  Found solid;
  const bool meetsGround = direction.z < -1e-6 && lidarHeight / -direction.z < reach;
  if (meetsGround) solid.distance = lidarHeight / -direction.z;
  std::array<Found, 2> leaves;  // the two nearest stops inside foliage

  const double flat = std::hypot(direction.x, direction.y);
  const auto sector = std::min(static_cast<std::size_t>(sectorOf(direction.x, direction.y, sectors)), sectors - 1);
  for (const Candidate &candidate : bySector_[sector]) {
    if (candidate.nearest > solid.distance * flat) break;
    const Primitive &primitive = primitives_[candidate.index];
    const auto crossing = cross(primitive, direction);
    if (!crossing || crossing->enter >= solid.distance) continue;
    if (primitive.shape != Shape::Crown) {
      solid = {crossing->enter, &primitive, *crossing};
      continue;
    }
    const double stop = crossing->enter - leafFreePath * std::log(1.0 - draw.uniform());
    if (stop >= crossing->leave) continue;
    const Found leaf{stop, &primitive, *crossing};
    if (stop < leaves[0].distance) {
      leaves[1] = leaves[0];
      leaves[0] = leaf;
    } else if (stop < leaves[1].distance) {
      leaves[1] = leaf;
    }
  }

  const auto solidEcho = [&]() -> Echo {
    if (solid.primitive != nullptr) return echoOf(*solid.primitive, solid.crossing, solid.distance, direction, draw);
    return meetsGround ? groundEcho(solid.distance, direction, draw) : Echo{};
  };
  const auto leafEcho = [&](const Found &leaf) {
    return echoOf(*leaf.primitive, leaf.crossing, leaf.distance, direction, draw);
  };
  const auto inFront = [&](const Found &leaf) { return leaf.primitive != nullptr && leaf.distance < solid.distance; };
  Echoes echoes;
  if (!inFront(leaves[0])) {
    echoes[0] = solidEcho();
    return echoes;
  }
  echoes[0] = leafEcho(leaves[0]);
  echoes[1] = inFront(leaves[1]) && draw.uniform() < 0.4 ? leafEcho(leaves[1]) : solidEcho();
  return echoes;
}

}  // namespace tarvo::lidar::sim
