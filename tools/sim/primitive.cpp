#include "tools/sim/primitive.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarvo::lidar::sim {
namespace {

constexpr double far = std::numeric_limits<double>::infinity();

struct Slab {
  double enter, leave;
};

Slab slab(double low, double high, double direction) noexcept {
  if (direction == 0.0) return low <= 0.0 && high >= 0.0 ? Slab{-far, far} : Slab{far, -far};
  const double a = low / direction;
  const double b = high / direction;
  return {std::min(a, b), std::max(a, b)};
}

std::optional<Crossing> crossBox(const Primitive &box, Vec3 d) noexcept {
  const Slab x = slab(box.low.x, box.high.x, d.x);
  const Slab y = slab(box.low.y, box.high.y, d.y);
  const Slab z = slab(box.low.z, box.high.z, d.z);
  Crossing out;
  out.enter = x.enter;
  out.axis = 0;
  if (y.enter > out.enter) {
    out.enter = y.enter;
    out.axis = 1;
  }
  if (z.enter > out.enter) {
    out.enter = z.enter;
    out.axis = 2;
  }
  out.leave = std::min({x.leave, y.leave, z.leave});
  if (out.enter <= 0 || out.enter > out.leave) return std::nullopt;
  out.incidence = std::abs(out.axis == 0 ? d.x : out.axis == 1 ? d.y : d.z);
  return out;
}

std::optional<Crossing> crossCylinder(const Primitive &cylinder, Vec3 d) noexcept {
  const Vec3 centre = (cylinder.low + cylinder.high) * 0.5;
  const double radius = (cylinder.high.x - cylinder.low.x) * 0.5;
  const double a = d.x * d.x + d.y * d.y;
  const double b = d.x * centre.x + d.y * centre.y;
  const double root = b * b - a * (centre.x * centre.x + centre.y * centre.y - radius * radius);
  if (root <= 0 || a == 0) return std::nullopt;
  const double half = std::sqrt(root);
  const Slab z = slab(cylinder.low.z, cylinder.high.z, d.z);
  const double side = (b - half) / a;
  Crossing out;
  out.enter = std::max(side, z.enter);
  out.leave = std::min((b + half) / a, z.leave);
  if (out.enter <= 0 || out.enter > out.leave) return std::nullopt;
  out.incidence = side >= z.enter ? half / radius : std::abs(d.z);
  return out;
}

std::optional<Crossing> crossEllipsoid(const Primitive &body, Vec3 d) noexcept {
  const Vec3 centre = (body.low + body.high) * 0.5;
  const Vec3 half = (body.high - body.low) * 0.5;
  const Vec3 p{centre.x / half.x, centre.y / half.y, centre.z / half.z};
  const Vec3 q{d.x / half.x, d.y / half.y, d.z / half.z};
  const double a = dot(q, q);
  const double b = dot(p, q);
  const double root = b * b - a * (dot(p, p) - 1.0);
  if (root <= 0) return std::nullopt;
  const double spread = std::sqrt(root);
  Crossing out;
  out.enter = (b - spread) / a;
  out.leave = (b + spread) / a;
  if (out.enter <= 0) return std::nullopt;
  out.incidence = spread / std::sqrt(a);
  return out;
}

}  // namespace

std::optional<Crossing> cross(const Primitive &primitive, Vec3 direction) noexcept {
  switch (primitive.shape) {
    case Shape::Box:
      return crossBox(primitive, direction);
    case Shape::Cylinder:
      return crossCylinder(primitive, direction);
    case Shape::Ellipsoid:
    case Shape::Crown:
      return crossEllipsoid(primitive, direction);
  }
  return std::nullopt;
}

}  // namespace tarvo::lidar::sim
