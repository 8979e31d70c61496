#include "app/render/ground_grid.h"

#include <array>
#include <cmath>
#include <numbers>

namespace tarvo::skarnvisor::app {
namespace {

constexpr int segmentsPerRing = 120;

float roundStep(float reach) {
  float step = 0.2F;
  constexpr std::array<float, 3> growth{2.5F, 2, 2};  // 0.2, 0.5, 1, 2, 5, ...
  for (std::size_t i = 0; reach / step > 8; ++i) step *= growth[i % growth.size()];
  return step;
}

}  // namespace

GroundGrid groundGrid(const SceneExtent &scene) {
  GroundGrid grid;
  const float step = roundStep(scene.radius * 1.3F);
  // A little below the ground, so that the ground's points cover the lines.
  const float height = scene.ground - 0.03F;
  const int rings = static_cast<int>(scene.radius * 1.3F / step);
  for (int ring = 1; ring <= rings; ++ring) {
    const float radius = step * static_cast<float>(ring);
    QVector3D last(0, radius, height);
    for (int i = 1; i <= segmentsPerRing; ++i) {
      const float angle = 2 * std::numbers::pi_v<float> * static_cast<float>(i) / segmentsPerRing;
      const QVector3D next(radius * std::sin(angle), radius * std::cos(angle), height);
      grid.segments.push_back({last, next});
      last = next;
    }
    grid.labels.push_back({QVector3D(0, radius, height), QStringLiteral("%1 m").arg(static_cast<double>(radius))});
  }
  const float reach = step * static_cast<float>(rings);
  grid.segments.push_back({QVector3D(-reach, 0, height), QVector3D(reach, 0, height)});
  grid.segments.push_back({QVector3D(0, -reach, height), QVector3D(0, reach, height)});
  return grid;
}

}  // namespace tarvo::skarnvisor::app
