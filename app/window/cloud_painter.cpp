#include "app/window/cloud_painter.h"

#include <QFile>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QQuickWindow>
#include <algorithm>

#include "app/render/ground_grid.h"
#include "app/window/cloud_canvas.h"
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

/// The shaders are written for all of these; the profile decides which one the driver takes.
QByteArray shaderHeader() {
  const QOpenGLContext *context = QOpenGLContext::currentContext();
  if (context->isOpenGLES()) return "#version 300 es\nprecision highp float;\nprecision highp int;\n";
  return context->format().profile() == QSurfaceFormat::CoreProfile ? "#version 330\n" : "#version 130\n";
}

QByteArray shaderText(const QString &file, const QByteArray &defines) {
  QFile resource(QStringLiteral(":/skarnvisor/shaders/") + file);
  if (!resource.open(QIODevice::ReadOnly))
    SKARN_LOG(LogLevel::Internal, "no shader %s in the program", qPrintable(file));
  return shaderHeader() + defines + resource.readAll();
}

}  // namespace

CloudPainter::~CloudPainter() {
  for (Held &held : m_held) held.buffer.destroy();
}

QOpenGLFramebufferObject *CloudPainter::createFramebufferObject(const QSize &size) {
  QOpenGLFramebufferObjectFormat format;
  format.setAttachment(QOpenGLFramebufferObject::CombinedDepthStencil);
  return new QOpenGLFramebufferObject(size, format);
}

void CloudPainter::synchronize(QQuickFramebufferObject *item) {
  const auto *canvas = static_cast<CloudCanvas *>(item);
  m_window = item->window();
  m_camera = canvas->camera();
  if (canvas->viewer() != nullptr) m_scene = canvas->viewer()->scene();
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

void CloudPainter::prepare() {
  m_prepared = true;
  initializeOpenGLFunctions();
  m_attributeProgram = makeProgram("cloud", {});
  m_velocityProgram = makeProgram("cloud", "#define VELOCITY_WORDS\n");
  m_gridProgram = makeProgram("grid", {});
  m_vertexArray.create();
  m_gridBuffer.create();
}

/// One upload for each array whose bytes are new; the others stay where they are.
void CloudPainter::uploadCanvases() {
  const std::vector<CanvasVertices> &canvases = m_scene.canvases;
  for (std::size_t i = canvases.size(); i < m_held.size(); ++i) m_held[i].buffer.destroy();
  m_held.resize(canvases.size());
  for (std::size_t i = 0; i < canvases.size(); ++i) {
    Held &held = m_held[i];
    if (held.serial == canvases[i].serial) continue;
    if (!held.buffer.isCreated()) held.buffer.create();
    held.serial = canvases[i].serial;
    held.count = uploadVertices(held.buffer, canvases[i].bytes);
  }
}

void CloudPainter::uploadGrid() {
  if (m_extentSerial == m_scene.extentSerial) return;
  m_extentSerial = m_scene.extentSerial;
  const GroundGrid grid = groundGrid(m_scene.extent);
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

void CloudPainter::render() {
  if (!m_prepared) prepare();
  uploadCanvases();
  uploadGrid();
  uploadRamp(m_ramps[0], m_scene.main.ramp);
  uploadRamp(m_ramps[1], m_scene.side.ramp);

  const QSize size = framebufferObject()->size();
  const QColor &background = m_scene.background;
  glClearColor(static_cast<float>(background.redF()), static_cast<float>(background.greenF()),
               static_cast<float>(background.blueF()), 1);
  glClearDepthf(1);
  glDepthMask(GL_TRUE);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glEnable(GL_DEPTH_TEST);
  glDepthFunc(GL_LESS);
  glDisable(GL_BLEND);
  if (m_scene.splitView) {
    const int half = size.width() / 2;
    drawView(QRect(0, 0, half, size.height()), m_scene.main, false);
    drawView(QRect(half, 0, size.width() - half, size.height()), m_scene.side, true);
  } else {
    drawView(QRect(QPoint(0, 0), size), m_scene.main, false);
  }
  if (m_window != nullptr) m_window->resetOpenGLState();
}

void CloudPainter::drawView(const QRect &place, const ViewColors &colors, bool side) {
  glViewport(place.x(), place.y(), place.width(), place.height());
  const float aspect = static_cast<float>(place.width()) / static_cast<float>(std::max(1, place.height()));
  const QMatrix4x4 matrix = m_camera.projectionMatrix(aspect) * m_camera.viewMatrix();
  const QOpenGLVertexArrayObject::Binder binder(&m_vertexArray);
  if (m_scene.grid && !m_held.empty()) drawGrid(matrix);
  drawPoints(matrix, colors, m_camera.pixelsPerMetre(static_cast<float>(place.height())), side);
}

void CloudPainter::drawGrid(const QMatrix4x4 &matrix) {
  m_gridProgram->bind();
  m_gridProgram->setUniformValue("viewProjection", matrix);
  m_gridProgram->setUniformValue("tint", m_scene.gridTint);
  m_gridBuffer.bind();
  m_gridProgram->enableAttributeArray("place");
  m_gridProgram->setAttributeBuffer("place", GL_FLOAT, 0, 3);
  glDrawArrays(GL_LINES, 0, m_gridVertexCount);
  m_gridProgram->disableAttributeArray("place");
  m_gridBuffer.release();
  m_gridProgram->release();
}

void CloudPainter::drawPoints(const QMatrix4x4 &matrix, const ViewColors &colors, float pixelsPerMetre, bool side) {
  QOpenGLShaderProgram &program = colors.words == WordKind::Velocity ? *m_velocityProgram : *m_attributeProgram;
  if (!program.isLinked()) return;
  if (!QOpenGLContext::currentContext()->isOpenGLES()) {
    glEnable(programPointSize);
    if (QOpenGLContext::currentContext()->format().profile() != QSurfaceFormat::CoreProfile) glEnable(pointSprite);
  }
  program.bind();
  program.setUniformValue("viewProjection", matrix);
  program.setUniformValue("leastPixels", m_scene.pointPixels);
  program.setUniformValue("extentPixels", pointExtent * pixelsPerMetre);
  program.setUniformValue("range", colors.range.low, std::max(colors.range.high - colors.range.low, 1e-6F));
  program.setUniformValue("velocityLimit", velocityLimit);
  program.setUniformValue("highlight", QColor(highlightColor));
  program.setUniformValue("wordKind", static_cast<int>(colors.words));
  program.setUniformValue("ramp", 0);
  QOpenGLTexture &ramp = *m_ramps[side ? 1 : 0].texture;
  ramp.bind(0);
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
    glDrawArrays(GL_POINTS, 0, held.count);
    held.buffer.release();
  }
  for (const int location : locations) {
    if (location >= 0) glDisableVertexAttribArray(static_cast<GLuint>(location));
  }
  ramp.release(0);
  program.release();
}

}  // namespace tarvo::skarnvisor::app
