#pragma once

#include <QColor>
#include <QImage>
#include <QMatrix4x4>
#include <QVector3D>
#include <atomic>
#include <cstdint>
#include <vector>

namespace tarvo::skarnvisor::app {

/// A picture with a depth for each pixel. Several threads may plot at once: a pixel is one atomic word with the depth
/// in its upper half, so the nearest point wins whatever the order.
class DepthImage {
 public:
  DepthImage(int width, int height, const QMatrix4x4 &viewProjection);

  /// Plots a square around a point of the scene. `pixels` is its least side, `extent` the side in metres that it
  /// grows to when the eye is near (up to four times `pixels`).
  void plot(float x, float y, float z, QRgb color, float pixels, float extent);
  /// Draws a line between two points of the scene.
  void line(QVector3D from, QVector3D to, QRgb color);
  /// Darkens pixels that lie behind their neighbours, which brings out edges (eye-dome lighting, C. Boucheny, 2009).
  void shadeEdges(float strength);
  /// The picture, with `background` where nothing was plotted.
  QImage toImage(QRgb background) const;

 private:
  void put(int x, int y, float depth, QRgb color);
  float depthAt(int x, int y) const;

  int m_width;
  int m_height;
  float m_matrix[16];
  float m_pixelsPerMetre;  ///< at a depth of 1 m
  std::vector<std::atomic<std::uint64_t>> m_pixels;
  std::vector<std::uint8_t> m_light;
};

}  // namespace tarvo::skarnvisor::app
