// How the canvas comes to its picture: orders to the drawing thread, and the scene graph's node that shows what it
// drew.
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QQuickWindow>
#include <QSGSimpleTextureNode>
#include <utility>

#include "app/window/cloud_canvas.h"
#include "app/window/cloud_painter.h"

namespace tarvo::skarnvisor::app {
namespace {

/// Shows a texture over the whole item. Lives with the scene graph; with no drawing thread it draws the picture too.
class CloudNode : public QSGSimpleTextureNode {
 public:
  CloudNode() {
    setOwnsTexture(true);
    // OpenGL's rows go up, the item's go down.
    setTextureCoordinatesTransform(MirrorVertically);
  }

  void show(QQuickWindow &window, const DrawingThread::Texture &drawn, const QRectF &place) {
    if (texture() == nullptr || drawn.id != m_id || drawn.size != texture()->textureSize())
      setTexture(window.createTextureFromNativeObject(QQuickWindow::NativeObjectTexture, &drawn.id, 0, drawn.size));
    m_id = drawn.id;
    setRect(place);
    markDirty(DirtyMaterial);
  }

  DrawnPicture draw(QQuickWindow &window, const PictureOrder &order) {
    if (!m_painter) m_painter = std::make_unique<CloudPainter>();
    if (!m_target || m_target->size() != order.pixels)
      m_target =
          std::make_unique<QOpenGLFramebufferObject>(order.pixels, QOpenGLFramebufferObject::CombinedDepthStencil);
    m_drawnSerial = order.serial;
    const DrawnPicture drawn = m_painter->paint(order, *m_target, [] { return true; });
    window.resetOpenGLState();
    return drawn;
  }
  std::uint64_t drawnSerial() const { return m_drawnSerial; }
  std::optional<DrawingThread::Texture> drawn() const {
    if (!m_target) return std::nullopt;
    return DrawingThread::Texture{m_target->texture(), m_target->size()};
  }

 private:
  unsigned m_id = 0;
  std::uint64_t m_drawnSerial = 0;
  std::unique_ptr<CloudPainter> m_painter;
  std::unique_ptr<QOpenGLFramebufferObject> m_target;
};

}  // namespace

void CloudCanvas::orderPicture() {
  m_changed = true;
  if (std::exchange(m_orderQueued, true)) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        m_orderQueued = false;
        placeOrder();
      },
      Qt::QueuedConnection);
}

bool CloudCanvas::placeOrder() {
  if (!m_changed) return true;
  if (!m_viewer || !window() || width() < 1 || height() < 1) return false;
  // Of a hidden window nothing is drawn; it orders when it is shown.
  if (!window()->isVisible() || window()->visibility() == QWindow::Minimized) return false;
  if (!m_withWindow && !isDrawing()) {
    update();  // the pass starts the thread
    return false;
  }
  m_changed = false;
  PictureOrder order{++m_ordered, m_view, m_viewer->scene(), m_camera, {}, 1};
  const double ratio = window()->effectiveDevicePixelRatio();
  order.pixels = (size() * ratio).toSize().expandedTo({1, 1});
  order.pixelRatio = static_cast<float>(ratio);
  if (!m_withWindow) {
    m_drawing->order(std::move(order));
  } else {
    m_windowOrder = std::move(order);
    update();
  }
  return true;
}

void CloudCanvas::startDrawing() {
  m_startQueued = false;
  QOpenGLContext *const context = window() ? window()->openglContext() : nullptr;
  if (context == nullptr || m_withWindow || isDrawing()) return;
  m_drawing = DrawingThread::begin(*context);
  if (!m_drawing) return drawWithWindow();
  connect(m_drawing.get(), &DrawingThread::failed, this, &CloudCanvas::drawWithWindow);
  connect(m_drawing.get(), &DrawingThread::pictureDrawn, this, [this] {
    if (m_drawing) takeDrawn(m_drawing->drawn());
  });
  m_changed = true;
  placeOrder();
}

void CloudCanvas::drawWithWindow() {
  m_withWindow = true;
  m_drawing.reset();
  m_changed = true;
  placeOrder();
}

bool CloudCanvas::finishPicture(int milliseconds) {
  if (!isDrawing()) startDrawing();
  if (!placeOrder()) return false;
  if (m_withWindow) return true;
  if (!m_drawing->waitFor(m_ordered, milliseconds)) return false;
  takeDrawn(m_drawing->drawn());
  return true;
}

void CloudCanvas::takeDrawn(const DrawnPicture &drawn) {
  if (m_viewer) m_viewer->releaseVertices(drawn.uploaded, drawn.lacksVertices);
  if (drawn.serial <= m_shown.serial) return;
  const bool moved = drawn.view != m_shown.view;
  m_shown = drawn;
  if (m_viewer) m_viewer->countPicture();
  update();
  if (moved) Q_EMIT cameraChanged();
}

/// Runs in the scene graph's pass, while the GUI thread stands still.
QSGNode *CloudCanvas::updatePaintNode(QSGNode *last, UpdatePaintNodeData *) {
  auto *node = static_cast<CloudNode *>(last);
  std::optional<DrawingThread::Texture> texture;
  if (m_withWindow) {
    if (node == nullptr) node = new CloudNode;
    if (m_windowOrder.serial > node->drawnSerial()) {
      const DrawnPicture drawn = node->draw(*window(), m_windowOrder);
      QMetaObject::invokeMethod(
          this, [this, drawn] { takeDrawn(drawn); }, Qt::QueuedConnection);
    }
    texture = node->drawn();
  } else if (isDrawing()) {
    texture = m_drawing->take();
  } else if (!std::exchange(m_startQueued, true)) {
    QMetaObject::invokeMethod(this, &CloudCanvas::startDrawing, Qt::QueuedConnection);
  }
  if (!texture) {
    delete node;
    return nullptr;
  }
  if (node == nullptr) node = new CloudNode;
  node->show(*window(), *texture, boundingRect());
  return node;
}

void CloudCanvas::itemChange(ItemChange change, const ItemChangeData &data) {
  if (change == ItemSceneChange) {
    // The textures are the scene graph's too, and end with it.
    if (m_window) m_window->disconnect(this);
    m_drawing.reset();
    m_window = data.window;
    if (m_window) {
      connect(m_window, &QWindow::visibilityChanged, this, &CloudCanvas::orderPicture);
      const auto stop = [this] {
        if (m_drawing) m_drawing->stop();
      };
      connect(m_window, &QQuickWindow::sceneGraphInvalidated, this, stop, Qt::DirectConnection);
      orderPicture();
    }
  } else if (change == ItemDevicePixelRatioHasChanged) {
    redraw();
  }
  QQuickItem::itemChange(change, data);
}

void CloudCanvas::geometryChanged(const QRectF &now, const QRectF &before) {
  QQuickItem::geometryChanged(now, before);
  redraw();
}

}  // namespace tarvo::skarnvisor::app
