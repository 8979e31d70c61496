#pragma once

#include <cstdint>
#include <vector>

#include "app/session/render_view.h"
#include "app/window/canvas_scene.h"

namespace tarvo::skarnvisor::app {

/// Copies of the render buffer's vertex arrays, of which only those that changed are read again. A copy is let go when
/// the graphics card has it; its counts and a sample of its vertices stay. GUI thread.
class CanvasFeed {
 public:
  /// A frame was parsed: the slots written since the last reading are new, and those whose size changed.
  void readFrame(const RenderView &view);
  /// Colours, marks or the shape of the stack changed.
  void readAll(const RenderView &view);
  void clear();

  const std::vector<CanvasVertices> &canvases() const { return m_canvases; }
  /// Over all arrays.
  PointCounts counts() const;
  /// Vertices spread evenly over each array, some ten thousand of one: what statistics need.
  VertexCloud sample() const { return VertexCloud(m_samples); }
  /// Lets go of the bytes of the arrays up to that serial.
  void release(std::uint64_t serial);

 private:
  void read(const RenderView &view, int index);

  std::vector<CanvasVertices> m_canvases;
  QVector<QByteArray> m_samples;  ///< one an array
  std::uint64_t m_serial = 0;
  int m_lastWritten = 0;
};

}  // namespace tarvo::skarnvisor::app
