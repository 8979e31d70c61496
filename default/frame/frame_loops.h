#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "default/frame/point_pass.h"

namespace tf {
class Executor;
}

namespace tarvo::skarnvisor {

/// Runs the pass over every point of the target: on the executor's threads, or on the calling thread for
/// a small frame. Returns when it is done. True when a vertex of the frame is not hidden afterwards.
bool runPointPass(tf::Executor &executor, const PointPass &pass, const PointPassTarget &target);

/// Gives fresh colour words to the vertices of `points`, index by index, as far as both reach. Hidden and
/// highlighted vertices keep theirs: in RGB mode those with the whole mark, else those whose low half is
/// below 0 or above 1. Colours come from the pass settings: the RGB scale, the family's colours or the
/// colour table.
void recolor(tf::Executor &executor, const PointPassSettings &colors, std::span<const lidar::SDKPointInfo> points,
             std::span<Vertex> vertices);

/// The fast path: packed positions and RGB words straight from the points, no test but channel 0 and the
/// hook, which is called with a copy. `vertices` is at least as long as `points`; a hidden vertex keeps
/// its position words. True when a vertex is not hidden.
bool fillVertices(tf::Executor &executor, const RgbScale &scale, const PointHook &pointHook,
                  std::span<const lidar::SDKPointInfo> points, std::span<Vertex> vertices);

/// One row of the laser table as QML reads it, 16 bytes.
struct LaserPoint {
  float x = 0.0F;  ///< metres
  float y = 0.0F;
  float z = 0.0F;
  float value = -1.0F;  ///< current colour attribute; -1 for an empty slot
};
static_assert(sizeof(LaserPoint) == 16);

inline constexpr std::size_t laserTableSize = 1500;
using LaserTable = std::array<LaserPoint, laserTableSize>;

/// Fills the table from the first `laserPoints` points, as far as points and table reach. Rows behind
/// them stay.
void fillLaserTable(LaserTable &table, const ColorTable &colors, std::span<const lidar::SDKPointInfo> points,
                    int laserPoints);

/// Vertices of the camera overlay: packed position and RGB word for a point with a channel; the hidden
/// mark, with the position words left alone, for one without. `vertices` is as long as `points`.
void fillOverlay(const RgbScale &scale, std::span<const lidar::SDKPointInfo> points, std::span<Vertex> vertices);

}  // namespace tarvo::skarnvisor
