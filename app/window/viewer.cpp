#include "app/window/viewer.h"

#include <QFileInfo>
#include <QLocale>
#include <cmath>

#include "app/render/attribute_scale.h"
#include "app/render/cloud_statistics.h"

namespace tarvo::skarnvisor::app {
namespace {

constexpr int legendSteps = 4;
constexpr int legendColorCount = 16;

}  // namespace

Viewer::Viewer(QObject *parent) : QObject(parent) {
  connect(&m_session, &CaptureSession::opened, this, &Viewer::takeUpCapture);
  connect(&m_session, &CaptureSession::failed, this, &Viewer::setError);
  connect(&m_session, &CaptureSession::frameFailed, this, &Viewer::setError);
  connect(&m_session, &CaptureSession::frameShown, this, &Viewer::readPicture);
  connect(&m_session, &CaptureSession::pictureChanged, this, &Viewer::readPicture);
  connect(&m_session, &CaptureSession::closing, this, &Viewer::drop);
  connect(&m_session.host(), &HostCore::openingChanged, this, &Viewer::openingChanged);
}

void Viewer::start(const QString &pluginPath) { setError(m_session.loadPlugin(pluginPath)); }

void Viewer::open(const QString &path) {
  setError({});
  m_session.open(path);
}

void Viewer::takeUpCapture() {
  setError({});
  m_measured = false;
  m_rangeMeasured = false;
  m_session.view().setPlayByFrame(m_playByFrame);
  if (QObject *buffer = m_session.view().buffer()) {
    connect(buffer, SIGNAL(colorModeTitlesChanged()), this, SIGNAL(colorsChanged()), Qt::QueuedConnection);
    connect(buffer, SIGNAL(colorModeChanged()), this, SIGNAL(colorsChanged()), Qt::QueuedConnection);
  }
  readPicture();
  Q_EMIT captureChanged();
  Q_EMIT colorsChanged();
}

void Viewer::drop() {
  m_scene.cloud = VertexCloud();
  ++m_scene.cloudSerial;
  m_countText.clear();
  m_statusText.clear();
  Q_EMIT pictureChanged();
  // The session forgets the capture after this signal.
  QMetaObject::invokeMethod(this, &Viewer::captureChanged, Qt::QueuedConnection);
}

void Viewer::readPicture() {
  RenderView &view = m_session.view();
  if (view.isEmpty()) return;
  m_scene.cloud = view.cloud();
  ++m_scene.cloudSerial;
  const WordKind words = view.wordKind(ColorHalf::Main);
  const PointCounts counts = countPoints(m_scene.cloud);
  if (counts.shown > 0 && !m_measured) {
    m_measured = true;
    m_scene.extent = sceneExtent(m_scene.cloud);
    ++m_scene.extentSerial;
    Q_EMIT sceneMeasured();
  }
  if (words != m_scene.words || (counts.shown > 0 && !m_rangeMeasured)) {
    m_rangeMeasured = counts.shown > 0;
    m_scene.words = words;
    m_scene.range = stretchedRange(m_scene.cloud, words);
    Q_EMIT colorsChanged();
  }
  const auto grouped = [](std::size_t number) {
    return QLocale(QLocale::English).toString(static_cast<qlonglong>(number));
  };
  m_countText = QStringLiteral("%1 points shown, %2 hidden").arg(grouped(counts.shown), grouped(counts.hidden));
  m_statusText = view.status().simplified();
  Q_EMIT pictureChanged();
}

QString Viewer::title() const {
  return m_session.pipeline() ? QFileInfo(m_session.pipeline()->title()).fileName() : QString();
}

int Viewer::colorMode() const {
  return static_cast<int>(colorTitles().indexOf(m_session.view().colorTitle(ColorHalf::Main)));
}

void Viewer::setColorMode(int mode) {
  if (mode < 0 || mode == colorMode()) return;
  m_rangeMeasured = false;
  m_session.view().setColor(ColorHalf::Main, colorTitles().value(mode));
  readPicture();
}

void Viewer::setRamp(const QString &name) {
  const auto ramp = ColorRamp::find(name);
  if (!ramp || name == m_scene.ramp.name()) return;
  m_scene.ramp = *ramp;
  Q_EMIT colorsChanged();
}

QString Viewer::legendTitle() const {
  const QString title = m_session.view().colorTitle(ColorHalf::Main);
  const QString unit = m_scene.words == WordKind::Velocity ? QStringLiteral("m/s") : attributeScale(title).unit;
  return unit.isEmpty() ? title : QStringLiteral("%1, %2").arg(title, unit);
}

QStringList Viewer::legendTicks() const {
  const bool velocity = m_scene.words == WordKind::Velocity;
  const AttributeScale scale =
      velocity ? AttributeScale{} : attributeScale(m_session.view().colorTitle(ColorHalf::Main));
  const double low = velocity ? -velocityLimit : scale.own(m_scene.range.low);
  const double high = velocity ? velocityLimit : scale.own(m_scene.range.high);
  QStringList ticks;
  for (int i = 0; i <= legendSteps; ++i) {
    const double value = low + (high - low) * i / legendSteps;
    ticks << QString::number(value, 'f', std::abs(high - low) >= 10 ? 0 : 2);
  }
  return ticks;
}

QVariantList Viewer::legendColors() const {
  const ColorRamp ramp = m_scene.words == WordKind::Velocity ? ColorRamp::diverging() : m_scene.ramp;
  QVariantList colors;
  for (int i = 0; i < legendColorCount; ++i) colors << QColor(ramp.at(static_cast<double>(i) / (legendColorCount - 1)));
  return colors;
}

void Viewer::setPointSize(double pixels) {
  m_scene.pointPixels = static_cast<float>(pixels);
  Q_EMIT lookChanged();
}

void Viewer::setGridVisible(bool visible) {
  m_scene.grid = visible;
  Q_EMIT lookChanged();
}

void Viewer::setPlayByFrame(bool byFrame) {
  m_playByFrame = byFrame;
  m_session.view().setPlayByFrame(byFrame);
  Q_EMIT captureChanged();
}

void Viewer::setError(const QString &error) {
  if (error == m_error) return;
  m_error = error;
  Q_EMIT errorChanged();
}

}  // namespace tarvo::skarnvisor::app
