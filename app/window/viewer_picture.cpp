// How the viewer comes to its picture: the reading of the buffer's arrays in the background, and what is made of them.
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
  m_background.run([this, all, view = m_session.view(), source = m_sourcesClosed] {
    if (all)
      m_feed.readAll(view);
    else
      m_feed.readFrame(view);
    const auto take = [this, source, picture = m_feed.handOver()] { takeRead(source, picture); };
    QMetaObject::invokeMethod(this, take, Qt::QueuedConnection);
  });
}

void Viewer::takeRead(int source, CanvasFeed::Picture picture) {
  if (source != m_sourcesClosed) return;
  m_reading = false;
  m_picture.follow(std::move(picture));
  takePicture();
  if (m_allDue || m_frameDue) read(m_allDue);
}

void Viewer::refilter() {
  if (buffer() == nullptr || m_refilterWaits.exchange(true)) return;
  m_background.run([this, buffer = buffer()] {
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

void Viewer::releaseVertices(std::uint64_t serial, bool lacks) {
  m_picture.release(serial);
  m_scene.canvases = m_picture.canvases;
  if (lacks) readPicture();
}

std::optional<VertexPoint> Viewer::pointUnder(const QMatrix4x4 &viewProjection, QSizeF size, QPointF at,
                                              double reach) const {
  const RenderView &view = m_session.view();
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
  const QImage picture = overlayPicture(buffer());
  if (picture.isNull() && m_overlay.isNull()) return;
  m_overlay = picture;
  ++m_overlaySerial;
  Q_EMIT overlayChanged();
}

}  // namespace tarvo::skarnvisor::app
