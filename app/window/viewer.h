#pragma once

#include <QColor>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QVariantList>

#include "app/session/capture_session.h"
#include "app/window/canvas_scene.h"

namespace tarvo::skarnvisor::app {

/// What the window binds to: the opened capture, its picture and the texts around it. Lives on the GUI thread.
class Viewer : public QObject {
  Q_OBJECT
  Q_PROPERTY(QObject *timeline READ timeline CONSTANT)
  Q_PROPERTY(QString title READ title NOTIFY captureChanged)
  Q_PROPERTY(QString lidarType READ lidarType NOTIFY captureChanged)
  Q_PROPERTY(bool ready READ isReady NOTIFY captureChanged)
  Q_PROPERTY(bool opening READ isOpening NOTIFY openingChanged)
  Q_PROPERTY(QString error READ error NOTIFY errorChanged)
  Q_PROPERTY(QString countText READ countText NOTIFY pictureChanged)
  Q_PROPERTY(QString statusText READ statusText NOTIFY pictureChanged)
  Q_PROPERTY(QStringList colorTitles READ colorTitles NOTIFY colorsChanged)
  Q_PROPERTY(int colorMode READ colorMode WRITE setColorMode NOTIFY colorsChanged)
  Q_PROPERTY(QStringList rampNames READ rampNames CONSTANT)
  Q_PROPERTY(QString ramp READ ramp WRITE setRamp NOTIFY colorsChanged)
  Q_PROPERTY(bool legendVisible READ isLegendVisible NOTIFY colorsChanged)
  Q_PROPERTY(QString legendTitle READ legendTitle NOTIFY colorsChanged)
  Q_PROPERTY(QStringList legendTicks READ legendTicks NOTIFY colorsChanged)
  Q_PROPERTY(QVariantList legendColors READ legendColors NOTIFY colorsChanged)
  Q_PROPERTY(double pointSize READ pointSize WRITE setPointSize NOTIFY lookChanged)
  Q_PROPERTY(bool gridVisible READ isGridVisible WRITE setGridVisible NOTIFY lookChanged)
  Q_PROPERTY(bool playByFrame READ isPlayByFrame WRITE setPlayByFrame NOTIFY captureChanged)
  Q_PROPERTY(QStringList viewNames READ viewNames CONSTANT)

 public:
  explicit Viewer(QObject *parent = nullptr);

  /// Loads the plug-in; a failure becomes the error line.
  void start(const QString &pluginPath);

  Q_INVOKABLE void open(const QString &path);
  Q_INVOKABLE void openUrl(const QUrl &url) { open(url.toLocalFile()); }
  Q_INVOKABLE void clearError() { setError({}); }

  const CanvasScene &scene() const { return m_scene; }

  QObject *timeline() { return &m_session.timeline(); }
  QString title() const;
  QString lidarType() const { return m_session.lidarType(); }
  bool isReady() const { return m_session.pipeline() != nullptr; }
  bool isOpening() const { return m_session.host().isOpening(); }
  QString error() const { return m_error; }
  QString countText() const { return m_countText; }
  QString statusText() const { return m_statusText; }
  QStringList colorTitles() const { return m_session.view().colorTitles(); }
  int colorMode() const;
  void setColorMode(int mode);
  QStringList rampNames() const { return ColorRamp::names(); }
  QString ramp() const { return m_scene.ramp.name(); }
  void setRamp(const QString &name);
  bool isLegendVisible() const { return isReady() && m_scene.words != WordKind::Rgb; }
  QString legendTitle() const;
  /// Values at equal steps from the low to the high end.
  QStringList legendTicks() const;
  QVariantList legendColors() const;
  double pointSize() const { return static_cast<double>(m_scene.pointPixels); }
  void setPointSize(double pixels);
  bool isGridVisible() const { return m_scene.grid; }
  void setGridVisible(bool visible);
  bool isPlayByFrame() const { return m_playByFrame; }
  void setPlayByFrame(bool byFrame);
  QStringList viewNames() const { return OrbitCamera::viewNames(); }

 Q_SIGNALS:
  void captureChanged();
  void openingChanged();
  void errorChanged();
  /// The vertices are new.
  void pictureChanged();
  /// The scene's reach is new: the eye should be placed again.
  void sceneMeasured();
  void colorsChanged();
  void lookChanged();

 private:
  void takeUpCapture();
  void readPicture();
  void drop();
  void setError(const QString &error);

  CanvasScene m_scene;
  QString m_error;
  QString m_countText;
  QString m_statusText;
  bool m_playByFrame = true;
  bool m_measured = false;       ///< the extent belongs to the open capture
  bool m_rangeMeasured = false;  ///< the range belongs to the colour mode
  /// Last, so that it ends first: closing the capture still reaches the fields above.
  CaptureSession m_session;
};

}  // namespace tarvo::skarnvisor::app
