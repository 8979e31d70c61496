#pragma once

#include <cstddef>
#include <cstdint>

#include "default/frame/mark_test.h"
#include "default/frame/point_pass.h"

namespace tf {
class Executor;
}

namespace tarvo::skarnvisor {

/// Stored points and their vertices, index by index. Nothing is owned.
struct StoredPoints {
  lidar::SDKPointInfo *points = nullptr;
  Vertex *vertices = nullptr;
  std::size_t count = 0;
  std::size_t firstPosition = 0;  ///< frame-store position of point 0
};

/// Marks the points of a picture that lie in a selection and lists those that the point table shows.
///
/// A hidden vertex is left alone. A point inside the selection is highlighted and listed; one outside gets its colour
/// back if it was highlighted. Listed points have their selected byte set; those that a selection leaves out have it
/// cleared.
class SelectionPass {
 public:
  /// `settings` brings the selection, none if it is off, and the colours. `listsAll`: points that are not selected are
  /// listed as well.
  SelectionPass(PointPassSettings settings, MarkTest marks, bool listsAll);

  /// Lists the points in their order into `rows`, which has room for all of them, and returns how many it has listed.
  std::size_t operator()(tf::Executor &executor, const StoredPoints &stored, std::uint32_t *rows) const;

 private:
  std::size_t processRun(const StoredPoints &stored, std::size_t begin, std::size_t count, std::uint32_t *rows) const;

  PointPassSettings m_settings;
  MarkTest m_marks;
  bool m_listsAll;
};

/// Adds `step` to the counter of each point inside the frustum, as far as points and counters reach; a counter of 0
/// takes nothing off.
void countInside(tf::Executor &executor, const Frustum &frustum, std::span<const lidar::SDKPointInfo> points,
                 std::span<std::int32_t> counters, int step);

}  // namespace tarvo::skarnvisor
