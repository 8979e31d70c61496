#include "tools/sim/surface.h"

#include <algorithm>

#include "tools/sim/street_plan.h"

namespace tarvo::lidar::sim {
namespace {

double wrap(double value, double period) noexcept { return value - std::floor(value / period) * period; }

Paint flat(const Surface &surface) noexcept {
  return {static_cast<double>(surface.reflectivity), surface.colour.red / 255.0, surface.colour.green / 255.0,
          surface.colour.blue / 255.0, 0.0};
}

Paint tinted(Paint base, double intensity, double brightness) noexcept {
  base.intensity = intensity;
  base.red *= brightness;
  base.green *= brightness;
  base.blue *= brightness;
  return base;
}

bool markedRoad(double x, double y) noexcept {
  const double side = std::abs(x);
  const double along = wrap(y, street::period);
  const bool crossing = along > street::crossingBegin - 6.0 && along < street::crossingEnd + 6.0;
  const bool zebra = side < street::roadHalfWidth - 0.4 && wrap(x, 1.0) < 0.5 &&
                     ((along > street::crossingBegin - 5.0 && along < street::crossingBegin - 1.5) ||
                      (along > street::crossingEnd + 1.5 && along < street::crossingEnd + 5.0));
  if (zebra || crossing) return zebra;
  const bool centreDash = side < 0.08 && wrap(y, 6.0) < 3.0;
  const bool edgeLine = std::abs(side - street::laneWidth) < 0.07;
  const bool parkingBar = side > street::laneWidth && side < street::roadHalfWidth && wrap(y, 6.0) < 0.1;
  return centreDash || edgeLine || parkingBar;
}

Paint road(const Surface &surface, const SurfaceSpot &spot, Draw &draw) noexcept {
  if (std::abs(spot.world.x) > street::buildingLine) {
    const double along = wrap(spot.world.y, street::period);
    if (along < street::crossingBegin || along > street::crossingEnd)
      return {draw.between(38, 62), 0.27, 0.38, 0.18, 0.0};  // yards between the houses
  }
  if (markedRoad(spot.world.x, spot.world.y)) return {draw.between(105, 150), 0.92, 0.92, 0.88, 0.0};
  const bool cover = std::hypot(wrap(spot.world.x, 9.0) - 1.1, wrap(spot.world.y, 17.0) - 6.0) < 0.35;
  return tinted(flat(surface), cover ? 52 : surface.reflectivity + draw.between(-4, 4),
                cover ? 0.7 : draw.between(0.9, 1.1));
}

Paint facade(const Surface &surface, const SurfaceSpot &spot, Draw &draw) noexcept {
  const Paint wall = flat(surface);
  if (spot.axis == 2) return tinted(wall, 30, 0.6);
  const double along = spot.axis == 0 ? spot.local.y : spot.local.x;
  const double pitch = 2.2 + 0.3 * (surface.variant % 4);
  const double u = wrap(along, pitch) / pitch;
  const double v = spot.local.z < 4.0 ? spot.local.z / 4.0 : wrap(spot.local.z - 4.0, 3.1) / 3.1;
  const bool shopFront = spot.local.z < 4.0;
  const bool window =
      shopFront ? u > 0.12 && u < 0.88 && v > 0.15 && v < 0.75 : u > 0.25 && u < 0.75 && v > 0.28 && v < 0.8;
  if (window) {
    Paint glass{draw.between(6, 16), 0.16, 0.20, 0.27, 0.0};
    glass.inset = std::min(0.22 / std::max(spot.incidence, 0.2), 0.8);
    return glass;
  }
  const bool sill = !shopFront && v > 0.22 && v < 0.28 && u > 0.2 && u < 0.8;
  const bool cornice = v > 0.94;
  if (sill || cornice) return tinted(wall, surface.reflectivity + 40.0, 1.25);
  return tinted(wall, surface.reflectivity + draw.between(-5, 5), draw.between(0.94, 1.06));
}

Paint pavement(const Surface &surface, const SurfaceSpot &spot, Draw &draw) noexcept {
  if (spot.axis != 2) return tinted(flat(surface), surface.reflectivity + 35.0, 1.2);  // the kerb stone's face
  const bool joint = wrap(spot.world.x, 0.8) < 0.06 || wrap(spot.world.y, 0.8) < 0.06;
  return tinted(flat(surface), joint ? surface.reflectivity * 0.6 : surface.reflectivity + draw.between(-4, 4),
                joint ? 0.75 : 1.0);
}

Paint floorTiles(const Surface &surface, const SurfaceSpot &spot, Draw &draw) noexcept {
  const bool lane = std::abs(std::abs(spot.world.x) - 3.0) < 0.06;
  const bool joint = wrap(spot.world.x, 4.0) < 0.05 || wrap(spot.world.y, 4.0) < 0.05;
  if (lane) return {draw.between(95, 115), 0.9, 0.8, 0.1, 0.0};
  return tinted(flat(surface), joint ? 18 : surface.reflectivity + draw.between(-3, 3), joint ? 0.6 : 1.0);
}

Paint target(const Surface &surface, const SurfaceSpot &spot, Draw &draw) noexcept {
  const bool odd =
      (static_cast<long>(std::floor(spot.local.x / 1.5)) + static_cast<long>(std::floor(spot.local.z / 1.5))) % 2 != 0;
  return tinted(flat(surface), (odd ? 180 : 40) + draw.between(-3, 3), odd ? 1.0 : 0.3);
}

}  // namespace

Paint paint(const Surface &surface, const SurfaceSpot &spot, Draw &draw) noexcept {
  Paint out;
  switch (surface.texture) {
    case Texture::Plain:
    case Texture::CarBody:
      out = tinted(flat(surface), surface.reflectivity + draw.between(-4, 4), 1.0);
      break;
    case Texture::Road:
      out = road(surface, spot, draw);
      break;
    case Texture::Floor:
      out = floorTiles(surface, spot, draw);
      break;
    case Texture::Pavement:
      out = pavement(surface, spot, draw);
      break;
    case Texture::Facade:
      out = facade(surface, spot, draw);
      break;
    case Texture::Foliage:
      out = tinted(flat(surface), surface.reflectivity + draw.between(-18, 18), draw.between(0.7, 1.2));
      break;
    case Texture::CarCabin:
      out = spot.axis == 2 ? flat(surface) : Paint{draw.between(5, 12), 0.1, 0.12, 0.15, 0.0};
      break;
    case Texture::Retro:
      return {draw.between(235, 255), surface.colour.red / 255.0, surface.colour.green / 255.0,
              surface.colour.blue / 255.0, 0.0};
    case Texture::Target:
      out = target(surface, spot, draw);
      break;
  }
  out.intensity *= 0.45 + 0.55 * std::sqrt(spot.incidence);
  return out;
}

}  // namespace tarvo::lidar::sim
