#pragma once

#include <QColor>
#include <QElapsedTimer>
#include <QImage>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QUrl>
#include <atomic>
#include <functional>
#include <optional>

#include "app/session/capture_session.h"
#include "app/session/stack_fill.h"
#include "app/window/background_calls.h"
#include "app/window/buffer_calls.h"
#include "app/window/canvas_feed.h"
#include "app/window/canvas_scene.h"
#include "app/window/color_scale.h"
#include "app/window/jobs.h"
#include "app/window/named_files.h"
#include "app/window/preferences.h"
#include "app/window/table_rows.h"

namespace tarvo::skarnvisor::app {

/// What the window binds to: the opened source with its buffers, the picture made of them, and what the status line
/// says. The panels bind to the buffers' own properties. Lives on the GUI thread.
class Viewer : public QObject {
  Q_OBJECT
  Q_PROPERTY(QObject *timeline READ timeline CONSTANT)
  /// Of the open source, null while none is open.
  Q_PROPERTY(QObject *buffer READ buffer NOTIFY captureChanged)
  Q_PROPERTY(QObject *clip READ clip NOTIFY captureChanged)
  Q_PROPERTY(QObject *track READ track NOTIFY captureChanged)
  Q_PROPERTY(QString title READ title NOTIFY captureChanged)
  Q_PROPERTY(QString source READ source NOTIFY captureChanged)
  Q_PROPERTY(QString lidarType READ lidarType NOTIFY captureChanged)
  Q_PROPERTY(bool ready READ isReady NOTIFY captureChanged)
  Q_PROPERTY(bool live READ isLive NOTIFY captureChanged)
  Q_PROPERTY(bool opening READ isOpening NOTIFY openingChanged)
  Q_PROPERTY(QString openingText READ openingText NOTIFY openingChanged)
  /// Stays until it is cleared, or the next source opens.
  Q_PROPERTY(QString error READ error NOTIFY errorChanged)
  /// Tells of something done.
  Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)
  Q_PROPERTY(QString statusText READ statusText NOTIFY pictureChanged)
  Q_PROPERTY(QString countText READ countText NOTIFY pictureChanged)
  Q_PROPERTY(int pointsShown READ pointsShown NOTIFY pictureChanged)
  Q_PROPERTY(int pointsSelected READ pointsSelected NOTIFY pictureChanged)
  /// Pictures shown in the last second.
  Q_PROPERTY(double pictureRate READ pictureRate NOTIFY healthChanged)
  /// What went wrong on the way from the cable; empty if nothing did.
  Q_PROPERTY(QString lossText READ lossText NOTIFY healthChanged)
  /// The capture is still being looked through; the share of it that has been, 0 to 1, negative where nobody knows.
  Q_PROPERTY(bool indexing READ isIndexing NOTIFY healthChanged)
  Q_PROPERTY(double indexShare READ indexShare NOTIFY healthChanged)
  /// The sensors of a capture that holds several, and which of them is shown; empty for a single one.
  Q_PROPERTY(QStringList sensors READ sensors NOTIFY sensorsChanged)
  Q_PROPERTY(int sensor READ sensor NOTIFY sensorsChanged)
  /// The QML files that the open source names: what lies over its points, the body of its track, the mark of the
  /// cursor in it. Plain ones where the program has none of that name.
  Q_PROPERTY(QUrl renderFile READ renderFile NOTIFY captureChanged)
  Q_PROPERTY(QUrl trackBodyFile READ trackBodyFile NOTIFY captureChanged)
  Q_PROPERTY(QUrl trackPointFile READ trackPointFile NOTIFY captureChanged)
  Q_PROPERTY(bool recording READ isRecording NOTIFY healthChanged)
  Q_PROPERTY(QString recordingText READ recordingText NOTIFY healthChanged)
  Q_PROPERTY(tarvo::skarnvisor::app::ColorScale *colors READ colors CONSTANT)
  Q_PROPERTY(tarvo::skarnvisor::app::ColorScale *sideColors READ sideColors CONSTANT)
  Q_PROPERTY(QStringList colorTitles READ colorTitles NOTIFY colorTitlesChanged)
  Q_PROPERTY(QStringList rampNames READ rampNames CONSTANT)
  Q_PROPERTY(QStringList viewNames READ viewNames CONSTANT)
  Q_PROPERTY(double pointSize READ pointSize WRITE setPointSize NOTIFY lookChanged)
  Q_PROPERTY(bool gridVisible READ isGridVisible WRITE setGridVisible NOTIFY lookChanged)
  Q_PROPERTY(bool splitView READ isSplitView WRITE setSplitView NOTIFY lookChanged)
  Q_PROPERTY(bool playByFrame READ isPlayByFrame WRITE setPlayByFrame NOTIFY playByFrameChanged)
  /// Each frame that the pipeline runs is written to a file: it runs none but those that are played or gone to.
  Q_PROPERTY(bool savesFrames MEMBER m_savesFrames)
  /// Counts the camera pictures; 0 while there is none to show. Part of the picture's address.
  Q_PROPERTY(int overlaySerial READ overlaySerial NOTIFY overlayChanged)

 public:
  explicit Viewer(QObject *parent = nullptr);

  /// Loads the plug-in; a failure becomes the error line.
  void start(const QString &pluginPath);

  Q_INVOKABLE void open(const QString &source);
  Q_INVOKABLE void openUrl(const QUrl &url) { open(url.isLocalFile() ? url.toLocalFile() : url.toString()); }
  Q_INVOKABLE void close();
  Q_INVOKABLE void cancelOpening();
  /// The frame at the cursor runs through the pipeline once more, behind what was asked of the buffer before.
  Q_INVOKABLE void showAgain();
  /// Whether that file is the open source: nothing may be written in its place.
  Q_INVOKABLE bool isOpenSource(const QUrl &file) const;
  Q_INVOKABLE void clearError() { setError({}); }
  /// For something the user asked for: the next thing that is done takes the message away.
  Q_INVOKABLE void fail(const QString &error);
  Q_INVOKABLE void tell(const QString &notice);
  /// Colours of the canvas, by the theme.
  Q_INVOKABLE void setCanvasColors(const QColor &background, const QColor &grid);
  /// Address of a QML file that a buffer names, empty for one that the program does not have.
  Q_INVOKABLE static QUrl panelFile(const QString &name);
  /// Ends the looking through of a capture; the frames found so far stay. What cannot be read in part is closed.
  Q_INVOKABLE void stopReading();
  /// Opens the capture again and shows the sensor of that place in `sensors`.
  Q_INVOKABLE void showSensor(int index);
  /// Tests and colours the points that are shown again; their picture follows.
  Q_INVOKABLE void refilter();
  /// Starts or ends a recording of a live source.
  Q_INVOKABLE void record(bool on);

  const CanvasScene &scene() const { return m_scene; }
  /// Copies of all vertices that are shown.
  VertexCloud cloud() const { return m_session.view().cloud(); }
  /// Looks in the background for the shown point under a place of a picture of that size, pixels, within `reach` of it.
  /// `found` is called on the GUI thread, unless the source closes before.
  void findPoint(const QMatrix4x4 &viewProjection, QSizeF size, QPointF at, double reach,
                 std::function<void(std::optional<VertexPoint>)> found);
  /// The graphics card has the vertices up to this serial; `lacks`: it has lost others.
  void releaseVertices(std::uint64_t serial, bool lacks);
  Preferences &preferences() { return m_preferences; }
  BufferCalls &bufferCalls() { return m_bufferCalls; }
  Jobs &jobs() { return m_jobs; }
  TableRows &tableRows() { return m_tableRows; }
  QImage overlay() const { return m_overlay; }

  QObject *timeline() { return &m_session.timeline(); }
  QObject *buffer() const { return m_session.view().buffer(); }
  QObject *clip() const { return m_session.pipeline() ? m_session.pipeline()->clipObject() : nullptr; }
  QObject *track() const { return m_session.pipeline() ? m_session.pipeline()->trackObject() : nullptr; }
  QString title() const;
  QString source() const { return m_session.pipeline() ? m_session.pipeline()->title() : QString(); }
  QString lidarType() const { return m_session.lidarType(); }
  bool isReady() const { return m_session.pipeline() != nullptr; }
  /// The pipeline works on a frame.
  bool isBusy() const { return m_session.pipeline() && m_session.pipeline()->isBusy(); }
  bool isLive() const { return m_session.pipeline() && m_session.pipeline()->isLive(); }
  bool isOpening() const { return m_session.host().isOpening(); }
  QString openingText() const;
  QString error() const { return m_error; }
  QString notice() const { return m_notice; }
  QString statusText() const { return m_statusText; }
  QString countText() const;
  int pointsShown() const { return static_cast<int>(m_picture.counts().shown); }
  int pointsSelected() const { return static_cast<int>(m_picture.counts().highlighted); }
  double pictureRate() const { return m_pictureRate; }
  /// A picture was drawn.
  void countPicture() { ++m_picturesSinceRate; }
  QString lossText() const { return m_lossText; }
  bool isIndexing() const;
  double indexShare() const { return m_indexShare; }
  QStringList sensors() const;
  int sensor() const;
  QUrl renderFile() const { return m_files.render; }
  QUrl trackBodyFile() const { return m_files.trackBody; }
  QUrl trackPointFile() const { return m_files.trackPoint; }
  bool isRecording() const { return m_recording.running; }
  QString recordingText() const;
  ColorScale *colors() { return &m_colors; }
  ColorScale *sideColors() { return &m_sideColors; }
  QStringList colorTitles() const { return m_session.view().colorTitles(); }
  QStringList rampNames() const { return ColorRamp::names(); }
  QStringList viewNames() const { return OrbitCamera::viewNames(); }
  double pointSize() const { return static_cast<double>(m_scene.pointPixels); }
  void setPointSize(double pixels);
  bool isGridVisible() const { return m_scene.grid; }
  void setGridVisible(bool visible);
  bool isSplitView() const { return m_scene.splitView; }
  void setSplitView(bool split);
  bool isPlayByFrame() const { return m_playByFrame; }
  void setPlayByFrame(bool byFrame);
  int overlaySerial() const { return m_overlay.isNull() ? 0 : m_overlaySerial; }

 public Q_SLOTS:
  /// Measures the reach of the shown points anew.
  void measureScene();

 private Q_SLOTS:
  void readOverlay();
  void readPlacement();

 Q_SIGNALS:
  /// Another capture or none; the panels begin anew.
  void captureChanged();
  void playByFrameChanged();
  void openingChanged();
  void errorChanged();
  void noticeChanged();
  /// The vertices are new.
  void pictureChanged();
  /// The first picture since the start is there: the eye should be placed.
  void sceneFound();
  void colorTitlesChanged();
  void lookChanged();
  void healthChanged();
  void sensorsChanged();
  void overlayChanged();

 private:
  void takeUpCapture();
  void readFrame();
  void readPicture();
  void read(bool all);
  void takeRead(CanvasFeed::Picture picture);
  void takePicture();
  void takeOverlay(const QImage &picture);
  /// Frees what nobody else holds of these arrays in the background: for those of a deep stack that takes a while.
  void letGo(std::vector<CanvasVertices> canvases);
  /// `work` reads the buffer in the background and returns what is then done on the GUI thread, unless the source has
  /// closed.
  void runBeside(std::function<std::function<void()>()> work);
  void drop();
  void setError(const QString &error);
  void noteFrame(const QString &fault);
  void tellWhatElseToOpen(const QString &fault);
  void lookAtHealth();
  void noteSensors(const std::vector<lidar::CaptureSensor> &sensors);
  void openRequested();

  Preferences m_preferences;
  CanvasFeed m_feed;  ///< used by the calls in the background alone
  CanvasFeed::Picture m_picture;
  CanvasScene m_scene;
  bool m_reading = false;  ///< one reading at a time; what changes meanwhile makes another due
  bool m_frameDue = false;
  bool m_allDue = false;
  std::atomic<int> m_sourcesClosed{0};
  std::atomic<bool> m_refilterWaits{false};
  std::atomic<bool> m_overlayWaits{false};
  BufferCalls m_bufferCalls;
  ColorScale m_colors;
  ColorScale m_sideColors;
  QString m_requested;  ///< as the user named it
  QString m_openPath;   ///< of the open source
  QString m_error;
  QString m_frameError;    ///< of the frame at the cursor
  QString m_passingError;  ///< of what was asked for last
  QString m_notice;
  QString m_statusText;
  QString m_lossText;
  lidar::RecordingReport m_recording;
  std::vector<lidar::CaptureSensor> m_sensors;
  double m_indexShare = -1;
  NamedFiles m_files;
  QImage m_overlay;
  int m_overlaySerial = 0;
  bool m_playByFrame = true;
  bool m_savesFrames = false;
  bool m_cancelsOpening = false;
  bool m_measured = false;  ///< the extent belongs to the open capture
  bool m_found = false;     ///< the eye has been placed
  QTimer m_healthTimer;
  QElapsedTimer m_sinceRate;
  int m_picturesSinceRate = 0;
  double m_pictureRate = 0;
  /// These end first: closing the capture still reaches the fields above.
  BackgroundCalls m_background;  ///< all that reads or recolours whole vertex arrays
  Jobs m_jobs;
  TableRows m_tableRows;
  CaptureSession m_session;
  StackFill m_stackFill{m_session, [this] { return m_savesFrames || m_background.isBusy(); }};
};

}  // namespace tarvo::skarnvisor::app
