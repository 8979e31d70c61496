#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <functional>

#include "app/session/render_view.h"
#include "contracts/runtime/capture_report.h"
#include "host/core/host_core.h"

namespace tarvo::lidar {
class SvSdkRuntime;
}

namespace tarvo::skarnvisor::app {

/// One opened source and its picture: what the command line and the window share. Lives on the GUI thread. The
/// functions that wait serve the thread's events meanwhile.
class CaptureSession : public QObject {
  Q_OBJECT

 public:
  explicit CaptureSession(QObject *parent = nullptr);
  ~CaptureSession() override;

  /// The plug-in library that lies beside the program.
  static QString defaultPluginPath();

  /// Each returns an empty string or one sentence for the user.
  QString loadPlugin(const QString &path);
  QString openAndWait(const QString &path);
  /// Until the frame index covers the whole capture. `progress` is told the frames found so far.
  QString waitForIndex(const std::function<void(int)> &progress = {});
  /// Moves the cursor to a frame and waits for its picture.
  QString showFrame(int frame);
  /// The two halves of `showFrame`: the first moves the cursor, the second waits.
  QString seekFrame(int frame);
  QString waitForFrame(int frame);
  /// Waits until what the settings or the cursor asked for is on the canvas; false after `waitLimitMs`.
  bool waitForPicture();

  /// Why the last frame could not be made, empty if it was; the picture is then that of an earlier one.
  const QString &frameFault() const { return m_frameFault; }

  /// Closes what is open and opens `path`, a capture, a folder of point files or one such file; `opened` or `failed`
  /// follows.
  void open(const QString &path);

  /// UDP port of the sensor that captures opened from now on show; 0: the first found.
  void setSensorPort(int port) { m_sensorPort = port; }
  /// What the source met on its way; nothing while none is open.
  lidar::CaptureReport captureReport() const;
  /// The same for the status line, with the frames that playing left out; empty while all went well.
  QString healthText();
  /// Why the source's last cut or recording failed, one sentence; empty if it did not.
  QString runtimeFault() const;

  /// The runtime of what is open, null without one. Its operations may be called from any thread.
  lidar::SvSdkRuntime *runtime() const;

  HostCore &host() { return m_host; }
  const HostCore &host() const { return m_host; }
  Timeline &timeline() { return *m_host.timeline(); }
  /// Null while nothing is open.
  Pipeline *pipeline() const { return m_pipeline; }
  RenderView &view() { return m_view; }
  const RenderView &view() const { return m_view; }

  QString lidarType() const;
  int port() const;
  int frameCount() const;
  /// Frame that the pipeline showed last.
  int shownFrame() const;

  static constexpr int waitLimitMs = 30000;

 Q_SIGNALS:
  void opened();
  void failed(const QString &reason);
  /// The pipeline finished a frame; the view's cloud is new.
  void frameShown();
  /// Same frame or stack, other vertices or colours.
  void pictureChanged();
  /// The buffer is about to be emptied: nobody works on it any more when the slots have returned.
  void closing();
  /// The frame at the cursor could not be made; with an empty reason, it could again.
  void frameFailed(const QString &reason);
  /// The chain has run to its end, with a frame or without.
  void chainEnded();

 private:
  void openLive(const QString &address);
  void takeUp(Pipeline *pipeline);
  void noteFrameEnd(const QString &error);
  bool waitUntil(const std::function<bool()> &done, int limitMs);

  HostCore m_host;
  QPointer<Pipeline> m_pipeline;
  int m_sensorPort = 0;
  RenderView m_view;
  QString m_frameFault;
};

}  // namespace tarvo::skarnvisor::app
