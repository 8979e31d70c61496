#pragma once

#include <QPointer>
#include <QQuickFramebufferObject>
#include <QVariantList>
#include <QVector3D>

#include "app/render/camera.h"
#include "app/window/viewer.h"

namespace tarvo::skarnvisor::app {

/// Draws the viewer's cloud with OpenGL, once or as two views beside each other, and turns mouse movement into camera
/// movement and picks. The left button orbits, or draws a band or picks with the tool for it; the right or middle
/// button, or Shift with the left one, pans; the wheel zooms to the cursor; a double click turns the camera around the
/// point under it.
class CloudCanvas : public QQuickFramebufferObject {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::app::Viewer *viewer READ viewer WRITE setViewer NOTIFY viewerChanged)
  /// What the left button does.
  Q_PROPERTY(Tool tool MEMBER m_tool NOTIFY toolChanged)
  Q_PROPERTY(bool orthographic READ isOrthographic WRITE setOrthographic NOTIFY cameraChanged)
  /// Labels of the range rings: maps with x, y (item coordinates) and text.
  Q_PROPERTY(QVariantList labels READ labels NOTIFY cameraChanged)
  /// The band being drawn, item coordinates; empty while there is none.
  Q_PROPERTY(QRectF band READ band NOTIFY bandChanged)

 public:
  enum class Tool { Orbit, Select, Ruler };
  Q_ENUM(Tool)

  explicit CloudCanvas(QQuickItem *parent = nullptr);

  Renderer *createRenderer() const override;

  Viewer *viewer() const { return m_viewer; }
  void setViewer(Viewer *viewer);
  const OrbitCamera &camera() const { return m_camera; }
  bool isOrthographic() const { return m_camera.isOrthographic(); }
  void setOrthographic(bool on);
  QVariantList labels() const;
  QRectF band() const { return m_band; }
  Q_INVOKABLE void setView(const QString &name);
  Q_INVOKABLE void fit();
  Q_INVOKABLE void orbit(double azimuthDeg, double elevationDeg);
  Q_INVOKABLE void zoom(double factor);
  /// Where a place of the scene is drawn, item coordinates, in the left view if there are two; x is NaN behind the eye.
  Q_INVOKABLE QPointF project(const QVector3D &place) const;
  /// Matrix of a cube of 2 mm around a place, which holds one point.
  Q_INVOKABLE QMatrix4x4 pointMatrix(const QVector3D &place) const;

 Q_SIGNALS:
  void viewerChanged();
  void toolChanged();
  void cameraChanged();
  void bandChanged();
  /// A band was drawn; the matrix takes what lies in it to coordinates whose size is below their fourth.
  void bandDrawn(const QMatrix4x4 &matrix);
  /// A point was clicked; metres.
  void pointClicked(const QVector3D &place);
  /// There is no point where the user clicked.
  void nothingClicked();

 protected:
  void mousePressEvent(QMouseEvent *event) override;
  void mouseMoveEvent(QMouseEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;
  void mouseDoubleClickEvent(QMouseEvent *event) override;
  void wheelEvent(QWheelEvent *event) override;
  void geometryChanged(const QRectF &now, const QRectF &before) override;

 private:
  void redraw();
  void setBand(const QRectF &band);
  /// The view that a place of the item belongs to.
  QRectF viewAt(QPointF at) const;
  QMatrix4x4 viewProjection() const;
  std::optional<VertexPoint> pick(QPointF at) const;

  QPointer<Viewer> m_viewer;
  OrbitCamera m_camera;
  Tool m_tool = Tool::Orbit;
  QPointF m_pressedAt;
  QPointF m_lastMouse;
  QRectF m_band;
};

}  // namespace tarvo::skarnvisor::app
