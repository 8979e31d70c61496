#pragma once

#include <QOpenGLBuffer>
#include <QOpenGLExtraFunctions>
#include <QOpenGLShaderProgram>
#include <QOpenGLTexture>
#include <QOpenGLVertexArrayObject>
#include <QQuickFramebufferObject>
#include <memory>
#include <vector>

#include "app/render/camera.h"
#include "app/window/canvas_scene.h"

class QQuickWindow;

namespace tarvo::skarnvisor::app {

/// Draws a CanvasScene on the render thread. The vertices go to the graphics card as they are, 12 bytes each; the
/// vertex shader takes them apart.
class CloudPainter : public QQuickFramebufferObject::Renderer, protected QOpenGLExtraFunctions {
 public:
  CloudPainter() = default;
  ~CloudPainter() override;

  QOpenGLFramebufferObject *createFramebufferObject(const QSize &size) override;
  void synchronize(QQuickFramebufferObject *item) override;
  void render() override;

 private:
  void prepare();
  std::unique_ptr<QOpenGLShaderProgram> makeProgram(const char *name, const QByteArray &defines) const;
  void uploadCanvases();
  void uploadGrid();
  void drawView(const QRect &place, const ViewColors &colors, bool side);
  void drawGrid(const QMatrix4x4 &matrix);
  void drawPoints(const QMatrix4x4 &matrix, const ViewColors &colors, float pixelsPerMetre, bool side);

  /// What the graphics card holds of one vertex array.
  struct Held {
    QOpenGLBuffer buffer;
    std::uint64_t serial = 0;
    int count = 0;
  };
  /// A ramp as a texture: the upper half holds the chosen one, the lower half the one for velocities.
  struct RampTexture {
    std::unique_ptr<QOpenGLTexture> texture;
    QString name;
  };
  static void uploadRamp(RampTexture &held, const ColorRamp &ramp);

  CanvasScene m_scene;
  OrbitCamera m_camera;
  QQuickWindow *m_window = nullptr;
  bool m_prepared = false;

  std::unique_ptr<QOpenGLShaderProgram> m_attributeProgram;  ///< glslType 0
  std::unique_ptr<QOpenGLShaderProgram> m_velocityProgram;   ///< glslType 1
  std::unique_ptr<QOpenGLShaderProgram> m_gridProgram;
  QOpenGLVertexArrayObject m_vertexArray;
  std::vector<Held> m_held;
  QOpenGLBuffer m_gridBuffer;
  RampTexture m_ramps[2];  ///< of the main and of the right view
  std::uint64_t m_extentSerial = ~std::uint64_t{0};
  int m_gridVertexCount = 0;
};

}  // namespace tarvo::skarnvisor::app
