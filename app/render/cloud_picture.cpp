#include "app/render/cloud_picture.h"

#include <algorithm>
#include <thread>

#include "app/render/depth_image.h"
#include "app/render/ground_grid.h"
#include "app/render/legend.h"

namespace tarvo::skarnvisor::app {
namespace {

/// Pixels that are drawn for one of the finished picture, in each direction.
constexpr int oversampling = 2;
/// Points that one thread draws faster than two.
constexpr std::size_t smallCloud = 8000;
/// Side that a point has in the scene, metres.
constexpr float pointExtent = 0.06F;
constexpr QRgb gridColor = 0xff2b333c;

void plotPart(DepthImage &image, const QByteArray &bytes, std::size_t begin, std::size_t end, const WordColors &colors,
              float pixels) {
  for (std::size_t i = begin; i < end; ++i) {
    const VertexPoint point = readVertex(bytes.constData() + i * vertexStride);
    if (point.word == hiddenWord) continue;
    const float side = point.word == highlightWord ? pixels * 1.5F : pixels;
    image.plot(point.x, point.y, point.z, colors.at(point.word), side, pointExtent);
  }
}

void plotCloud(DepthImage &image, const VertexCloud &cloud, const WordColors &colors, float pixels) {
  const std::size_t threads = cloud.size() < smallCloud ? 1 : std::max(1U, std::thread::hardware_concurrency());
  const auto plotShare = [&](std::size_t share) {
    for (const QByteArray &canvas : cloud.canvases()) {
      const std::size_t count = static_cast<std::size_t>(canvas.size()) / vertexStride;
      plotPart(image, canvas, count * share / threads, count * (share + 1) / threads, colors, pixels);
    }
  };
  std::vector<std::jthread> helpers;
  for (std::size_t share = 1; share < threads; ++share) helpers.emplace_back(plotShare, share);
  plotShare(0);
}

void drawLabels(QPainter &painter, const GroundGrid &grid, const QMatrix4x4 &matrix, QSize size) {
  QFont font = painter.font();
  font.setPixelSize(11);
  painter.setFont(font);
  painter.setPen(QColor(0x78, 0x84, 0x90));
  for (const GroundGrid::Label &label : grid.labels) {
    const QVector4D clip = matrix * QVector4D(label.at, 1);
    if (clip.w() <= 0) continue;
    const QPointF place((0.5 + 0.5 * clip.x() / clip.w()) * size.width(),
                        (0.5 - 0.5 * clip.y() / clip.w()) * size.height());
    painter.drawText(place + QPointF(4, -3), label.text);
  }
}

}  // namespace

QImage drawCloud(const VertexCloud &cloud, const OrbitCamera &camera, const SceneExtent &scene,
                 const PictureStyle &style, QSize size) {
  const QMatrix4x4 matrix =
      camera.projectionMatrix(static_cast<float>(size.width()) / static_cast<float>(size.height())) *
      camera.viewMatrix();
  DepthImage image(size.width() * oversampling, size.height() * oversampling, matrix * style.placement);
  const WordColors colors(style.words, style.ramp, style.range);
  plotCloud(image, cloud, colors, style.pointPixels * oversampling);
  if (style.edges) image.shadeEdges(4);
  const GroundGrid grid = style.grid ? groundGrid(scene) : GroundGrid{};
  // The image places whatever it draws as it does the points.
  const QMatrix4x4 back = style.placement.inverted();
  for (const GroundGrid::Segment &segment : grid.segments)
    image.line(back.map(segment.from), back.map(segment.to), gridColor);

  QImage picture = image.toImage(style.background).scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::TextAntialiasing);
  drawLabels(painter, grid, matrix, size);
  drawLegend(painter, picture.rect(), style);
  return picture;
}

}  // namespace tarvo::skarnvisor::app
