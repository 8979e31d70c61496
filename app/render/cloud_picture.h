#pragma once

#include <QImage>
#include <QSize>
#include <QString>

#include "app/render/camera.h"
#include "app/render/color_ramp.h"
#include "app/render/vertex_bytes.h"
#include "app/render/word_colors.h"

namespace tarvo::skarnvisor::app {

struct PictureStyle {
  WordKind words = WordKind::LowHalf;
  ColorRamp ramp;
  ValueRange range;
  /// Title of the colour mode, shown in the legend; empty leaves the legend out.
  QString colorTitle;
  /// Lines in the upper left corner.
  QString caption;
  /// Least side of a point, pixels of the finished picture.
  float pointPixels = 2;
  QMatrix4x4 placement;  ///< of the points; the grid stays
  bool grid = true;
  bool edges = true;
  QRgb background = backgroundColor;
};

/// Draws a cloud without window or GPU, on all cores. Needs a QGuiApplication (any platform) for its texts.
/// Thread-safe.
QImage drawCloud(const VertexCloud &cloud, const OrbitCamera &camera, const SceneExtent &scene,
                 const PictureStyle &style, QSize size);

}  // namespace tarvo::skarnvisor::app
