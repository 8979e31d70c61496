#pragma once

#include <QByteArray>
#include <QColor>
#include <QSize>
#include <cstdint>
#include <vector>

#include "app/render/camera.h"
#include "app/render/cloud_statistics.h"
#include "app/render/color_ramp.h"
#include "app/render/word_colors.h"

namespace tarvo::skarnvisor::app {

/// One vertex array of the picture. The serial changes with the bytes, and grows over all arrays.
struct CanvasVertices {
  QByteArray bytes;  ///< let go once they are with the graphics card
  int count = 0;     ///< vertices, also of an array whose bytes are gone
  std::uint64_t serial = 0;
  PointCounts counts;
};

/// How one half of the colour words is shown.
struct ViewColors {
  WordKind words = WordKind::LowHalf;
  ColorRamp ramp;
  ValueRange range;
};

/// Everything that the canvas draws, as values: handed from the GUI thread to the one that draws. A serial number
/// changes with what it stands for, so that only what is new goes to the graphics card.
struct CanvasScene {
  std::vector<CanvasVertices> canvases;
  QMatrix4x4 placement;  ///< of the points in the scene; the grid stays
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

/// One picture to be drawn: the scene as it is to be seen.
struct PictureOrder {
  std::uint64_t serial = 0;  ///< grows from order to order; 0: none
  std::uint64_t view = 0;    ///< grows when the camera moves, or what else decides where a place of the scene is drawn
  CanvasScene scene;
  OrbitCamera camera;
  QSize pixels;
  float pixelRatio = 1;  ///< device pixels for one of the scene's
};

/// What became of an order.
struct DrawnPicture {
  std::uint64_t serial = 0;
  std::uint64_t view = 0;
  OrbitCamera camera;
  /// Vertex arrays up to this serial are with the graphics card; their bytes are no longer needed.
  std::uint64_t uploaded = 0;
  /// An array could not be drawn: its bytes had been let go, and the graphics card does not have them.
  bool lacksVertices = false;
};

}  // namespace tarvo::skarnvisor::app
