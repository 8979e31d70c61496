#pragma once

#include <QOpenGLBuffer>
#include <QOpenGLExtraFunctions>
#include <QOpenGLShaderProgram>
#include <QOpenGLTexture>
#include <QOpenGLVertexArrayObject>
#include <QQuickFramebufferObject>
#include <memory>

#include "app/render/camera.h"
#include "app/window/canvas_scene.h"

class QQuickWindow;

namespace tarvo::skarnvisor::app {

/// Draws a CanvasScene on the render thread. The vertices go to the graphics card as they are, 12 bytes each; the
/// vertex shader takes them apart.
class CloudPainter : public QQuickFramebufferObject::Renderer, protected QOpenGLExtraFunctions {
 public:
  CloudPainter() = default;

  QOpenGLFramebufferObject *createFramebufferObject(const QSize &size) override;
  void synchronize(QQuickFramebufferObject *item) override;
  void render() override;

 private:
  void prepare();
  std::unique_ptr<QOpenGLShaderProgram> makeProgram(const char *name, const QByteArray &defines) const;
  void uploadCloud();
  void uploadGrid();
  void uploadRamp();
  void drawGrid(const QMatrix4x4 &matrix);
  void drawPoints(const QMatrix4x4 &matrix);

  CanvasScene m_scene;
  OrbitCamera m_camera;
  QQuickWindow *m_window = nullptr;
  bool m_prepared = false;

  std::unique_ptr<QOpenGLShaderProgram> m_attributeProgram;  ///< glslType 0
  std::unique_ptr<QOpenGLShaderProgram> m_velocityProgram;   ///< glslType 1
  std::unique_ptr<QOpenGLShaderProgram> m_gridProgram;
  QOpenGLVertexArrayObject m_vertexArray;
  QOpenGLBuffer m_cloudBuffer;
  QOpenGLBuffer m_gridBuffer;
  std::unique_ptr<QOpenGLTexture> m_rampTexture;
  QString m_rampName;
  std::uint64_t m_cloudSerial = 0;
  std::uint64_t m_extentSerial = ~std::uint64_t{0};
  int m_pointCount = 0;
  int m_gridVertexCount = 0;
};

}  // namespace tarvo::skarnvisor::app
