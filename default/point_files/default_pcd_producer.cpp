#include "default/point_files/default_pcd_producer.h"

#include "contracts/host/log.h"
#include "default/point_files/default_pcd_file_buffer.h"
#include "default/point_files/default_pcd_parser.h"

SKARN_LOG_SOURCE("default/default_pcd_producer");

namespace tarvo::skarnvisor {

DefaultPcdProducer::DefaultPcdProducer(QObject *parent)
    : Functor(parent), m_timeCursorToggle(new TimeCursorToggle(this)), m_trackBuffer(new DefaultPcdTrackBuffer(this)) {}

DefaultPcdProducer::DefaultPcdProducer() : DefaultPcdProducer(nullptr) {}

DefaultPcdProducer::~DefaultPcdProducer() = default;

DefaultPcdBuffer *DefaultPcdProducer::clip() const {
  const QList<ClipBuffer *> clips = m_trackBuffer->clips();
  return clips.size() == 1 ? qobject_cast<DefaultPcdBuffer *>(clips.constFirst()) : nullptr;
}

void DefaultPcdProducer::operator()() {
  DefaultPcdParser *parser = nullptr;
  const QList<Functor *> stages = successors();
  for (Functor *stage : stages)
    if (auto *found = qobject_cast<DefaultPcdParser *>(stage)) parser = found;
  if (!parser) return;

  DefaultPcdFrameRenderBuffer &renderBuffer = *parser->defaultPcdFrameBuffer();
  DefaultPcdBuffer *const frames = clip();
  const TimePoint cursor = m_timeCursorToggle->timeCursor();
  const std::int64_t ticks = cursor.time_since_epoch().count();
  if (!renderBuffer.playByFrame()) {
    renderBuffer.setCurrentFile(frames ? frames->fileAt(ticks) : QString());
    m_lastCursor = ticks;
    return;
  }
  const int index = frames ? frames->frameIndexAt(ticks) : -1;
  const QString file = frames ? frames->fileAt(ticks) : QString();
  SKARN_LOG(LogLevel::Information, "%s", qPrintable(timeText(cursor)));
  SKARN_LOG(LogLevel::Information, "frameID: %d %s", index, qPrintable(file));
  renderBuffer.setCurrentFile(file);
}

}  // namespace tarvo::skarnvisor
