#pragma once

#include <QByteArray>
#include <QColor>
#include <cstdint>
#include <vector>

#include "app/render/camera.h"
#include "app/render/cloud_statistics.h"
#include "app/render/color_ramp.h"
#include "app/render/word_colors.h"

namespace tarvo::skarnvisor::app {

/// One vertex array of the picture. The serial changes with the bytes.
struct CanvasVertices {
  QByteArray bytes;
  std::uint64_t serial = 0;
  PointCounts counts;
};

/// How one half of the colour words is shown.
struct ViewColors {
  WordKind words = WordKind::LowHalf;
  ColorRamp ramp;
  ValueRange range;
};

/// Everything that the canvas draws, as values: handed from the GUI thread to the render thread while both stand still.
/// A serial number changes with what it stands for, so that only what is new goes to the graphics card.
struct CanvasScene {
  std::vector<CanvasVertices> canvases;
  SceneExtent extent;
  std::uint64_t extentSerial = 0;
  ViewColors main;
  ViewColors side;         ///< of the right view
  bool splitView = false;  ///< two views beside each other
  float pointPixels = 2;
  bool grid = true;
  QColor background{backgroundColor};
  QColor gridTint{0x2b, 0x33, 0x3c};
};

}  // namespace tarvo::skarnvisor::app
