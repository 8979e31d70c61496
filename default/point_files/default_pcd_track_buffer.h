#pragma once

#include <QString>

#include "contracts/host/track_buffer.h"

namespace tarvo::skarnvisor {

/// The track of a folder of point-cloud files. GUI thread.
class DefaultPcdTrackBuffer : public TrackBuffer {
  Q_OBJECT
  Q_PROPERTY(int port READ port WRITE setPort NOTIFY metaChanged)
  Q_PROPERTY(QString lidarName READ lidarName WRITE setLidarName NOTIFY metaChanged)

 public:
  explicit DefaultPcdTrackBuffer(QObject *parent = nullptr);
  ~DefaultPcdTrackBuffer() override;

  [[nodiscard]] QString trackPointSource() const override;

  [[nodiscard]] int port() const { return m_port; }
  void setPort(int port);
  [[nodiscard]] QString lidarName() const { return m_lidarName; }
  void setLidarName(const QString &name);

 Q_SIGNALS:
  void metaChanged();

 private:
  int m_port = -1;
  QString m_lidarName = QStringLiteral("PLY");
};

}  // namespace tarvo::skarnvisor
