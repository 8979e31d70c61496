#include "default/point_files/default_pcd_file_buffer.h"

#include <algorithm>

#include "default/point_files/default_pcd_file_loader.h"
#include "default/point_files/default_pcd_frame_render_buffer.h"

namespace tarvo::skarnvisor {

namespace {

/// How long the last frame of a clip stays: 0.11 s.
constexpr Ticks lastFrameSpan{1'100'000};

}  // namespace

DefaultPcdBuffer::DefaultPcdBuffer(QObject *parent) : ClipBuffer(parent) {}

DefaultPcdBuffer::~DefaultPcdBuffer() = default;

void DefaultPcdBuffer::setLocation(QString) {}

DefaultPcdFileBuffer::DefaultPcdFileBuffer(DefaultPcdFileLoader *loader) : DefaultPcdBuffer(loader), m_loader(loader) {}

DefaultPcdFileBuffer::~DefaultPcdFileBuffer() = default;

bool DefaultPcdFileBuffer::pcapActive() const {
  const FileSource *source = m_loader->source();
  return source && source->clipLoading;
}

bool DefaultPcdFileBuffer::pcapStopped() const {
  const FileSource *source = m_loader->source();
  return source && source->clipStopped;
}

void DefaultPcdFileBuffer::setPcapActive(bool active) {
  FileSource *source = m_loader->source();
  if (!source) return;
  source->clipLoading = active;
  source->clipActive = active;
}

int DefaultPcdFileBuffer::search(const PcdFrameList &frames, std::int64_t ticks) const {
  if (frames.empty() || ticks < begin().time_since_epoch().count() || ticks > end().time_since_epoch().count())
    return -1;
  const auto next = std::upper_bound(frames.begin(), frames.end(), ticks,
                                     [](std::int64_t time, const PcdFrameEntry &entry) { return time < entry.ticks; });
  return static_cast<int>(next - frames.begin()) - 1;
}

int DefaultPcdFileBuffer::frameIndexAt(std::int64_t ticks) const {
  const auto frames = m_frames.take();
  const int index = search(*frames, ticks);
  const bool isLastOfMany = index > 0 && index + 1 == static_cast<int>(frames->size());
  return isLastOfMany && pcapActive() ? index - 1 : index;
}

QString DefaultPcdFileBuffer::fileAt(std::int64_t ticks) {
  const auto frames = m_frames.take();
  const int index = search(*frames, ticks);
  if (index < 0) return {};
  m_frameID = index;
  Q_EMIT frameIDChanged();
  return (*frames)[static_cast<std::size_t>(index)].path;
}

QStringList DefaultPcdFileBuffer::fileList() const {
  QStringList paths;
  for (const PcdFrameEntry &entry : *m_frames.take()) paths.append(entry.path);
  return paths;
}

int DefaultPcdFileBuffer::findFrameID(double seconds) const {
  return std::max(0, frameIndexAt(ticksFromSeconds(seconds).count()));
}

double DefaultPcdFileBuffer::getFrameStartSeconds(int index) const {
  const auto frames = m_frames.take();
  if (frames->empty()) return 0.0;
  const bool inside = index >= 0 && static_cast<std::size_t>(index) < frames->size();
  return secondsFromTicks(Ticks(inside ? (*frames)[static_cast<std::size_t>(index)].ticks : frames->back().ticks));
}

bool DefaultPcdFileBuffer::cutPcap(QUrl, QString, QString) { return true; }

bool DefaultPcdFileBuffer::cutPcap(QUrl, int, int) { return true; }

void DefaultPcdFileBuffer::setDetailExport(bool on, int type, QUrl url) {
  if (DefaultPcdFrameRenderBuffer *renderBuffer = m_loader->renderBuffer())
    renderBuffer->setDetailExport(on, type, url);
}

void DefaultPcdFileBuffer::append(PcdFrameList frames) {
  if (frames.empty()) return;
  const auto earlier = [](const PcdFrameEntry &a, const PcdFrameEntry &b) { return a.ticks < b.ticks; };
  PcdFrameList all = m_frames.copy();
  const auto known = static_cast<std::ptrdiff_t>(all.size());
  all.insert(all.end(), frames.begin(), frames.end());
  std::stable_sort(all.begin() + known, all.end(), earlier);
  std::inplace_merge(all.begin(), all.begin() + known, all.end(), earlier);
  setBegin(TimePoint(Ticks(all.front().ticks)));
  const std::int64_t lastBegin = std::min(all.back().ticks, Ticks::max().count() - lastFrameSpan.count());
  setEnd(TimePoint(Ticks(lastBegin) + lastFrameSpan));
  m_frames.set(std::move(all));
}

}  // namespace tarvo::skarnvisor
