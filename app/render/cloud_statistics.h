#pragma once

#include <cstddef>

#include "app/render/camera.h"
#include "app/render/vertex_bytes.h"
#include "app/render/word_colors.h"

namespace tarvo::skarnvisor::app {

struct PointCounts {
  std::size_t shown = 0;
  std::size_t hidden = 0;
  std::size_t highlighted = 0;  ///< part of `shown`
};

PointCounts countPoints(const VertexCloud &cloud);
/// Of one vertex array. Looks at the colour words alone.
PointCounts countPoints(const QByteArray &vertices);

/// The reach that holds nearly all (93 of 100) of the shown points, the ground and the ceiling, from at most some ten
/// thousand points. Defaults where there are none.
SceneExtent sceneExtent(const VertexCloud &cloud, const QMatrix4x4 &placement = {});

/// The values that the ramp is spread over: all but the lowest and the highest hundredth of the shown points, so that a
/// few reflectors don't leave the rest dark. 0 to 1 where there is nothing to measure or the words hold no attribute.
ValueRange stretchedRange(const VertexCloud &cloud, WordKind kind);

}  // namespace tarvo::skarnvisor::app
