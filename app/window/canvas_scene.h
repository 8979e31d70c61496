#pragma once

#include <cstdint>

#include "app/render/camera.h"
#include "app/render/color_ramp.h"
#include "app/render/vertex_bytes.h"
#include "app/render/word_colors.h"

namespace tarvo::skarnvisor::app {

/// Everything that the canvas draws, as values: handed from the GUI thread to the render thread while both stand still.
/// A serial number changes with what it stands for, so that only what is new goes to the graphics card.
struct CanvasScene {
  VertexCloud cloud;
  std::uint64_t cloudSerial = 0;
  SceneExtent extent;
  std::uint64_t extentSerial = 0;
  WordKind words = WordKind::LowHalf;
  ColorRamp ramp;
  ValueRange range;
  float pointPixels = 2;
  bool grid = true;
};

}  // namespace tarvo::skarnvisor::app
