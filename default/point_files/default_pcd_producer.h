#pragma once

#include <QSharedPointer>

#include "contracts/host/functor.h"
#include "contracts/host/toggle.h"
#include "default/point_files/default_pcd_track_buffer.h"

namespace tarvo::skarnvisor {

/// The first stage of the point-cloud file pipeline: it holds the cursor and the track.
class DefaultPcdProducer : public Functor {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::TimeCursorToggle *timeCursorToggle READ timeCursorToggle CONSTANT)
  Q_PROPERTY(tarvo::skarnvisor::DefaultPcdTrackBuffer *defaultPcdTrackBuffer READ defaultPcdTrackBuffer CONSTANT)

 public:
  Q_INVOKABLE explicit DefaultPcdProducer(QObject *parent);
  Q_INVOKABLE DefaultPcdProducer();
  ~DefaultPcdProducer() override;

  [[nodiscard]] virtual TimeCursorToggle *timeCursorToggle() const { return m_timeCursorToggle.data(); }
  [[nodiscard]] virtual DefaultPcdTrackBuffer *defaultPcdTrackBuffer() const { return m_trackBuffer.data(); }

 private:
  QSharedPointer<TimeCursorToggle> m_timeCursorToggle;
  QSharedPointer<DefaultPcdTrackBuffer> m_trackBuffer;
};

}  // namespace tarvo::skarnvisor
