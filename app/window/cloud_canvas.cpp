#include "app/window/cloud_canvas.h"

#include <QMouseEvent>
#include <QWheelEvent>
#include <cmath>
#include <limits>

#include "app/render/ground_grid.h"
#include "app/render/picking.h"

namespace tarvo::skarnvisor::app {
namespace {

constexpr float degreesPerPixel = 0.35F;
/// One notch of the wheel, an eighth of a degree being the unit of its delta.
constexpr float zoomPerNotch = 0.88F;
constexpr float notch = 120;
/// A press that moves less is a click, pixels.
constexpr double clickReach = 4;
constexpr double pickReach = 8;
constexpr float pointCubeReach = 0.001F;
/// What the label of a ring takes, pixels.
constexpr QSizeF labelRoom(40, 14);

QVector3D placeOf(const VertexPoint &point) { return {point.x, point.y, point.z}; }

}  // namespace

CloudCanvas::CloudCanvas(QQuickItem *parent) : QQuickItem(parent) {
  setAcceptedMouseButtons(Qt::AllButtons);
  setActiveFocusOnTab(true);
  setFlag(ItemHasContents);
}

CloudCanvas::~CloudCanvas() = default;

void CloudCanvas::setViewer(Viewer *viewer) {
  if (viewer == m_viewer) return;
  if (m_viewer) m_viewer->disconnect(this);
  m_viewer = viewer;
  if (viewer != nullptr) {
    connect(viewer, &Viewer::pictureChanged, this, &CloudCanvas::orderPicture);
    connect(viewer, &Viewer::lookChanged, this, &CloudCanvas::redraw);
    connect(viewer, &Viewer::captureChanged, this, &CloudCanvas::redraw);
    connect(viewer, &Viewer::sceneFound, this, [this] { setView(OrbitCamera::viewNames().first()); });
  }
  Q_EMIT viewerChanged();
  redraw();
}

void CloudCanvas::setView(const QString &name) {
  if (m_viewer) m_camera.setView(name, m_viewer->scene().extent);
  redraw();
}

void CloudCanvas::reset() {
  setOrthographic(false);
  setView(OrbitCamera::viewNames().first());
}

void CloudCanvas::fit() {
  if (!m_viewer) return;
  m_viewer->measureScene();
  m_camera.fit(m_viewer->scene().extent);
  redraw();
}

void CloudCanvas::setOrthographic(bool on) {
  if (on == m_camera.isOrthographic()) return;
  m_camera.setOrthographic(on);
  Q_EMIT orthographicChanged();
  redraw();
}

void CloudCanvas::orbit(double azimuthDeg, double elevationDeg) {
  m_camera.orbit(static_cast<float>(azimuthDeg), static_cast<float>(elevationDeg));
  redraw();
}

void CloudCanvas::zoom(double factor) {
  m_camera.zoom(static_cast<float>(factor));
  redraw();
}

QRectF CloudCanvas::viewAt(QPointF at) const {
  if (!m_viewer || !m_viewer->isSplitView()) return boundingRect();
  const double half = width() / 2;
  return {at.x() < half ? 0 : half, 0, half, height()};
}

QMatrix4x4 CloudCanvas::viewProjection() const {
  const QRectF view = viewAt({0, 0});
  const OrbitCamera &camera = shownCamera();
  return camera.projectionMatrix(static_cast<float>(view.width() / std::max(1.0, view.height()))) * camera.viewMatrix();
}

QMatrix4x4 CloudCanvas::pointProjection() const {
  return m_viewer ? viewProjection() * m_viewer->scene().placement : viewProjection();
}

QPointF CloudCanvas::onItem(const QMatrix4x4 &projection, const QVector3D &place) const {
  const QRectF view = viewAt({0, 0});
  const QVector4D clip = projection * QVector4D(place, 1);
  if (clip.w() <= 0) return {std::numeric_limits<double>::quiet_NaN(), 0};
  return {(0.5 + 0.5 * static_cast<double>(clip.x() / clip.w())) * view.width(),
          (0.5 - 0.5 * static_cast<double>(clip.y() / clip.w())) * view.height()};
}

QPointF CloudCanvas::project(const QVector3D &place) const { return onItem(pointProjection(), place); }

QMatrix4x4 CloudCanvas::pointMatrix(const QVector3D &place) const { return cubeMatrix(place, pointCubeReach); }

QVariantList CloudCanvas::labels() const {
  QVariantList labels;
  if (!m_viewer || m_viewer->scene().canvases.empty() || !m_viewer->scene().grid || height() < 1) return labels;
  const QRectF view = viewAt({0, 0});
  QPointF last(-labelRoom.width(), 0);
  for (const GroundGrid::Label &label : groundGrid(m_viewer->scene().extent).labels) {
    const QPointF at = onItem(viewProjection(), label.at);
    if (std::isnan(at.x()) || !view.contains(at)) continue;
    // Far rings lie close together: one that would cover the last has no label.
    const QPointF apart = at - last;
    if (std::abs(apart.x()) < labelRoom.width() && std::abs(apart.y()) < labelRoom.height()) continue;
    last = at;
    // Both views have the same camera.
    for (double left = 0; left < width(); left += view.width())
      labels << QVariantMap{{"x", left + at.x()}, {"y", at.y()}, {"text", label.text}};
  }
  return labels;
}

QVariantList CloudCanvas::axes() const {
  QVariantList axes;
  const QMatrix4x4 matrix = shownCamera().viewMatrix();
  for (const QVector3D &axis : {QVector3D(1, 0, 0), QVector3D(0, 1, 0), QVector3D(0, 0, 1)}) {
    const QVector3D seen = matrix.mapVector(axis);
    axes << QVector3D(seen.x(), -seen.y(), seen.z());
  }
  return axes;
}

void CloudCanvas::redraw() {
  ++m_view;
  orderPicture();
}

void CloudCanvas::setBand(const QRectF &band) {
  m_band = band;
  Q_EMIT bandChanged();
}

void CloudCanvas::pick(QPointF at, void (CloudCanvas::*take)(std::optional<VertexPoint>)) {
  const QRectF view = viewAt(at);
  m_viewer->findPoint(pointProjection(), view.size(), at - view.topLeft(), pickReach,
                      [canvas = QPointer<CloudCanvas>(this), take](std::optional<VertexPoint> point) {
                        if (canvas) (canvas->*take)(point);
                      });
}

void CloudCanvas::tellClick(std::optional<VertexPoint> point) {
  if (point)
    Q_EMIT pointClicked(placeOf(*point));
  else
    Q_EMIT nothingClicked();
}

void CloudCanvas::turnAround(std::optional<VertexPoint> point) {
  if (!point || !m_viewer) return;
  m_camera.setPivot(m_viewer->scene().placement.map(placeOf(*point)));
  redraw();
}

void CloudCanvas::mousePressEvent(QMouseEvent *event) {
  forceActiveFocus(Qt::MouseFocusReason);
  m_pressedAt = m_lastMouse = event->localPos();
  m_clicks = event->button() == Qt::LeftButton;
}

void CloudCanvas::mouseUngrabEvent() { setBand({}); }

void CloudCanvas::mouseMoveEvent(QMouseEvent *event) {
  const QPointF moved = event->localPos() - m_lastMouse;
  m_lastMouse = event->localPos();
  // Also a drag that comes back to where it began is none.
  if ((m_lastMouse - m_pressedAt).manhattanLength() > clickReach) m_clicks = false;
  const bool left = (event->buttons() & Qt::LeftButton) != 0 && (event->modifiers() & Qt::ShiftModifier) == 0;
  if (left && m_tool == Tool::Select) {
    // A band belongs to the view that it began in.
    return setBand(QRectF(m_pressedAt, m_lastMouse).normalized().intersected(viewAt(m_pressedAt)));
  }
  const auto dx = static_cast<float>(moved.x());
  const auto dy = static_cast<float>(moved.y());
  const auto pixels = static_cast<float>(std::max(1.0, height()));
  if (left)
    m_camera.orbit(dx * degreesPerPixel, dy * degreesPerPixel);
  else
    m_camera.pan(-dx / pixels, dy / pixels);
  redraw();
}

void CloudCanvas::mouseReleaseEvent(QMouseEvent *event) {
  const QRectF band = m_band;
  setBand({});
  if (event->button() != Qt::LeftButton || !m_viewer || m_viewer->pointsShown() + m_viewer->pointsSelected() == 0)
    return;
  if (m_clicks) {
    pick(event->localPos(), &CloudCanvas::tellClick);
  } else if (m_tool == Tool::Select && !band.isEmpty()) {
    const QRectF view = viewAt(m_pressedAt);
    Q_EMIT bandDrawn(bandMatrix(pointProjection(), view.size(), band.translated(-view.topLeft())));
  }
}

void CloudCanvas::mouseDoubleClickEvent(QMouseEvent *event) {
  if (event->button() != Qt::LeftButton || !m_viewer) return;
  // Another picture may be seen when the button is let go, with another point under it.
  m_clicks = false;
  pick(event->localPos(), &CloudCanvas::turnAround);
}

void CloudCanvas::wheelEvent(QWheelEvent *event) {
  const QRectF view = viewAt(event->position());
  const QPointF at((event->position().x() - view.center().x()) / (view.width() / 2),
                   (view.center().y() - event->position().y()) / (view.height() / 2));
  m_camera.zoomAt(std::pow(zoomPerNotch, static_cast<float>(event->angleDelta().y()) / notch), at,
                  static_cast<float>(view.width() / view.height()));
  redraw();
}

}  // namespace tarvo::skarnvisor::app
