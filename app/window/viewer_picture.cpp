// How the viewer comes to its picture: the reading of the buffer's arrays in the background, and what is made of them.
#include <algorithm>
#include <utility>

#include "app/render/picking.h"
#include "app/window/overlay_picture.h"
#include "app/window/viewer.h"

namespace tarvo::skarnvisor::app {
namespace {

/// The first line of a status text; the others are lists of their own. Without the source's title, which the window
/// shows anyway.
QString lineOf(const QString &status, const QString &title) {
  QStringList parts;
  for (const QString &part : status.section(QLatin1Char('\n'), 0, 0).split(QLatin1Char('\t'), Qt::SkipEmptyParts))
    if (const QString text = part.simplified(); !text.isEmpty() && text != title) parts << text;
  return parts.join(QStringLiteral("   "));
}

std::optional<VertexPoint> pointUnder(const RenderView &view, const QMatrix4x4 &viewProjection, QSizeF size, QPointF at,
                                      double reach) {
  std::optional<VertexPoint> nearest;
  float nearestDepth = 0;
  // One array after the other: a deep stack's vertices take much memory.
  for (int i = 0; i < view.canvasCount(); ++i) {
    const auto found = app::pointUnder(VertexCloud({view.canvas(i)}), viewProjection, size, at, reach);
    if (!found) continue;
    const float depth = viewProjection.map(QVector3D(found->x, found->y, found->z)).z();
    if (nearest && depth >= nearestDepth) continue;
    nearest = found;
    nearestDepth = depth;
  }
  return nearest;
}

}  // namespace

void Viewer::readFrame() { read(false); }

void Viewer::readPicture() { read(true); }

/// The bytes of a big frame take milliseconds to copy, and a pass over it may hold them for longer.
void Viewer::read(bool all) {
  if (m_session.view().isEmpty()) return;
  (all ? m_allDue : m_frameDue) = true;
  if (m_reading) return;
  m_reading = true;
  m_frameDue = false;
  all = std::exchange(m_allDue, false);
  runBeside([this, all, view = m_session.view()] {
    if (all)
      m_feed.readAll(view);
    else
      m_feed.readFrame(view);
    return [this, picture = m_feed.handOver()] { takeRead(picture); };
  });
}

void Viewer::runBeside(std::function<std::function<void()>()> work) {
  m_background.run([this, work = std::move(work), source = m_sourcesClosed.load()] {
    if (source != m_sourcesClosed) return;
    QMetaObject::invokeMethod(
        this,
        [this, source, take = work()] {
          if (source == m_sourcesClosed) take();
        },
        Qt::QueuedConnection);
  });
}

void Viewer::takeRead(CanvasFeed::Picture picture) {
  m_reading = false;
  auto old = std::move(m_scene.canvases);
  m_picture.follow(std::move(picture));
  takePicture();
  letGo(std::move(old));
  if (m_allDue || m_frameDue) read(m_allDue);
}

void Viewer::refilter() {
  if (buffer() == nullptr || m_refilterWaits.exchange(true)) return;
  m_bufferCalls.run([this, buffer = buffer()] {
    m_refilterWaits = false;
    // Each call serves its own kind of picture.
    for (const char *pass : {"filterSinglePoints", "filterMultiPoints"}) {
      if (buffer->metaObject()->indexOfMethod(QByteArray(pass) + "()") >= 0)
        QMetaObject::invokeMethod(buffer, pass, Qt::DirectConnection);
    }
    QMetaObject::invokeMethod(buffer, "renderStateChanged", Qt::DirectConnection);
  });
}

void Viewer::takePicture() {
  m_scene.canvases = m_picture.canvases;
  const bool shown = m_picture.counts().shown > 0;
  if (shown && !m_measured) {
    m_measured = true;
    measureScene();
    if (!m_found) {
      m_found = true;
      Q_EMIT sceneFound();
    }
  }
  m_colors.measure(m_picture.sample, shown);
  m_sideColors.measure(m_picture.sample, shown);
  m_statusText = lineOf(m_session.view().status(), title());
  Q_EMIT pictureChanged();
}

void Viewer::letGo(std::vector<CanvasVertices> canvases) {
  const auto holds = [](const CanvasVertices &canvas) { return !canvas.bytes.isEmpty(); };
  if (std::any_of(canvases.begin(), canvases.end(), holds)) m_background.run([canvases = std::move(canvases)] {});
}

void Viewer::releaseVertices(std::uint64_t serial, bool lacks) {
  auto old = std::move(m_scene.canvases);
  m_picture.release(serial);
  m_scene.canvases = m_picture.canvases;
  letGo(std::move(old));
  if (lacks) readPicture();
}

void Viewer::findPoint(const QMatrix4x4 &viewProjection, QSizeF size, QPointF at, double reach,
                       std::function<void(std::optional<VertexPoint>)> found) {
  runBeside([view = m_session.view(), viewProjection, size, at, reach, found = std::move(found)] {
    return [found, point = pointUnder(view, viewProjection, size, at, reach)] { found(point); };
  });
}

void Viewer::measureScene() {
  m_scene.extent = sceneExtent(m_picture.sample, m_scene.placement);
  ++m_scene.extentSerial;
  Q_EMIT lookChanged();
}

void Viewer::readPlacement() {
  const QMatrix4x4 placement = m_session.view().placement();
  if (placement == m_scene.placement) return;
  m_scene.placement = placement;
  Q_EMIT lookChanged();
}

void Viewer::readOverlay() {
  if (buffer() == nullptr || m_overlayWaits.exchange(true)) return;
  runBeside([this, buffer = buffer()] {
    m_overlayWaits = false;
    return [this, picture = overlayPicture(buffer)] { takeOverlay(picture); };
  });
}

void Viewer::takeOverlay(const QImage &picture) {
  if (picture.isNull() && m_overlay.isNull()) return;
  m_overlay = picture;
  ++m_overlaySerial;
  Q_EMIT overlayChanged();
}

}  // namespace tarvo::skarnvisor::app
