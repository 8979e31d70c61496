#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QVariantList>
#include <QVector3D>

#include "app/render/camera.h"
#include "app/window/drawing_thread.h"
#include "app/window/viewer.h"

namespace tarvo::skarnvisor::app {

/// Shows the viewer's cloud, once or as two views beside each other, and turns mouse movement into camera movement and
/// picks. The pictures are drawn by a thread of their own, or with the window where OpenGL gives no second context;
/// what lies over the cloud follows the picture that is seen. The left button orbits, or draws a band or picks with the
/// tool for it; the right or middle button, or Shift with the left one, pans; the wheel zooms to the cursor; a double
/// click turns the camera around the point under it.
class CloudCanvas : public QQuickItem {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::app::Viewer *viewer READ viewer WRITE setViewer NOTIFY viewerChanged)
  /// What the left button does.
  Q_PROPERTY(Tool tool MEMBER m_tool NOTIFY toolChanged)
  Q_PROPERTY(bool orthographic READ isOrthographic WRITE setOrthographic NOTIFY orthographicChanged)
  /// Labels of the range rings: maps with x, y (item coordinates) and text.
  Q_PROPERTY(QVariantList labels READ labels NOTIFY cameraChanged)
  /// Where the sensor's axes x, y and z point in the picture: vectors with x to the right, y down and z to the eye.
  Q_PROPERTY(QVariantList axes READ axes NOTIFY cameraChanged)
  /// The band being drawn, item coordinates; empty while there is none.
  Q_PROPERTY(QRectF band READ band NOTIFY bandChanged)

 public:
  enum class Tool { Orbit, Select, Ruler };
  Q_ENUM(Tool)

  explicit CloudCanvas(QQuickItem *parent = nullptr);
  ~CloudCanvas() override;

  Viewer *viewer() const { return m_viewer; }
  void setViewer(Viewer *viewer);
  const OrbitCamera &camera() const { return m_camera; }
  bool isOrthographic() const { return m_camera.isOrthographic(); }
  void setOrthographic(bool on);
  QVariantList labels() const;
  QVariantList axes() const;
  QRectF band() const { return m_band; }
  Q_INVOKABLE void setView(const QString &name);
  /// Back to the first view, with perspective.
  Q_INVOKABLE void reset();
  Q_INVOKABLE void fit();
  Q_INVOKABLE void orbit(double azimuthDeg, double elevationDeg);
  Q_INVOKABLE void zoom(double factor);
  /// Waits until the picture of the scene as it is now is drawn, so that the window's next drawing shows it. False if
  /// there is nothing to draw with, or it takes longer.
  Q_INVOKABLE bool finishPicture(int milliseconds = 10000);
  /// Draws with the window from now on, as if there were no second OpenGL context.
  void drawWithWindow();
  /// Where a place of the scene is drawn, item coordinates, in the left view if there are two; x is NaN behind the eye.
  Q_INVOKABLE QPointF project(const QVector3D &place) const;
  /// Matrix of a cube of 2 mm around a place, which holds one point.
  Q_INVOKABLE QMatrix4x4 pointMatrix(const QVector3D &place) const;

 Q_SIGNALS:
  void viewerChanged();
  void toolChanged();
  /// Another camera is seen, or the places of the scene are drawn elsewhere for another reason.
  void cameraChanged();
  void orthographicChanged();
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
  void mouseUngrabEvent() override;
  void wheelEvent(QWheelEvent *event) override;
  void geometryChanged(const QRectF &now, const QRectF &before) override;
  void itemChange(ItemChange change, const ItemChangeData &data) override;
  QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *) override;

 private:
  /// The picture needs drawing anew; the camera moved.
  void redraw();
  /// The picture needs drawing anew; asked for once in a turn of the event loop.
  void orderPicture();
  /// False if nothing can be drawn yet; then something comes that asks again.
  bool placeOrder();
  void startDrawing();
  void takeDrawn(const DrawnPicture &drawn);
  bool isDrawing() const { return m_drawing && !m_drawing->isStopped(); }
  void setBand(const QRectF &band);
  /// The view that a place of the item belongs to.
  QRectF viewAt(QPointF at) const;
  const OrbitCamera &shownCamera() const { return m_shown.serial > 0 ? m_shown.camera : m_camera; }
  QMatrix4x4 viewProjection() const;
  /// The same for places in the sensor's coordinates.
  QMatrix4x4 pointProjection() const;
  /// NaN for a place behind the eye.
  QPointF onItem(const QMatrix4x4 &projection, const QVector3D &place) const;
  /// Has the point that is drawn under a place of the item taken, once it is found; none where there is none.
  void pick(QPointF at, void (CloudCanvas::*take)(std::optional<VertexPoint>));
  void tellClick(std::optional<VertexPoint> point);
  void turnAround(std::optional<VertexPoint> point);

  QPointer<Viewer> m_viewer;
  OrbitCamera m_camera;
  /// The picture that is seen.
  DrawnPicture m_shown;
  /// The picture that is wanted.
  std::uint64_t m_ordered = 0;
  std::uint64_t m_view = 1;
  bool m_changed = true;  ///< since the last order
  bool m_orderQueued = false;
  bool m_startQueued = false;
  bool m_withWindow = false;
  PictureOrder m_windowOrder;  ///< drawn with the window
  QPointer<QQuickWindow> m_window;
  std::unique_ptr<DrawingThread> m_drawing;
  Tool m_tool = Tool::Orbit;
  QPointF m_pressedAt;
  bool m_clicks = false;  ///< the press may still become a click
  QPointF m_lastMouse;
  QRectF m_band;
};

}  // namespace tarvo::skarnvisor::app
