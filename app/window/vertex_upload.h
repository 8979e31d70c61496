#pragma once

#include <QByteArray>
#include <QOpenGLBuffer>

#include "app/render/vertex_bytes.h"

namespace tarvo::skarnvisor::app {

/// Puts a vertex array into a created buffer as it is. Needs a current OpenGL context.
/// @return vertices in the buffer
inline int uploadVertices(QOpenGLBuffer &buffer, const QByteArray &bytes) {
  const int count = bytes.size() / static_cast<int>(vertexStride);
  buffer.bind();
  buffer.setUsagePattern(QOpenGLBuffer::StreamDraw);
  buffer.allocate(bytes.constData(), count * static_cast<int>(vertexStride));
  buffer.release();
  return count;
}

}  // namespace tarvo::skarnvisor::app
