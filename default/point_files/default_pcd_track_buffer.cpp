#include "default/point_files/default_pcd_track_buffer.h"

namespace tarvo::skarnvisor {

DefaultPcdTrackBuffer::DefaultPcdTrackBuffer(QObject *parent) : TrackBuffer(parent) {}

DefaultPcdTrackBuffer::~DefaultPcdTrackBuffer() = default;

QString DefaultPcdTrackBuffer::trackPointSource() const { return QStringLiteral("DefaultTrackPointXYZI.qml"); }

void DefaultPcdTrackBuffer::setPort(int port) {
  if (port == m_port) return;
  m_port = port;
  Q_EMIT metaChanged();
}

void DefaultPcdTrackBuffer::setLidarName(const QString &name) {
  if (name == m_lidarName) return;
  m_lidarName = name;
  Q_EMIT metaChanged();
}

}  // namespace tarvo::skarnvisor
