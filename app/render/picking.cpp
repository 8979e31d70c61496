#include "app/render/picking.h"

#include <algorithm>
#include <cmath>

namespace tarvo::skarnvisor::app {

std::optional<VertexPoint> pointUnder(const VertexCloud &cloud, const QMatrix4x4 &viewProjection, QSizeF size,
                                      QPointF at, double reach) {
  const auto x = static_cast<float>(2 * at.x() / size.width() - 1);
  const auto y = static_cast<float>(1 - 2 * at.y() / size.height());
  const auto reachX = static_cast<float>(2 * reach / size.width());
  const auto reachY = static_cast<float>(2 * reach / size.height());
  const float *m = viewProjection.constData();  // column by column
  std::optional<VertexPoint> nearest;
  float nearestDepth = 0;
  cloud.forEachShown(1, [&](const VertexPoint &p) {
    const float w = m[3] * p.x + m[7] * p.y + m[11] * p.z + m[15];
    if (w <= 0) return;
    if (std::abs(m[0] * p.x + m[4] * p.y + m[8] * p.z + m[12] - x * w) > reachX * w) return;
    if (std::abs(m[1] * p.x + m[5] * p.y + m[9] * p.z + m[13] - y * w) > reachY * w) return;
    const float depth = (m[2] * p.x + m[6] * p.y + m[10] * p.z + m[14]) / w;
    if (depth < -1 || depth > 1 || (nearest && depth >= nearestDepth)) return;
    nearest = p;
    nearestDepth = depth;
  });
  return nearest;
}

QMatrix4x4 bandMatrix(const QMatrix4x4 &viewProjection, QSizeF size, QRectF box) {
  const QRectF band = box.normalized();
  // A band without an area would hold nothing and divide by 0.
  const double halfWidth = std::max(band.width(), 1.0) / size.width();
  const double halfHeight = std::max(band.height(), 1.0) / size.height();
  const double x = 2 * band.center().x() / size.width() - 1;
  const double y = 1 - 2 * band.center().y() / size.height();
  QMatrix4x4 stretch;
  stretch.scale(static_cast<float>(1 / halfWidth), static_cast<float>(1 / halfHeight), 1);
  stretch.translate(static_cast<float>(-x), static_cast<float>(-y), 0);
  return stretch * viewProjection;
}

QMatrix4x4 cubeMatrix(QVector3D place, float reach) {
  QMatrix4x4 matrix;
  matrix.scale(1 / reach);
  matrix.translate(-place);
  return matrix;
}

}  // namespace tarvo::skarnvisor::app
