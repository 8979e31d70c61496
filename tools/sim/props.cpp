#include "tools/sim/props.h"

#include <cmath>

namespace tarvo::lidar::sim {
namespace {

constexpr Surface tyre{Texture::Plain, 8, {25, 25, 28}, 0};
constexpr Surface plate{Texture::Retro, 250, {240, 240, 230}, 0};
constexpr Surface lamp{Texture::Plain, 120, {230, 220, 200}, 0};
constexpr Surface metal{Texture::Plain, 75, {120, 125, 130}, 0};
constexpr Surface bark{Texture::Plain, 30, {90, 70, 50}, 0};
constexpr Surface skin{Texture::Plain, 70, {210, 170, 140}, 0};

/// Places shapes given in a body's own frame (forward along +y) at its spot and heading.
class Placer {
 public:
  Placer(double x, double y, Heading heading, double speed, std::vector<Primitive> &out)
      : x_(x), y_(y), heading_(heading), velocity_(turned({0, speed, 0})), out_(out) {}

  void add(Primitive primitive) {
    const Vec3 a = turned(primitive.low);
    const Vec3 b = turned(primitive.high);
    primitive.low = {std::min(a.x, b.x) + x_, std::min(a.y, b.y) + y_, a.z};
    primitive.high = {std::max(a.x, b.x) + x_, std::max(a.y, b.y) + y_, b.z};
    primitive.velocity = velocity_;
    out_.push_back(primitive);
  }

 private:
  [[nodiscard]] Vec3 turned(Vec3 v) const noexcept {
    switch (heading_) {
      case Heading::North:
        return v;
      case Heading::South:
        return {-v.x, -v.y, v.z};
      case Heading::East:
        return {v.y, -v.x, v.z};
      case Heading::West:
        return {-v.y, v.x, v.z};
    }
    return v;
  }

  double x_, y_;
  Heading heading_;
  Vec3 velocity_;
  std::vector<Primitive> &out_;
};

}  // namespace

Primitive box(Vec3 low, Vec3 high, Surface surface) { return {Shape::Box, surface, low, high, {}}; }

Primitive pillar(double x, double y, double radius, double bottom, double top, Surface surface) {
  return {Shape::Cylinder, surface, {x - radius, y - radius, bottom}, {x + radius, y + radius, top}, {}};
}

Primitive ball(Vec3 centre, Vec3 half, Surface surface) {
  return {Shape::Ellipsoid, surface, centre - half, centre + half, {}};
}

void addVehicle(const Vehicle &vehicle, std::vector<Primitive> &out) {
  Placer place(vehicle.x, vehicle.y, vehicle.heading, vehicle.speed, out);
  Surface cabin = vehicle.paint;
  cabin.texture = Texture::CarCabin;
  const double half = vehicle.van ? 3.0 : 2.2;
  const double side = vehicle.van ? 1.0 : 0.9;
  const double sill = vehicle.van ? 0.45 : 0.3;
  if (vehicle.van) {
    place.add(box({-side, -half, sill}, {side, 1.4, 2.6}, vehicle.paint));
    place.add(box({-side, 1.4, sill}, {side, half, 1.2}, vehicle.paint));
    place.add(box({-0.95, 1.4, 1.2}, {0.95, 2.5, 2.1}, cabin));
  } else {
    place.add(box({-side, -half, sill}, {side, half, 0.85}, vehicle.paint));
    place.add(box({-0.78, -1.7, 0.85}, {0.78, 0.9, 1.42}, cabin));
    place.add(box({-0.7, -1.4, 1.42}, {0.7, 0.5, 1.47}, vehicle.paint));
  }
  for (const double along : {-half + 0.85, half - 0.85})
    for (const double across : {-side - 0.02, side - 0.2})
      place.add(box({across, along - 0.32, 0.0}, {across + 0.22, along + 0.32, 0.64}, tyre));
  for (const double end : {-half - 0.02, half}) place.add(box({-0.26, end, 0.45}, {0.26, end + 0.02, 0.57}, plate));
  for (const double across : {-side + 0.08, side - 0.36})
    for (const double end : {-half - 0.01, half})
      place.add(box({across, end, 0.62}, {across + 0.28, end + 0.01, 0.78}, lamp));
}

void addWalker(const Walker &walker, std::vector<Primitive> &out) {
  Placer place(walker.x, walker.y, walker.heading, walker.speed, out);
  const Surface cloth{Texture::Plain, 48, walker.clothes, 0};
  const Surface trousers{Texture::Plain, 26, {45, 48, 60}, 0};
  const double swing = walker.speed > 0 ? 0.24 * std::sin(walker.stride) : 0.0;
  const double b = walker.base;
  for (const double side : {-1.0, 1.0}) {
    place.add(ball({side * 0.11, side * swing, b + 0.4}, {0.09, 0.11 + std::abs(swing) * 0.4, 0.42}, trousers));
    place.add(ball({side * 0.27, -side * swing * 0.8, b + 1.1}, {0.06, 0.08 + std::abs(swing) * 0.3, 0.32}, cloth));
  }
  place.add(ball({0, 0, b + 1.13}, {0.22, 0.14, 0.36}, cloth));
  place.add(ball({0, 0, b + 1.62}, {0.1, 0.11, 0.14}, skin));
}

void addTree(double x, double y, double base, Draw draw, std::vector<Primitive> &out) {
  const double height = draw.between(5.5, 8.5);
  const Surface leaves{
      Texture::Foliage,
      static_cast<std::uint8_t>(draw.between(58, 84)),
      {static_cast<std::uint8_t>(draw.between(40, 90)), static_cast<std::uint8_t>(draw.between(110, 150)), 45},
      0};
  out.push_back(pillar(x, y, draw.between(0.13, 0.22), base, height * 0.6, bark));
  for (int clump = 0; clump < 5; ++clump) {
    const double size = draw.between(0.9, 1.5);
    Primitive crown =
        ball({x + draw.between(-0.9, 0.9), y + draw.between(-0.9, 0.9), height * draw.between(0.55, 0.95)},
             {size, size, size * 0.8}, leaves);
    crown.shape = Shape::Crown;
    out.push_back(crown);
  }
}

void addStreetLamp(double x, double y, double base, double reachX, std::vector<Primitive> &out) {
  out.push_back(pillar(x, y, 0.22, base, base + 0.5, metal));
  out.push_back(pillar(x, y, 0.09, base, 7.5, metal));
  out.push_back(box({std::min(x, x + reachX), y - 0.05, 7.4}, {std::max(x, x + reachX), y + 0.05, 7.5}, metal));
  out.push_back(box({x + reachX - 0.35, y - 0.15, 7.28}, {x + reachX + 0.35, y + 0.15, 7.4}, lamp));
}

void addSign(double x, double y, double base, Rgb colour, std::vector<Primitive> &out) {
  out.push_back(pillar(x, y, 0.04, base, base + 2.9, metal));
  out.push_back(
      box({x - 0.32, y - 0.06, base + 2.15}, {x + 0.32, y - 0.04, base + 2.8}, {Texture::Retro, 255, colour, 0}));
}

Surface vehiclePaint(Draw &draw) {
  constexpr Rgb colours[] = {{200, 200, 205}, {40, 44, 52},    {150, 30, 32},
                             {35, 70, 140},   {225, 225, 222}, {90, 100, 96}};
  const auto pick = static_cast<std::size_t>(draw.uniform() * std::size(colours));
  const Rgb c = colours[pick];
  return {Texture::CarBody, static_cast<std::uint8_t>(20 + (c.red + c.green + c.blue) / 9), c, 0};
}

}  // namespace tarvo::lidar::sim
