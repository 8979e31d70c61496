#include "app/session/render_view.h"

#include <QAbstractItemModel>
#include <QVariant>

namespace tarvo::skarnvisor::app {
namespace {

const char *modeProperty(ColorHalf half) { return half == ColorHalf::Main ? "colorMode" : "colorModeSplitWindow"; }

}  // namespace

QVariant RenderView::value(const char *property) const { return m_buffer ? m_buffer->property(property) : QVariant(); }

VertexCloud RenderView::cloud() const {
  if (!m_buffer) return {};
  const int stacked = value("stackFrameNum").toInt();
  if (stacked <= 1) return VertexCloud({value("vertex").toByteArray()});
  int newest = 0;
  QMetaObject::invokeMethod(m_buffer, "getIndexUseNow", Qt::DirectConnection, Q_RETURN_ARG(int, newest));
  QVector<QByteArray> canvases;
  for (int i = 1; i <= stacked; ++i) {
    QByteArray bytes;
    QMetaObject::invokeMethod(m_buffer, "vertexGet", Qt::DirectConnection, Q_RETURN_ARG(QByteArray, bytes),
                              Q_ARG(int, (newest + i) % stacked));
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
