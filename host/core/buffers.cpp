#include "contracts/host/buffer.h"
#include "contracts/host/clip_buffer.h"
#include "contracts/host/render_buffer.h"

namespace tarvo::skarnvisor {

Buffer::Buffer(QObject *parent) : QObject(parent) {}
Buffer::~Buffer() = default;

TimeIntervalBuffer::TimeIntervalBuffer(QObject *parent) : Buffer(parent) {}
TimeIntervalBuffer::~TimeIntervalBuffer() = default;

double TimeIntervalBuffer::beginSeconds() const { return secondsOf(begin()); }
double TimeIntervalBuffer::endSeconds() const { return secondsOf(end()); }
void TimeIntervalBuffer::setBeginSeconds(double seconds) { setBegin(timeFromSeconds(seconds)); }
void TimeIntervalBuffer::setEndSeconds(double seconds) { setEnd(timeFromSeconds(seconds)); }
QDateTime TimeIntervalBuffer::beginDateTime() const { return toQDateTime(begin()); }
QDateTime TimeIntervalBuffer::endDateTime() const { return toQDateTime(end()); }
QString TimeIntervalBuffer::trackPointSource() const { return {}; }

ClipBuffer::ClipBuffer(QObject *parent) : TimeIntervalBuffer(parent) {}
ClipBuffer::~ClipBuffer() = default;

void ClipBuffer::reset() {
  setBegin({});
  setEnd({});
  Q_EMIT changed();
}
bool ClipBuffer::pcapActive() const { return false; }
bool ClipBuffer::setTimeOffset(Ticks) { return false; }
bool ClipBuffer::loading() const { return false; }
void ClipBuffer::setLoading(bool) {}
bool ClipBuffer::pcapLoading() const { return false; }
bool ClipBuffer::pcapStopped() const { return false; }
void ClipBuffer::setPcapActive(bool) {}

RenderBuffer::RenderBuffer(QObject *parent) : Buffer(parent) {}
RenderBuffer::~RenderBuffer() = default;

QString RenderBuffer::renderSource() const { return {}; }
void RenderBuffer::prepareForQmlRemoval() {}

void RenderBuffer::setControlSelected(bool selected) {
  if (m_controlSelected == selected) return;
  m_controlSelected = selected;
  Q_EMIT controlSelectedChanged();
}

}  // namespace tarvo::skarnvisor
