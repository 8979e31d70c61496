#pragma once

#include <QPointer>
#include <QQuickFramebufferObject>
#include <QVariantList>

#include "app/render/camera.h"
#include "app/window/viewer.h"

namespace tarvo::skarnvisor::app {

/// Draws the viewer's cloud with OpenGL and turns mouse movement into camera movement: the left button orbits, the
/// right or middle button pans, the wheel zooms, a double click goes back to the default view.
class CloudCanvas : public QQuickFramebufferObject {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::app::Viewer *viewer READ viewer WRITE setViewer NOTIFY viewerChanged)
  /// Labels of the range rings: maps with x, y (item coordinates) and text.
  Q_PROPERTY(QVariantList labels READ labels NOTIFY labelsChanged)

 public:
  explicit CloudCanvas(QQuickItem *parent = nullptr);

  Renderer *createRenderer() const override;

  Viewer *viewer() const { return m_viewer; }
  void setViewer(Viewer *viewer);
  const OrbitCamera &camera() const { return m_camera; }
  QVariantList labels() const;
  Q_INVOKABLE void setView(const QString &name);

 Q_SIGNALS:
  void viewerChanged();
  void labelsChanged();

 protected:
  void mousePressEvent(QMouseEvent *event) override;
  void mouseMoveEvent(QMouseEvent *event) override;
  void mouseDoubleClickEvent(QMouseEvent *event) override;
  void wheelEvent(QWheelEvent *event) override;
  void geometryChanged(const QRectF &now, const QRectF &before) override;

 private:
  void redraw();

  QPointer<Viewer> m_viewer;
  OrbitCamera m_camera;
  QPointF m_lastMouse;
};

}  // namespace tarvo::skarnvisor::app
