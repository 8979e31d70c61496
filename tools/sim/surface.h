#pragma once

#include "tools/sim/noise.h"
#include "tools/sim/primitive.h"

namespace tarvo::lidar::sim {

/// Where a surface was hit.
struct SurfaceSpot {
  Vec3 world;    ///< metres, y along the street, independent of the lidar's own travel
  Vec3 local;    ///< from the primitive's low corner
  int axis = 2;  ///< of the normal
  double incidence = 1;
};

struct Paint {
  double intensity = 0;                 ///< 0 to 255, before noise
  double red = 0, green = 0, blue = 0;  ///< 0 to 1
  double inset = 0;                     ///< metres that the beam goes on behind the hit (a window's recess)
};

[[nodiscard]] Paint paint(const Surface &surface, const SurfaceSpot &spot, Draw &draw) noexcept;

}  // namespace tarvo::lidar::sim
