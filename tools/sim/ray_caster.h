#pragma once

#include "tools/sim/scene.h"

namespace tarvo::lidar::sim {

/// One echo of a beam.
struct Echo {
  double distance = 0;  ///< metres, 0: nothing came back
  Paint paint;
  double radialVelocity = 0;  ///< m/s, positive away
  bool foliage = false;
};

/// First echo and, when the first was partial, what lies behind it.
using Echoes = std::array<Echo, 2>;

/// A scene frozen at one moment around the lidar, ready for rays. Reading it from several threads is safe.
class RayCaster {
 public:
  /// `travel` is how far the lidar has driven along y, `speed` how fast it drives (m/s).
  RayCaster(const Scene &scene, double seconds, double travel, double speed);

  /// Echoes along the unit vector `direction`, up to 250 m.
  [[nodiscard]] Echoes cast(Vec3 direction, Draw &draw) const;

 private:
  struct Candidate {
    double nearest;  ///< horizontal distance of the shape's box, metres
    std::uint32_t index;
  };
  static constexpr std::size_t sectors = 720;

  void file(std::uint32_t index);
  [[nodiscard]] Echo echoOf(const Primitive &hit, const Crossing &crossing, double distance, Vec3 direction,
                            Draw &draw) const;
  [[nodiscard]] Echo groundEcho(double distance, Vec3 direction, Draw &draw) const;

  std::vector<Primitive> primitives_;                     ///< lidar at the origin
  std::array<std::vector<Candidate>, sectors> bySector_;  ///< by azimuth, nearest first
  Surface ground_;
  Vec3 lidar_;  ///< in the scene's coordinates
  Vec3 velocity_;
};

}  // namespace tarvo::lidar::sim
