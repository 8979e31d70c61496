#pragma once

#include <QMatrix4x4>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QVector3D>
#include <optional>

#include "app/render/vertex_bytes.h"

namespace tarvo::skarnvisor::app {

/// The shown point under `at` (pixels from the upper left corner of a picture of that size): the one nearest to the eye
/// among those drawn within `reach` pixels. Nothing where there is none.
std::optional<VertexPoint> pointUnder(const VertexCloud &cloud, const QMatrix4x4 &viewProjection, QSizeF size,
                                      QPointF at, double reach);

/// Matrix that takes what is drawn inside `box` (pixels) to coordinates whose size is below their fourth: the frustum
/// behind a rubber band.
QMatrix4x4 bandMatrix(const QMatrix4x4 &viewProjection, QSizeF size, QRectF box);

/// The same for a cube around a place, half a side being `reach` metres.
QMatrix4x4 cubeMatrix(QVector3D place, float reach);

}  // namespace tarvo::skarnvisor::app
