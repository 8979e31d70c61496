#pragma once

#include <QSharedPointer>
#include <cstdint>

#include "contracts/host/functor.h"
#include "contracts/host/toggle.h"
#include "default/models/settings_value.h"
#include "default/point_files/default_pcd_track_buffer.h"

namespace tarvo::skarnvisor {

class DefaultPcdBuffer;

/// The first stage of the point-cloud file pipeline: picks the file at the cursor.
class DefaultPcdProducer : public Functor {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::TimeCursorToggle *timeCursorToggle READ timeCursorToggle CONSTANT)
  Q_PROPERTY(tarvo::skarnvisor::DefaultPcdTrackBuffer *defaultPcdTrackBuffer READ defaultPcdTrackBuffer CONSTANT)

 public:
  Q_INVOKABLE explicit DefaultPcdProducer(QObject *parent);
  Q_INVOKABLE DefaultPcdProducer();
  ~DefaultPcdProducer() override;

  /// Stores the file that belongs to the cursor as the current one of the parser behind this stage. Functor thread.
  void operator()() override;
  [[nodiscard]] virtual TimeCursorToggle *timeCursorToggle() const { return m_timeCursorToggle.data(); }
  [[nodiscard]] virtual DefaultPcdTrackBuffer *defaultPcdTrackBuffer() const { return m_trackBuffer.data(); }

 private:
  /// The track's clip; null unless it has exactly one.
  [[nodiscard]] DefaultPcdBuffer *clip() const;

  Relaxed<std::int64_t> m_lastCursor{0};  ///< of the last run by time, 100 ns
  QSharedPointer<TimeCursorToggle> m_timeCursorToggle;
  QSharedPointer<DefaultPcdTrackBuffer> m_trackBuffer;
};

}  // namespace tarvo::skarnvisor
