#include "app/cli/picture_maker.h"

#include <QDir>
#include <QFileInfo>
#include <QImageWriter>

#include "app/cli/report.h"
#include "app/render/cloud_statistics.h"
#include "app/session/capture_session.h"

namespace tarvo::skarnvisor::app {
namespace {

ColorHalf halfOf(const LookOptions &look) { return look.splitHalf ? ColorHalf::SplitWindow : ColorHalf::Main; }

}  // namespace

PictureMaker::PictureMaker(CaptureSession &session, LookOptions look) : m_session(session), m_look(std::move(look)) {}

QString PictureMaker::selectColor() {
  RenderView &view = m_session.view();
  if (!view.setColor(halfOf(m_look), m_look.color))
    return QStringLiteral("there is no colour \"%1\"; this source has %2")
        .arg(m_look.color, view.colorTitles().join(", "));
  return m_session.waitForPicture() ? QString() : QStringLiteral("the colour could not be changed");
}

QString PictureMaker::write(const QString &file) {
  const RenderView &view = m_session.view();
  const VertexCloud cloud = view.cloud();
  PictureStyle style;
  style.words = view.wordKind(halfOf(m_look));
  if (!m_stand) {
    m_stand.emplace(Stand{{}, sceneExtent(cloud, view.placement()), stretchedRange(cloud, style.words)});
    m_stand->camera.setView(m_look.view, m_stand->scene);
  }
  style.ramp = m_look.ramp;
  style.range = m_stand->range;
  style.colorTitle = view.colorTitle(halfOf(m_look));
  style.pointPixels = static_cast<float>(m_look.pointPixels);
  style.placement = view.placement();
  style.grid = m_look.grid;
  style.caption = QStringLiteral("%1   %2\nframe %3 of %4   %5 points")
                      .arg(m_session.lidarType(), QFileInfo(m_session.pipeline()->title()).fileName())
                      .arg(m_session.timeline().frame())
                      .arg(m_session.frameCount())
                      .arg(grouped(countPoints(cloud).shown));
  const QImage picture = drawCloud(cloud, m_stand->camera, m_stand->scene, style, m_look.size);
  QImageWriter writer(file);
  return writer.write(picture) ? QString()
                               : QStringLiteral("%1 could not be written: %2").arg(file, writer.errorString());
}

}  // namespace tarvo::skarnvisor::app
