#pragma once

#include "default/frame/area.h"
#include "default/frame/color_table.h"
#include "default/frame/rgb_scale.h"
#include "default/models/settings_value.h"

namespace tarvo::skarnvisor {

/// How points are coloured: the colour modes, the camera scale and the area remap, each a plain value that
/// setters replace and a frame takes once.
struct ColorSettings {
  Snapshot<ColorTable> table;
  Snapshot<RgbScale> scale;
  Snapshot<AreaRemap> areaRemap;
  Relaxed<bool> rgbType{false};  ///< the lidar has a camera
};

}  // namespace tarvo::skarnvisor
