#include "app/session/render_view.h"

#include <QAbstractItemModel>
#include <QVariant>
#include <algorithm>

namespace tarvo::skarnvisor::app {
namespace {

const char *modeProperty(ColorHalf half) { return half == ColorHalf::Main ? "colorMode" : "colorModeSplitWindow"; }

}  // namespace

QVariant RenderView::value(const char *property) const { return m_buffer ? m_buffer->property(property) : QVariant(); }

QMatrix4x4 RenderView::placement() const {
  QMatrix4x4 matrix;
  if (!value("coordinateTransformEnabled").toBool()) return matrix;
  matrix.translate(value("coordinateTransformX").toFloat(), value("coordinateTransformY").toFloat(),
                   value("coordinateTransformZ").toFloat());
  matrix.rotate(value("coordinateTransformYaw").toFloat(), 0, 0, 1);
  matrix.rotate(value("coordinateTransformPitch").toFloat(), 0, 1, 0);
  matrix.rotate(value("coordinateTransformRoll").toFloat(), 1, 0, 0);
  return matrix;
}

int RenderView::canvasCount() const { return m_buffer ? std::max(1, value("stackFrameNum").toInt()) : 0; }

int RenderView::writtenCanvas() const {
  int index = 0;
  if (m_buffer && m_buffer->metaObject()->indexOfMethod("getIndexUseNow()") >= 0)
    QMetaObject::invokeMethod(m_buffer, "getIndexUseNow", Qt::DirectConnection, Q_RETURN_ARG(int, index));
  return index;
}

int RenderView::canvasPoints(int index) const {
  if (!m_buffer) return 0;
  if (m_buffer->metaObject()->indexOfMethod("primitiveCountGet(int)") < 0) return value("primitiveCount").toInt();
  int points = 0;
  QMetaObject::invokeMethod(m_buffer, "primitiveCountGet", Qt::DirectConnection, Q_RETURN_ARG(int, points),
                            Q_ARG(int, index));
  return points;
}

QByteArray RenderView::canvas(int index) const {
  if (!m_buffer) return {};
  QByteArray bytes;
  // Buffers that know no stack have one array.
  const bool stacked = m_buffer->metaObject()->indexOfMethod("vertexGet(int)") >= 0;
  if (!stacked) return value("vertex").toByteArray();
  QMetaObject::invokeMethod(m_buffer, "vertexGet", Qt::DirectConnection, Q_RETURN_ARG(QByteArray, bytes),
                            Q_ARG(int, index));
  return bytes;
}

VertexCloud RenderView::cloud() const {
  QVector<QByteArray> canvases;
  const int count = canvasCount();
  const int newest = writtenCanvas();
  for (int i = 1; i <= count; ++i) {
    const QByteArray bytes = canvas((newest + i) % count);
    if (!bytes.isEmpty()) canvases << bytes;
  }
  return VertexCloud(canvases);
}

VertexCloud RenderView::newestCloud() const { return VertexCloud({value("vertex").toByteArray()}); }

QStringList RenderView::colorTitles() const { return value("colorModeTitles").toStringList(); }

QString RenderView::colorTitle(ColorHalf half) const { return colorTitles().value(value(modeProperty(half)).toInt()); }

bool RenderView::setColor(ColorHalf half, const QString &title) {
  const QStringList titles = colorTitles();
  for (int mode = 0; mode < titles.size(); ++mode) {
    if (titles[mode].compare(title, Qt::CaseInsensitive) == 0) return m_buffer->setProperty(modeProperty(half), mode);
  }
  return false;
}

WordKind RenderView::wordKind(ColorHalf half) const {
  if (!m_buffer) return WordKind::LowHalf;
  if (value("useRgbMode").toInt() != 0) return WordKind::Rgb;
  if (half == ColorHalf::SplitWindow) return WordKind::HighHalf;
  int shader = 0;
  QMetaObject::invokeMethod(m_buffer, "glslType", Qt::DirectConnection, Q_RETURN_ARG(int, shader));
  // The velocity shader serves these modes only; with any other attribute the words are as everywhere.
  static const QStringList velocityTitles{"VelocityIntensity", "OptVelocityIntensity", "Velocity"};
  return shader == 1 && velocityTitles.contains(colorTitle(half)) ? WordKind::Velocity : WordKind::LowHalf;
}

int RenderView::channelCount() const {
  const auto *model = qobject_cast<QAbstractItemModel *>(value("channelModel").value<QObject *>());
  return model != nullptr ? model->rowCount() : 0;
}

void RenderView::setPlayByFrame(bool byFrame) {
  if (m_buffer) m_buffer->setProperty("playByFrame", byFrame);
}

QString RenderView::status() const { return value("status").toString(); }

}  // namespace tarvo::skarnvisor::app
