#include "app/window/canvas_feed.h"

#include <algorithm>
#include <utility>

namespace tarvo::skarnvisor::app {
namespace {

constexpr int sampleCount = 20000;

QByteArray sampleOf(const QByteArray &bytes) {
  constexpr int stride = static_cast<int>(vertexStride);
  // An odd step meets every channel of a lidar that has a power of two of them.
  const int step = (bytes.size() / stride / sampleCount) | 1;
  QByteArray sample;
  sample.reserve((bytes.size() / step / stride + 1) * stride);
  for (int at = 0; at + stride <= bytes.size(); at += step * stride) sample.append(bytes.constData() + at, stride);
  return sample;
}

}  // namespace

void CanvasFeed::read(const RenderView &view, int index) {
  CanvasVertices &canvas = m_canvases[static_cast<std::size_t>(index)];
  canvas.bytes = view.canvas(index);
  canvas.count = canvas.bytes.size() / static_cast<int>(vertexStride);
  canvas.serial = ++m_serial;
  canvas.counts = countPoints(canvas.bytes);
  m_samples[index] = sampleOf(canvas.bytes);
}

void CanvasFeed::readAll(const RenderView &view) {
  // Once: the depth of the stack may change meanwhile.
  const int count = view.canvasCount();
  m_canvases.resize(static_cast<std::size_t>(count));
  m_samples.resize(count);
  m_lastWritten = view.writtenCanvas();
  for (int i = 0; i < count; ++i) read(view, i);
}

void CanvasFeed::readFrame(const RenderView &view) {
  const int count = view.canvasCount();
  const int written = view.writtenCanvas();
  if (static_cast<int>(m_canvases.size()) != count || written >= count || m_lastWritten >= count) return readAll(view);
  // Several frames may have been parsed since: all slots from the last one on, the ring's end included.
  for (int i = m_lastWritten; i != written;) {
    i = (i + 1) % count;
    if (i != written) read(view, i);
  }
  read(view, written);
  m_lastWritten = written;
  for (int i = 0; i < count; ++i) {
    const int held = m_canvases[static_cast<std::size_t>(i)].count;
    if (i != written && held != view.canvasPoints(i)) read(view, i);
  }
}

void CanvasFeed::clear() {
  m_canvases.clear();
  m_samples.clear();
  m_lastWritten = 0;
}

CanvasFeed::Picture CanvasFeed::handOver() {
  Picture picture{m_canvases, VertexCloud(m_samples)};
  for (CanvasVertices &canvas : m_canvases) canvas.bytes.clear();
  return picture;
}

PointCounts CanvasFeed::Picture::counts() const {
  PointCounts sum;
  for (const CanvasVertices &canvas : canvases) {
    sum.shown += canvas.counts.shown;
    sum.hidden += canvas.counts.hidden;
    sum.highlighted += canvas.counts.highlighted;
  }
  return sum;
}

void CanvasFeed::Picture::follow(Picture newer) {
  for (std::size_t i = 0; i < std::min(canvases.size(), newer.canvases.size()); ++i) {
    if (newer.canvases[i].serial == canvases[i].serial) newer.canvases[i].bytes = canvases[i].bytes;
  }
  *this = std::move(newer);
}

void CanvasFeed::Picture::release(std::uint64_t serial) {
  for (CanvasVertices &canvas : canvases) {
    if (canvas.serial <= serial) canvas.bytes.clear();
  }
}

}  // namespace tarvo::skarnvisor::app
