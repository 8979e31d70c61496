#pragma once

#include "tools/sim/scene.h"

/// Things that scenes are made of. Each appends its shapes; coordinates have the ground at z = 0.
namespace tarvo::lidar::sim {

enum class Heading : std::uint8_t { North, South, East, West };  ///< +y, -y, +x, -x

struct Vehicle {
  double x = 0, y = 0;  ///< middle
  Heading heading = Heading::North;
  double speed = 0;  ///< m/s along the heading
  bool van = false;
  Surface paint{Texture::CarBody, 60, {150, 150, 155}, 0};
};

struct Walker {
  double x = 0, y = 0;
  Heading heading = Heading::North;
  double speed = 1.4;  ///< m/s; also sets how the legs swing
  double stride = 0;   ///< phase of the step, radians
  double base = 0;     ///< height of what the walker stands on
  Rgb clothes{70, 80, 140};
};

[[nodiscard]] Primitive box(Vec3 low, Vec3 high, Surface surface);
[[nodiscard]] Primitive pillar(double x, double y, double radius, double bottom, double top, Surface surface);
[[nodiscard]] Primitive ball(Vec3 centre, Vec3 half, Surface surface);

void addVehicle(const Vehicle &vehicle, std::vector<Primitive> &out);
void addWalker(const Walker &walker, std::vector<Primitive> &out);
void addTree(double x, double y, double base, Draw draw, std::vector<Primitive> &out);
void addStreetLamp(double x, double y, double base, double reachX, std::vector<Primitive> &out);
void addSign(double x, double y, double base, Rgb colour, std::vector<Primitive> &out);

/// A paint of the small palette that vehicles and walkers draw from.
[[nodiscard]] Surface vehiclePaint(Draw &draw);

}  // namespace tarvo::lidar::sim
