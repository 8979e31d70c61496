#include "app/window/canvas_feed.h"

namespace tarvo::skarnvisor::app {

void CanvasFeed::read(const RenderView &view, int index) {
  CanvasVertices &canvas = m_canvases[static_cast<std::size_t>(index)];
  canvas.bytes = view.canvas(index);
  canvas.serial = ++m_serial;
  canvas.counts = countPoints(canvas.bytes);
}

void CanvasFeed::readAll(const RenderView &view) {
  m_canvases.resize(static_cast<std::size_t>(view.canvasCount()));
  m_lastWritten = view.writtenCanvas();
  for (int i = 0; i < view.canvasCount(); ++i) read(view, i);
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
    const int held = m_canvases[static_cast<std::size_t>(i)].bytes.size() / static_cast<int>(vertexStride);
    if (i != written && held != view.canvasPoints(i)) read(view, i);
  }
}

void CanvasFeed::clear() {
  m_canvases.clear();
  m_lastWritten = 0;
}

PointCounts CanvasFeed::counts() const {
  PointCounts sum;
  for (const CanvasVertices &canvas : m_canvases) {
    sum.shown += canvas.counts.shown;
    sum.hidden += canvas.counts.hidden;
    sum.highlighted += canvas.counts.highlighted;
  }
  return sum;
}

VertexCloud CanvasFeed::cloud() const {
  QVector<QByteArray> bytes;
  for (const CanvasVertices &canvas : m_canvases) bytes << canvas.bytes;
  return VertexCloud(bytes);
}

}  // namespace tarvo::skarnvisor::app
