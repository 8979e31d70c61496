#pragma once

#include <QVector>
#include <cstdint>
#include <vector>

#include "app/session/render_view.h"
#include "app/window/canvas_scene.h"

namespace tarvo::skarnvisor::app {

/// Reads the render buffer's vertex arrays, only those that changed, each once. One thread at a time.
class CanvasFeed {
 public:
  /// What was read, as a value.
  struct Picture {
    std::vector<CanvasVertices> canvases;
    /// Vertices spread evenly over each array, some ten thousand of one: what statistics need.
    VertexCloud sample;

    /// Over all arrays.
    PointCounts counts() const;
    /// Takes the newer picture's place; bytes that were not read again stay.
    void follow(Picture newer);
    /// Lets go of the bytes of the arrays up to that serial.
    void release(std::uint64_t serial);
  };

  /// A frame was parsed: the slots written since the last reading are new, and those whose size changed.
  void readFrame(const RenderView &view);
  /// Colours, marks or the shape of the stack changed.
  void readAll(const RenderView &view);
  void clear();
  /// The bytes are handed out once: only arrays read since the last time have any.
  Picture handOver();

 private:
  void read(const RenderView &view, int index);

  std::vector<CanvasVertices> m_canvases;
  QVector<QByteArray> m_samples;  ///< one an array
  std::uint64_t m_serial = 0;
  int m_lastWritten = 0;
};

}  // namespace tarvo::skarnvisor::app
