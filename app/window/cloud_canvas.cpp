#include "app/window/cloud_canvas.h"

#include <QMouseEvent>
#include <QWheelEvent>
#include <cmath>

#include "app/render/ground_grid.h"
#include "app/window/cloud_painter.h"

namespace tarvo::skarnvisor::app {
namespace {

constexpr float degreesPerPixel = 0.35F;
/// One notch of the wheel, an eighth of a degree being the unit of its delta.
constexpr float zoomPerNotch = 0.88F;
constexpr float notch = 120;

}  // namespace

CloudCanvas::CloudCanvas(QQuickItem *parent) : QQuickFramebufferObject(parent) {
  setAcceptedMouseButtons(Qt::AllButtons);
  // OpenGL's rows go up, the item's go down.
  setMirrorVertically(true);
}

QQuickFramebufferObject::Renderer *CloudCanvas::createRenderer() const { return new CloudPainter; }

void CloudCanvas::setViewer(Viewer *viewer) {
  if (viewer == m_viewer) return;
  if (m_viewer) m_viewer->disconnect(this);
  m_viewer = viewer;
  if (viewer != nullptr) {
    connect(viewer, &Viewer::pictureChanged, this, &QQuickItem::update);
    connect(viewer, &Viewer::colorsChanged, this, &QQuickItem::update);
    connect(viewer, &Viewer::lookChanged, this, &CloudCanvas::redraw);
    connect(viewer, &Viewer::sceneMeasured, this, [this] { setView(OrbitCamera::viewNames().first()); });
  }
  Q_EMIT viewerChanged();
  redraw();
}

void CloudCanvas::setView(const QString &name) {
  if (m_viewer) m_camera.setView(name, m_viewer->scene().extent);
  redraw();
}

QVariantList CloudCanvas::labels() const {
  QVariantList labels;
  if (!m_viewer || !m_viewer->isReady() || !m_viewer->scene().grid || height() < 1) return labels;
  const QMatrix4x4 matrix = m_camera.projectionMatrix(static_cast<float>(width() / height())) * m_camera.viewMatrix();
  for (const GroundGrid::Label &label : groundGrid(m_viewer->scene().extent).labels) {
    const QVector4D clip = matrix * QVector4D(label.at, 1);
    if (clip.w() <= 0) continue;
    const double x = (0.5 + 0.5 * clip.x() / clip.w()) * width();
    const double y = (0.5 - 0.5 * clip.y() / clip.w()) * height();
    labels << QVariantMap{{"x", x}, {"y", y}, {"text", label.text}};
  }
  return labels;
}

void CloudCanvas::redraw() {
  update();
  Q_EMIT labelsChanged();
}

void CloudCanvas::mousePressEvent(QMouseEvent *event) { m_lastMouse = event->localPos(); }

void CloudCanvas::mouseMoveEvent(QMouseEvent *event) {
  const QPointF moved = event->localPos() - m_lastMouse;
  m_lastMouse = event->localPos();
  const auto dx = static_cast<float>(moved.x());
  const auto dy = static_cast<float>(moved.y());
  if ((event->buttons() & Qt::LeftButton) != 0 && (event->modifiers() & Qt::ShiftModifier) == 0) {
    m_camera.orbit(dx * degreesPerPixel, dy * degreesPerPixel);
  } else {
    const auto pixels = static_cast<float>(std::max(1.0, height()));
    m_camera.pan(-dx / pixels, dy / pixels);
  }
  redraw();
}

void CloudCanvas::mouseDoubleClickEvent(QMouseEvent *) { setView(OrbitCamera::viewNames().first()); }

void CloudCanvas::wheelEvent(QWheelEvent *event) {
  m_camera.zoom(std::pow(zoomPerNotch, static_cast<float>(event->angleDelta().y()) / notch));
  redraw();
}

void CloudCanvas::geometryChanged(const QRectF &now, const QRectF &before) {
  QQuickFramebufferObject::geometryChanged(now, before);
  Q_EMIT labelsChanged();
}

}  // namespace tarvo::skarnvisor::app
