#pragma once

#include <cstdint>
#include <optional>

namespace tarvo::lidar::sim {

struct Vec3 {
  double x = 0, y = 0, z = 0;

  friend constexpr Vec3 operator+(Vec3 a, Vec3 b) noexcept { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
  friend constexpr Vec3 operator-(Vec3 a, Vec3 b) noexcept { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
  friend constexpr Vec3 operator*(Vec3 a, double s) noexcept { return {a.x * s, a.y * s, a.z * s}; }
  friend constexpr double dot(Vec3 a, Vec3 b) noexcept { return a.x * b.x + a.y * b.y + a.z * b.z; }
};

/// How a surface looks; `surface.cpp` paints each.
enum class Texture : std::uint8_t { Plain, Road, Floor, Pavement, Facade, Foliage, CarBody, CarCabin, Retro, Target };

struct Rgb {
  std::uint8_t red = 128, green = 128, blue = 128;
};

struct Surface {
  Texture texture = Texture::Plain;
  std::uint8_t reflectivity = 40;  ///< intensity of a square hit
  Rgb colour;
  std::uint16_t variant = 0;  ///< changes the pattern between two surfaces of one texture
};

enum class Shape : std::uint8_t {
  Box,
  Cylinder,  ///< upright
  Ellipsoid,
  Crown,  ///< ellipsoid of leaves: a ray may pass, or stop anywhere inside
};

/// Every shape fills its axis-aligned box `low` to `high`, metres.
struct Primitive {
  Shape shape = Shape::Box;
  Surface surface;
  Vec3 low, high;
  Vec3 velocity;  ///< m/s
};

/// Where a ray enters and leaves a shape; both in metres along the ray.
struct Crossing {
  double enter = 0, leave = 0;
  double incidence = 1;  ///< cosine between ray and surface normal at `enter`
  int axis = 2;          ///< of the normal: 0, 1, 2 for x, y, z; only boxes use it
};

/// Crossing of the ray from the origin along the unit vector `direction`; none when it misses or starts inside the
/// shape.
[[nodiscard]] std::optional<Crossing> cross(const Primitive &primitive, Vec3 direction) noexcept;

}  // namespace tarvo::lidar::sim
