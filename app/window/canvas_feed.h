#pragma once

#include <cstdint>
#include <vector>

#include "app/session/render_view.h"
#include "app/window/canvas_scene.h"

namespace tarvo::skarnvisor::app {

/// Copies of the render buffer's vertex arrays, of which only those that changed are read again. GUI thread.
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
  /// All arrays in one; the bytes are shared.
  VertexCloud cloud() const;

 private:
  void read(const RenderView &view, int index);

  std::vector<CanvasVertices> m_canvases;
  std::uint64_t m_serial = 0;
  int m_lastWritten = 0;
};

}  // namespace tarvo::skarnvisor::app
