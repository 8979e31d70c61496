#include "app/window/cloud_painter.h"

#include <QFile>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QQuickWindow>
#include <QtMath>
#include <cmath>

#include "app/render/ground_grid.h"
#include "app/window/cloud_canvas.h"
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
  m_cloudBuffer.create();
  m_gridBuffer.create();
}

void CloudPainter::uploadCloud() {
  if (m_cloudSerial == m_scene.cloudSerial) return;
  m_cloudSerial = m_scene.cloudSerial;
  m_pointCount = static_cast<int>(m_scene.cloud.size());
  m_cloudBuffer.bind();
  m_cloudBuffer.setUsagePattern(QOpenGLBuffer::StreamDraw);
  m_cloudBuffer.allocate(m_pointCount * static_cast<int>(vertexStride));
  int offset = 0;
  for (const QByteArray &canvas : m_scene.cloud.canvases()) {
    const int bytes = canvas.size() - canvas.size() % static_cast<int>(vertexStride);
    m_cloudBuffer.write(offset, canvas.constData(), bytes);
    offset += bytes;
  }
  m_cloudBuffer.release();
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

/// The upper half of the texture holds the chosen ramp, the lower half the one for velocities.
void CloudPainter::uploadRamp() {
  if (m_rampTexture && m_rampName == m_scene.ramp.name()) return;
  m_rampName = m_scene.ramp.name();
  QImage image(rampTexels, 2, QImage::Format_RGBA8888);
  const ColorRamp velocity = ColorRamp::diverging();
  for (int x = 0; x < rampTexels; ++x) {
    const double share = static_cast<double>(x) / (rampTexels - 1);
    image.setPixel(x, 0, m_scene.ramp.at(share));
    image.setPixel(x, 1, velocity.at(share));
  }
  m_rampTexture = std::make_unique<QOpenGLTexture>(image, QOpenGLTexture::DontGenerateMipMaps);
  m_rampTexture->setMinMagFilters(QOpenGLTexture::Linear, QOpenGLTexture::Linear);
  m_rampTexture->setWrapMode(QOpenGLTexture::ClampToEdge);
}

void CloudPainter::render() {
  if (!m_prepared) prepare();
  uploadCloud();
  uploadGrid();
  uploadRamp();

  const QSize size = framebufferObject()->size();
  const float aspect = static_cast<float>(size.width()) / static_cast<float>(std::max(1, size.height()));
  const QMatrix4x4 matrix = m_camera.projectionMatrix(aspect) * m_camera.viewMatrix();
  const QColor background(backgroundColor);
  glClearColor(static_cast<float>(background.redF()), static_cast<float>(background.greenF()),
               static_cast<float>(background.blueF()), 1);
  glClearDepthf(1);
  glDepthMask(GL_TRUE);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glEnable(GL_DEPTH_TEST);
  glDepthFunc(GL_LESS);
  glDisable(GL_BLEND);
  {
    const QOpenGLVertexArrayObject::Binder binder(&m_vertexArray);
    if (m_scene.grid && m_scene.cloud.size() > 0) drawGrid(matrix);
    if (m_pointCount > 0) drawPoints(matrix);
  }
  if (m_window != nullptr) m_window->resetOpenGLState();
}

void CloudPainter::drawGrid(const QMatrix4x4 &matrix) {
  m_gridProgram->bind();
  m_gridProgram->setUniformValue("viewProjection", matrix);
  m_gridProgram->setUniformValue("tint", QColor(0x2b, 0x33, 0x3c));
  m_gridBuffer.bind();
  m_gridProgram->enableAttributeArray("place");
  m_gridProgram->setAttributeBuffer("place", GL_FLOAT, 0, 3);
  glDrawArrays(GL_LINES, 0, m_gridVertexCount);
  m_gridProgram->disableAttributeArray("place");
  m_gridBuffer.release();
  m_gridProgram->release();
}

void CloudPainter::drawPoints(const QMatrix4x4 &matrix) {
  QOpenGLShaderProgram &program = m_scene.words == WordKind::Velocity ? *m_velocityProgram : *m_attributeProgram;
  if (!program.isLinked()) return;
  if (!QOpenGLContext::currentContext()->isOpenGLES()) {
    glEnable(programPointSize);
    if (QOpenGLContext::currentContext()->format().profile() != QSurfaceFormat::CoreProfile) glEnable(pointSprite);
  }
  const float pixelsPerMetre = static_cast<float>(framebufferObject()->height()) /
                               (2 * std::tan(qDegreesToRadians(OrbitCamera::fieldOfViewDeg / 2)));
  const QColor highlight(highlightColor);
  program.bind();
  program.setUniformValue("viewProjection", matrix);
  program.setUniformValue("leastPixels", m_scene.pointPixels);
  program.setUniformValue("extentPixels", pointExtent * pixelsPerMetre);
  program.setUniformValue("range", m_scene.range.low, std::max(m_scene.range.high - m_scene.range.low, 1e-6F));
  program.setUniformValue("velocityLimit", velocityLimit);
  program.setUniformValue("highlight", highlight);
  program.setUniformValue("wordKind", static_cast<int>(m_scene.words));
  program.setUniformValue("ramp", 0);
  m_rampTexture->bind(0);
  m_cloudBuffer.bind();
  const char *const names[] = {"word0", "word1", "colorWord"};
  int locations[3];
  for (int i = 0; i < 3; ++i) {
    locations[i] = program.attributeLocation(names[i]);
    if (locations[i] < 0) continue;
    const auto location = static_cast<GLuint>(locations[i]);
    glEnableVertexAttribArray(location);
    glVertexAttribIPointer(location, 1, GL_UNSIGNED_INT, static_cast<GLsizei>(vertexStride),
                           reinterpret_cast<const void *>(static_cast<std::uintptr_t>(i) * sizeof(std::uint32_t)));
  }
  glDrawArrays(GL_POINTS, 0, m_pointCount);
  for (const int location : locations) {
    if (location >= 0) glDisableVertexAttribArray(static_cast<GLuint>(location));
  }
  m_cloudBuffer.release();
  m_rampTexture->release(0);
  program.release();
}

}  // namespace tarvo::skarnvisor::app
