#pragma once

#include <QOpenGLBuffer>
#include <QOpenGLExtraFunctions>
#include <QOpenGLShaderProgram>
#include <QOpenGLTexture>
#include <QOpenGLVertexArrayObject>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

#include "app/window/canvas_scene.h"

class QOpenGLFramebufferObject;

namespace tarvo::skarnvisor::app {

/// Draws pictures of a cloud with OpenGL. The vertices go to the graphics card as they are, 12 bytes each, once for
/// each array that is new; the vertex shader takes them apart. Made, used and destroyed with one and the same OpenGL
/// context current; what it changes of the context's state stays changed.
class CloudPainter : protected QOpenGLExtraFunctions {
 public:
  CloudPainter();
  ~CloudPainter();

  /// Asked between parts of a picture; false abandons it.
  using GoesOn = std::function<bool()>;
  /// Draws into `target`; the commands may still be under way afterwards.
  DrawnPicture paint(const PictureOrder &order, QOpenGLFramebufferObject &target, const GoesOn &goesOn);

 private:
  std::unique_ptr<QOpenGLShaderProgram> makeProgram(const char *name, const QByteArray &defines) const;
  void uploadCanvases(const std::vector<CanvasVertices> &canvases, DrawnPicture &result);
  void uploadGrid(const CanvasScene &scene);
  void drawView(const PictureOrder &order, const QRect &place, bool side, const GoesOn &goesOn);
  void drawGrid(const QMatrix4x4 &matrix, const QColor &tint);
  void preparePoints(QOpenGLShaderProgram &program, const QMatrix4x4 &matrix, const PictureOrder &order, bool side,
                     float pixelsPerMetre);
  void drawPoints(const QOpenGLShaderProgram &program, const GoesOn &goesOn);
  bool drawParts(int count, const GoesOn &goesOn);

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

  std::unique_ptr<QOpenGLShaderProgram> m_attributeProgram;  ///< glslType 0
  std::unique_ptr<QOpenGLShaderProgram> m_velocityProgram;   ///< glslType 1
  std::unique_ptr<QOpenGLShaderProgram> m_gridProgram;
  QOpenGLVertexArrayObject m_vertexArray;
  std::vector<Held> m_held;
  QOpenGLBuffer m_gridBuffer;
  RampTexture m_ramps[2];        ///< of the main and of the right view
  std::uint64_t m_uploaded = 0;  ///< serial of the newest array that was uploaded
  std::uint64_t m_extentSerial = ~std::uint64_t{0};
  int m_gridVertexCount = 0;
  int m_partVertices = std::numeric_limits<int>::max();  ///< of one draw
};

}  // namespace tarvo::skarnvisor::app
