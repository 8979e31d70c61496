#include "default/point_files/default_pcd_file_loader.h"

#include <utility>

#include "contracts/host/log.h"
#include "default/point_files/default_pcd_frame_render_buffer.h"

SKARN_LOG_SOURCE("default/default_pcd_file_loader");

namespace tarvo::skarnvisor {

DefaultPcdFileLoader::DefaultPcdFileLoader(QObject *parent) : Functor(parent), m_clip(new DefaultPcdFileBuffer(this)) {}

DefaultPcdFileLoader::DefaultPcdFileLoader() : DefaultPcdFileLoader(nullptr) {}

DefaultPcdFileLoader::~DefaultPcdFileLoader() {
  // Whoever still holds the source keeps it; as our child it would be deleted twice.
  if (m_source) m_source->setParent(nullptr);
}

void DefaultPcdFileLoader::operator()() {
  if (!m_source) return;
  if (!m_scan) {
    SKARN_LOG(LogLevel::Information, "fileloder %s", qPrintable(m_source->path));
    m_scan = std::make_unique<PointFileScan>(m_source->path);
  }
  PcdFrameList frames = m_scan->next(PointFileScan::Clock::now() + m_stretch);
  const bool finished = m_scan->isFinished();
  const bool foundAny = m_scan->accepted() > 0;
  if (finished || !foundAny) m_scan.reset();
  if (!foundAny) return;
  m_clip->append(std::move(frames));
  if (finished) m_source->clipLoading = false;
  Q_EMIT m_clip->changed();
  if (!finished) run();
}

void DefaultPcdFileLoader::takeOver(QSharedPointer<FileSource> &source) {
  m_source.swap(source);
  if (m_source) m_source->setParent(this);
  Q_EMIT onPcapSourceSet();
}

void DefaultPcdFileLoader::setRenderBuffer(DefaultPcdFrameRenderBuffer *renderBuffer) { m_renderBuffer = renderBuffer; }

DefaultPcdFrameRenderBuffer *DefaultPcdFileLoader::renderBuffer() const { return m_renderBuffer; }

}  // namespace tarvo::skarnvisor
