#include "app/window/cloud_painter.h"

#include <QFile>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <algorithm>

#include "app/render/ground_grid.h"
#include "app/window/vertex_upload.h"
#include "contracts/host/log.h"

SKARN_LOG_SOURCE("app/cloud_painter");

namespace tarvo::skarnvisor::app {
namespace {

/// Neither name is in the GLES headers, both values are the desktop's.
constexpr GLenum programPointSize = 0x8642;
constexpr GLenum pointSprite = 0x8861;
/// Side that a point has in the scene, metres.
constexpr float pointExtent = 0.06F;
constexpr int rampTexels = 256;
/// A few milliseconds of work.
constexpr int softwarePartVertices = 50'000;

/// The shaders are written for all of these; the profile decides which one the driver takes.
QByteArray shaderHeader() {
  const QOpenGLContext *context = QOpenGLContext::currentContext();
  if (context->isOpenGLES()) return "#version 300 es\nprecision highp float;\nprecision highp int;\n";
  return context->format().profile() == QSurfaceFormat::CoreProfile ? "#version 330\n" : "#version 130\n";
}

bool drawsInSoftware() {
  const auto *const name = QOpenGLContext::currentContext()->functions()->glGetString(GL_RENDERER);
  const QByteArray renderer(reinterpret_cast<const char *>(name));
  return renderer.contains("llvmpipe") || renderer.contains("softpipe") || renderer.contains("Software Rasterizer");
}

QByteArray shaderText(const QString &file, const QByteArray &defines) {
  QFile resource(QStringLiteral(":/skarnvisor/shaders/") + file);
  if (!resource.open(QIODevice::ReadOnly))
    SKARN_LOG(LogLevel::Internal, "no shader %s in the program", qPrintable(file));
  return shaderHeader() + defines + resource.readAll();
}

}  // namespace

CloudPainter::CloudPainter() {
  initializeOpenGLFunctions();
  if (drawsInSoftware()) m_partVertices = softwarePartVertices;
  m_attributeProgram = makeProgram("cloud", {});
  m_velocityProgram = makeProgram("cloud", "#define VELOCITY_WORDS\n");
  m_gridProgram = makeProgram("grid", {});
  m_vertexArray.create();
  m_gridBuffer.create();
}

CloudPainter::~CloudPainter() {
  for (Held &held : m_held) held.buffer.destroy();
}

std::unique_ptr<QOpenGLShaderProgram> CloudPainter::makeProgram(const char *name, const QByteArray &defines) const {
  auto program = std::make_unique<QOpenGLShaderProgram>();
  const QString file = QString::fromLatin1(name);
  const bool linked = program->addShaderFromSourceCode(QOpenGLShader::Vertex, shaderText(file + ".vert", defines)) &&
                      program->addShaderFromSourceCode(QOpenGLShader::Fragment, shaderText(file + ".frag", defines)) &&
                      program->link();
  if (!linked) SKARN_LOG(LogLevel::Error, "shader %s: %s", name, qPrintable(program->log()));
  return program;
}

/// One upload for each array whose bytes are new; the others stay where they are.
void CloudPainter::uploadCanvases(const std::vector<CanvasVertices> &canvases, DrawnPicture &result) {
  for (std::size_t i = canvases.size(); i < m_held.size(); ++i) m_held[i].buffer.destroy();
  m_held.resize(canvases.size());
  for (std::size_t i = 0; i < canvases.size(); ++i) {
    Held &held = m_held[i];
    const CanvasVertices &canvas = canvases[i];
    if (held.serial == canvas.serial) continue;
    if (canvas.bytes.isEmpty() && canvas.count > 0) {
      result.lacksVertices = true;
      continue;
    }
    if (!held.buffer.isCreated()) held.buffer.create();
    held.serial = canvas.serial;
    held.count = uploadVertices(held.buffer, canvas.bytes);
    m_uploaded = std::max(m_uploaded, canvas.serial);
  }
  // Of all pictures so far: who looks may have missed the one that it was for.
  result.uploaded = m_uploaded;
}

void CloudPainter::uploadGrid(const CanvasScene &scene) {
  if (m_extentSerial == scene.extentSerial) return;
  m_extentSerial = scene.extentSerial;
  const GroundGrid grid = groundGrid(scene.extent);
  m_gridVertexCount = static_cast<int>(grid.segments.size() * 2);
  static_assert(sizeof(GroundGrid::Segment) == 6 * sizeof(float));
  m_gridBuffer.bind();
  m_gridBuffer.allocate(grid.segments.data(), static_cast<int>(grid.segments.size() * sizeof(GroundGrid::Segment)));
  m_gridBuffer.release();
}

void CloudPainter::uploadRamp(RampTexture &held, const ColorRamp &ramp) {
  if (held.texture && held.name == ramp.name()) return;
  held.name = ramp.name();
  QImage image(rampTexels, 2, QImage::Format_RGBA8888);
  const ColorRamp velocity = ColorRamp::diverging();
  for (int x = 0; x < rampTexels; ++x) {
    const double share = static_cast<double>(x) / (rampTexels - 1);
    image.setPixel(x, 0, ramp.at(share));
    image.setPixel(x, 1, velocity.at(share));
  }
  held.texture = std::make_unique<QOpenGLTexture>(image, QOpenGLTexture::DontGenerateMipMaps);
  held.texture->setMinMagFilters(QOpenGLTexture::Linear, QOpenGLTexture::Linear);
  held.texture->setWrapMode(QOpenGLTexture::ClampToEdge);
}

DrawnPicture CloudPainter::paint(const PictureOrder &order, QOpenGLFramebufferObject &target, const GoesOn &goesOn) {
  const CanvasScene &scene = order.scene;
  DrawnPicture result{order.serial, order.view, order.camera, 0, false};
  uploadCanvases(scene.canvases, result);
  uploadGrid(scene);
  uploadRamp(m_ramps[0], scene.main.ramp);
  uploadRamp(m_ramps[1], scene.side.ramp);

  target.bind();
  const QSize size = target.size();
  const QColor &background = scene.background;
  glClearColor(static_cast<float>(background.redF()), static_cast<float>(background.greenF()),
               static_cast<float>(background.blueF()), 1);
  glClearDepthf(1);
  glDepthMask(GL_TRUE);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glEnable(GL_DEPTH_TEST);
  glDepthFunc(GL_LESS);
  glDisable(GL_BLEND);
  if (scene.splitView) {
    const int half = size.width() / 2;
    drawView(order, QRect(0, 0, half, size.height()), false, goesOn);
    drawView(order, QRect(half, 0, size.width() - half, size.height()), true, goesOn);
  } else {
    drawView(order, QRect(QPoint(0, 0), size), false, goesOn);
  }
  target.release();
  return result;
}

void CloudPainter::drawView(const PictureOrder &order, const QRect &place, bool side, const GoesOn &goesOn) {
  glViewport(place.x(), place.y(), place.width(), place.height());
  const float aspect = static_cast<float>(place.width()) / static_cast<float>(std::max(1, place.height()));
  const QMatrix4x4 matrix = order.camera.projectionMatrix(aspect) * order.camera.viewMatrix();
  const QOpenGLVertexArrayObject::Binder binder(&m_vertexArray);
  if (order.scene.grid && !m_held.empty()) drawGrid(matrix, order.scene.gridTint);
  const ViewColors &colors = side ? order.scene.side : order.scene.main;
  QOpenGLShaderProgram &program = colors.words == WordKind::Velocity ? *m_velocityProgram : *m_attributeProgram;
  if (!program.isLinked()) return;
  preparePoints(program, matrix * order.scene.placement, order, side,
                order.camera.pixelsPerMetre(static_cast<float>(place.height())));
  drawPoints(program, goesOn);
  m_ramps[side ? 1 : 0].texture->release(0);
  program.release();
}

void CloudPainter::drawGrid(const QMatrix4x4 &matrix, const QColor &tint) {
  m_gridProgram->bind();
  m_gridProgram->setUniformValue("viewProjection", matrix);
  m_gridProgram->setUniformValue("tint", tint);
  m_gridBuffer.bind();
  m_gridProgram->enableAttributeArray("place");
  m_gridProgram->setAttributeBuffer("place", GL_FLOAT, 0, 3);
  glDrawArrays(GL_LINES, 0, m_gridVertexCount);
  m_gridProgram->disableAttributeArray("place");
  m_gridBuffer.release();
  m_gridProgram->release();
}

void CloudPainter::preparePoints(QOpenGLShaderProgram &program, const QMatrix4x4 &matrix, const PictureOrder &order,
                                 bool side, float pixelsPerMetre) {
  if (!QOpenGLContext::currentContext()->isOpenGLES()) {
    glEnable(programPointSize);
    if (QOpenGLContext::currentContext()->format().profile() != QSurfaceFormat::CoreProfile) glEnable(pointSprite);
  }
  const ViewColors &colors = side ? order.scene.side : order.scene.main;
  program.bind();
  program.setUniformValue("viewProjection", matrix);
  program.setUniformValue("leastPixels", order.scene.pointPixels * order.pixelRatio);
  program.setUniformValue("extentPixels", pointExtent * pixelsPerMetre);
  program.setUniformValue("range", colors.range.low, std::max(colors.range.high - colors.range.low, 1e-6F));
  program.setUniformValue("velocityLimit", velocityLimit);
  program.setUniformValue("highlight", QColor(highlightColor));
  program.setUniformValue("wordKind", static_cast<int>(colors.words));
  program.setUniformValue("ramp", 0);
  m_ramps[side ? 1 : 0].texture->bind(0);
}

/// One draw, where a graphics card does it. A renderer in software keeps every other context waiting until it is
/// through with what it was last given, so it is given little at a time.
bool CloudPainter::drawParts(int count, const GoesOn &goesOn) {
  for (int first = 0; first < count;) {
    const int part = std::min(m_partVertices, count - first);
    glDrawArrays(GL_POINTS, first, part);
    if (part < count) glFlush();
    if (!goesOn()) return false;
    first += part;
  }
  return true;
}

/// One draw for each array.
void CloudPainter::drawPoints(const QOpenGLShaderProgram &program, const GoesOn &goesOn) {
  const char *const names[] = {"word0", "word1", "colorWord"};
  int locations[3];
  for (int i = 0; i < 3; ++i) {
    locations[i] = program.attributeLocation(names[i]);
    if (locations[i] >= 0) glEnableVertexAttribArray(static_cast<GLuint>(locations[i]));
  }
  for (Held &held : m_held) {
    if (held.count == 0) continue;
    held.buffer.bind();
    for (std::uintptr_t i = 0; i < 3; ++i) {
      if (locations[i] < 0) continue;
      glVertexAttribIPointer(static_cast<GLuint>(locations[i]), 1, GL_UNSIGNED_INT, static_cast<GLsizei>(vertexStride),
                             reinterpret_cast<const void *>(i * sizeof(std::uint32_t)));
    }
    const bool finished = drawParts(held.count, goesOn);
    held.buffer.release();
    if (!finished) break;
  }
  for (const int location : locations) {
    if (location >= 0) glDisableVertexAttribArray(static_cast<GLuint>(location));
  }
}

}  // namespace tarvo::skarnvisor::app
