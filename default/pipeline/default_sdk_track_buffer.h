#pragma once

#include <QString>
#include <QUrl>
#include <atomic>
#include <chrono>
#include <functional>

#include "contracts/host/track_buffer.h"
#include "contracts/runtime/sv_sdk_runtime.h"

namespace tarvo::skarnvisor {

class DefaultSDKFrameRenderBuffer;
class DefaultSDKNetBuffer;

/// The track of a lidar: its name and port, and the producer's position in the capture. Through it the producer has
/// frames decoded; those operations run on the producer's thread.
class DefaultSDKTrackBuffer : public TrackBuffer {
  Q_OBJECT
  Q_PROPERTY(int port READ port WRITE setPort NOTIFY metaChanged)
  Q_PROPERTY(QString lidarName READ lidarName WRITE setLidarName NOTIFY metaChanged)

 public:
  explicit DefaultSDKTrackBuffer(QObject *parent = nullptr);
  ~DefaultSDKTrackBuffer() override;

  [[nodiscard]] QString trackPointSource() const override;
  int parallelIspDisplayedSeq(int *frameTotal, double *beginSeconds, double *endSeconds) override;

  /// Forwards to the render buffer; `type` 1 exports tables, above that points, into the folder `url`. Any one thread.
  Q_INVOKABLE void setDetailExport(bool on, int type = 0, QUrl url = QUrl());

  [[nodiscard]] int port() const { return m_port; }
  void setPort(int port);
  [[nodiscard]] QString lidarName() const { return m_lidarName; }
  void setLidarName(const QString &name);

  /// Neither is owned; both set while the pipeline is wired, before the first run.
  void setRuntime(lidar::SvSdkRuntime *runtime) { m_runtime = runtime; }
  void setRenderBuffer(DefaultSDKFrameRenderBuffer *renderBuffer) { m_renderBuffer = renderBuffer; }

  /// Frame under a time; negative for none. The clip shows it, unless image-signal processing decides what is shown.
  int findFrameID(TimePoint time);
  /// Has a time window, or `count` frames from `first`, decoded and waits until they are; at most about 5 s. What the
  /// runtime can't give is left to it. Sets the render buffer's skip word when the wait runs out.
  void iterate(TimePoint begin, TimePoint end);
  void iterate(int first, int count);

  /// The track's clip; null unless there is exactly one.
  [[nodiscard]] DefaultSDKNetBuffer *onlyClip() const;

  /// The producer's position: the frame it took last, or in the stack the first that it has not taken; -1 for none.
  [[nodiscard]] int lastFrameId() const { return m_lastFrameId; }
  void setLastFrameId(int frame) { m_lastFrameId = frame; }

  /// Replaces how the wait for a frame passes its time; takes the length of one pause.
  void setPause(std::function<void(std::chrono::milliseconds)> pause) { m_pause = std::move(pause); }

 Q_SIGNALS:
  void metaChanged();

 private:
  void decode(const std::function<bool()> &start);
  void awaitFrame();

  int m_lastFrameId = -1;
  lidar::SvSdkRuntime *m_runtime = nullptr;
  quint16 m_port = 0;
  QString m_lidarName = QStringLiteral("SDK");
  DefaultSDKFrameRenderBuffer *m_renderBuffer = nullptr;
  std::function<void(std::chrono::milliseconds)> m_pause;
};

}  // namespace tarvo::skarnvisor
