#pragma once

#include <QImage>
#include <QQuickImageProvider>

namespace tarvo::skarnvisor::app {

class Viewer;

/// The camera picture that a render buffer holds beside its points: a pixel a vertex, row by row, hidden ones
/// transparent. Null where there is none, or not as many vertices as pixels.
QImage overlayPicture(const QObject *buffer);

/// Serves the viewer's camera picture to QML as "image://overlay/SERIAL". GUI thread.
class OverlayProvider : public QQuickImageProvider {
 public:
  explicit OverlayProvider(const Viewer &viewer) : QQuickImageProvider(QQuickImageProvider::Image), m_viewer(viewer) {}

  QImage requestImage(const QString &id, QSize *size, const QSize &requested) override;

 private:
  const Viewer &m_viewer;
};

}  // namespace tarvo::skarnvisor::app
