#pragma once

#include <array>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "tools/sim/surface.h"

namespace tarvo::lidar::sim {

inline constexpr double lidarHeight = 1.8;    ///< metres above the ground
inline constexpr double wallDistance = 20.0;  ///< metres along y, scene "wall"

/// A world that changes with time. Coordinates have the ground at z = 0; the lidar stands at x = `laneOffset`, y = its
/// travel.
class Scene {
 public:
  virtual ~Scene() = default;

  [[nodiscard]] virtual Surface ground() const = 0;
  [[nodiscard]] virtual double laneOffset() const { return 0.0; }
  /// Length after which the scene repeats along y; 0 when it does not, and then the lidar stays where it is.
  [[nodiscard]] virtual double period() const { return 0.0; }
  /// Appends everything but the ground as it stands at `seconds`.
  virtual void place(double seconds, std::vector<Primitive> &out) const = 0;
};

struct SceneInfo {
  std::string_view name;
  std::string_view summary;
  std::unique_ptr<Scene> (*make)(std::uint64_t seed);
};

[[nodiscard]] std::span<const SceneInfo> scenes() noexcept;

std::unique_ptr<Scene> makeStreet(std::uint64_t seed);
std::unique_ptr<Scene> makeHall(std::uint64_t seed);
std::unique_ptr<Scene> makeWall(std::uint64_t seed);

}  // namespace tarvo::lidar::sim
