#include "app/render/depth_image.h"

#include <QtMath>
#include <algorithm>
#include <bit>
#include <cmath>

#include "app/render/camera.h"

namespace tarvo::skarnvisor::app {
namespace {

constexpr std::uint64_t empty = ~std::uint64_t{0};
constexpr float nearest = 0.05F;

}  // namespace

DepthImage::DepthImage(int width, int height, const QMatrix4x4 &viewProjection)
    : m_width(width),
      m_height(height),
      m_pixelsPerMetre(static_cast<float>(height) / (2 * std::tan(qDegreesToRadians(OrbitCamera::fieldOfViewDeg / 2)))),
      m_pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
  viewProjection.copyDataTo(m_matrix);
  for (auto &pixel : m_pixels) pixel.store(empty, std::memory_order_relaxed);
}

void DepthImage::put(int x, int y, float depth, QRgb color) {
  auto &pixel = m_pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(x)];
  // The bits of a positive float order as the float does.
  const std::uint64_t mine = (std::uint64_t{std::bit_cast<std::uint32_t>(depth)} << 32) | color;
  std::uint64_t there = pixel.load(std::memory_order_relaxed);
  while (mine < there && !pixel.compare_exchange_weak(there, mine, std::memory_order_relaxed)) {
  }
}

void DepthImage::plot(float x, float y, float z, QRgb color, float pixels, float extent) {
  const float *m = m_matrix;
  const float depth = m[12] * x + m[13] * y + m[14] * z + m[15];
  if (!(depth > nearest)) return;
  const float scale = 0.5F / depth;
  const float centreX = (0.5F + (m[0] * x + m[1] * y + m[2] * z + m[3]) * scale) * static_cast<float>(m_width);
  const float centreY = (0.5F - (m[4] * x + m[5] * y + m[6] * z + m[7]) * scale) * static_cast<float>(m_height);
  const float side = std::clamp(extent * m_pixelsPerMetre / depth, pixels, 4 * pixels);
  if (!(centreX > -side && centreX < static_cast<float>(m_width) + side && centreY > -side &&
        centreY < static_cast<float>(m_height) + side))
    return;
  const int size = std::max(1, static_cast<int>(side + 0.5F));
  const int left = static_cast<int>(std::floor(centreX - static_cast<float>(size - 1) / 2));
  const int top = static_cast<int>(std::floor(centreY - static_cast<float>(size - 1) / 2));
  for (int row = std::max(top, 0); row < std::min(top + size, m_height); ++row) {
    for (int column = std::max(left, 0); column < std::min(left + size, m_width); ++column)
      put(column, row, depth, color);
  }
}

void DepthImage::line(QVector3D from, QVector3D to, QRgb color) {
  const float *m = m_matrix;
  const auto clip = [m](const QVector3D &p) {
    return QVector3D(m[0] * p.x() + m[1] * p.y() + m[2] * p.z() + m[3],
                     m[4] * p.x() + m[5] * p.y() + m[6] * p.z() + m[7],
                     m[12] * p.x() + m[13] * p.y() + m[14] * p.z() + m[15]);
  };
  QVector3D a = clip(from);
  QVector3D b = clip(to);
  if (a.z() < nearest && b.z() < nearest) return;
  if (a.z() < nearest) a += (b - a) * ((nearest - a.z()) / (b.z() - a.z()));
  if (b.z() < nearest) b += (a - b) * ((nearest - b.z()) / (a.z() - b.z()));
  const auto width = static_cast<float>(m_width);
  const auto height = static_cast<float>(m_height);
  const float x0 = (0.5F + 0.5F * a.x() / a.z()) * width;
  const float y0 = (0.5F - 0.5F * a.y() / a.z()) * height;
  const float dx = (0.5F + 0.5F * b.x() / b.z()) * width - x0;
  const float dy = (0.5F - 0.5F * b.y() / b.z()) * height - y0;
  // Clipped to the picture by its parameter, so that a line that reaches far outside costs no steps there.
  float first = 0;
  float last = 1;
  const auto narrow = [&first, &last](float start, float delta, float limit) {
    if (delta == 0) {
      if (start < 0 || start >= limit) last = -1;
      return;
    }
    const float t0 = -start / delta;
    const float t1 = (limit - start) / delta;
    first = std::max(first, std::min(t0, t1));
    last = std::min(last, std::max(t0, t1));
  };
  narrow(x0, dx, width);
  narrow(y0, dy, height);
  if (first > last) return;
  const int steps = static_cast<int>(std::ceil(std::max(std::abs(dx), std::abs(dy)) * (last - first))) + 1;
  for (int i = 0; i <= steps; ++i) {
    const float t = first + (last - first) * static_cast<float>(i) / static_cast<float>(steps);
    const int x = static_cast<int>(x0 + dx * t);
    const int y = static_cast<int>(y0 + dy * t);
    if (x >= 0 && x < m_width && y >= 0 && y < m_height) put(x, y, 1 / ((1 - t) / a.z() + t / b.z()), color);
  }
}

float DepthImage::depthAt(int x, int y) const {
  const std::uint64_t pixel =
      m_pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(x)].load(
          std::memory_order_relaxed);
  return pixel == empty ? 0 : std::bit_cast<float>(static_cast<std::uint32_t>(pixel >> 32));
}

void DepthImage::shadeEdges(float strength) {
  m_light.assign(m_pixels.size(), 255);
  constexpr int reach = 2;
  for (int y = reach; y < m_height - reach; ++y) {
    for (int x = reach; x < m_width - reach; ++x) {
      const float depth = depthAt(x, y);
      if (depth == 0) continue;
      float drop = 0;
      for (const auto &[dx, dy] : {std::pair{-reach, 0}, {reach, 0}, {0, -reach}, {0, reach}}) {
        const float other = depthAt(x + dx, y + dy);
        if (other > 0 && other < depth) drop += std::log2(depth / other);
      }
      const float light = std::max(0.25F, std::exp(-strength * drop));
      m_light[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(x)] =
          static_cast<std::uint8_t>(255 * light);
    }
  }
}

QImage DepthImage::toImage(QRgb background) const {
  QImage image(m_width, m_height, QImage::Format_RGB32);
  std::size_t index = 0;
  for (int y = 0; y < m_height; ++y) {
    auto *row = reinterpret_cast<QRgb *>(image.scanLine(y));
    for (int x = 0; x < m_width; ++x, ++index) {
      const std::uint64_t pixel = m_pixels[index].load(std::memory_order_relaxed);
      if (pixel == empty) {
        row[x] = background;
        continue;
      }
      const auto color = static_cast<QRgb>(pixel);
      const int light = m_light.empty() ? 255 : m_light[index];
      row[x] = qRgb(qRed(color) * light / 255, qGreen(color) * light / 255, qBlue(color) * light / 255);
    }
  }
  return image;
}

}  // namespace tarvo::skarnvisor::app
