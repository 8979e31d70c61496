#include "app/window/overlay_picture.h"

#include <QVariant>

#include "app/render/vertex_bytes.h"
#include "app/window/viewer.h"

namespace tarvo::skarnvisor::app {

QImage overlayPicture(const QObject *buffer) {
  if (buffer == nullptr || !buffer->property("rgbOverlayVisible").toBool()) return {};
  const int columns = buffer->property("rgbOverlayCols").toInt();
  const int rows = buffer->property("rgbOverlayRows").toInt();
  const QByteArray vertices = buffer->property("rgbOverlayVertex").toByteArray();
  const qint64 needed = qint64{columns} * rows * static_cast<qint64>(vertexStride);
  if (columns < 1 || rows < 1 || vertices.size() < needed) return {};
  QImage picture(columns, rows, QImage::Format_ARGB32);
  const char *vertex = vertices.constData();
  for (int y = 0; y < rows; ++y) {
    auto *line = reinterpret_cast<QRgb *>(picture.scanLine(y));
    for (int x = 0; x < columns; ++x, vertex += vertexStride) {
      const std::uint32_t word = readVertex(vertex).word;
      line[x] = word == hiddenWord ? 0U : 0xff000000U | word;
    }
  }
  return picture;
}

QImage OverlayProvider::requestImage(const QString &, QSize *size, const QSize &) {
  const QImage picture = m_viewer.overlay();
  if (size != nullptr) *size = picture.size();
  return picture;
}

}  // namespace tarvo::skarnvisor::app
