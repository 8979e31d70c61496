#include "host/core/pipeline.h"

#include <QMetaProperty>
#include <QVariant>
#include <algorithm>
#include <chrono>
#include <utility>

#include "contracts/host/functor.h"
#include "host/core/functor_scheduler.h"

namespace tarvo::skarnvisor {
namespace {

// A growing clip is to be seen within 200 ms; a live one sooner, since each look is also the pace of its frames.
constexpr std::chrono::milliseconds captureRefreshPeriod{100};
constexpr std::chrono::milliseconds liveRefreshPeriod{25};

constexpr const char *playByFrameProperty = "playByFrame";

}  // namespace

Pipeline::Pipeline(Category::Instance *instance, Origin origin, QObject *parent)
    : QObject(parent),
      m_instance(instance),
      m_origin(std::move(origin)),
      m_refresh(clipRefreshOf(instance->category())) {
  for (const QSharedPointer<Functor> &functor : instance->functors()) findRoles(functor.data());
  if (m_producer != nullptr) appendToChain(m_producer);
  m_frames = ClipFrames(m_clip);
  if (m_clip != nullptr) {
    connect(m_clip, &TimeIntervalBuffer::changed, this, &Pipeline::noteExtent);
    // A clip may move its end without announcing it.
    connect(m_clipLoader, &Functor::finished, this, &Pipeline::noteExtent);
  }
  m_refreshTimer.setInterval(m_origin.live ? liveRefreshPeriod : captureRefreshPeriod);
  connect(&m_refreshTimer, &QTimer::timeout, this, &Pipeline::refreshClip);
}

Pipeline::~Pipeline() { stop(); }

void Pipeline::findRoles(Functor *functor) {
  const QMetaObject *const meta = functor->metaObject();
  for (int i = QObject::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
    auto *const object = meta->property(i).read(functor).value<QObject *>();
    if (auto *const cursor = qobject_cast<TimeCursorToggle *>(object)) {
      m_cursor = cursor;
      m_producer = functor;
    } else if (auto *const track = qobject_cast<TrackBuffer *>(object)) {
      m_track = track;
    } else if (auto *const clip = qobject_cast<ClipBuffer *>(object)) {
      m_clip = clip;
      m_clipLoader = functor;
    } else if (auto *const render = qobject_cast<RenderBuffer *>(object)) {
      m_renderBuffer = render;
    }
  }
}

void Pipeline::appendToChain(Functor *functor) {
  if (m_chain.contains(functor)) return;
  m_chain.append(functor);
  for (Functor *next : functor->successors()) appendToChain(next);
}

void Pipeline::start() {
  if (m_clip == nullptr) {
    Q_EMIT clipLoaded({});
    return;
  }
  auto *const firstLoad = new QObject(this);
  connect(m_clipLoader, &Functor::finished, firstLoad, [this, firstLoad](const QString &error) {
    firstLoad->deleteLater();
    disconnect(m_clipLoader, nullptr, firstLoad, nullptr);
    Q_EMIT clipLoaded(error);
  });
  // A clip that its source has started already may have finished loading: switching it on again would undo that.
  if (!m_clip->pcapActive()) m_clip->setPcapActive(true);
  m_clipLoader->run();
  if (m_refresh == ClipRefresh::Repeated) m_refreshTimer.start();
}

void Pipeline::noteExtent() {
  const Extent now{begin(), end(), m_frames.count()};
  if (now == m_extent) return;
  m_extent = now;
  Q_EMIT extentChanged();
}

void Pipeline::refreshClip() {
  if (m_clip->pcapActive()) m_clipLoader->run();
}

void Pipeline::stop() {
  if (std::exchange(m_stopped, true)) return;
  m_refreshTimer.stop();
  setPlaying(false);
  if (m_clip != nullptr) {
    m_clip->setPcapActive(false);
    m_clip->setLoading(false);
  }
  m_instance->scheduler().stop();
  if (m_renderBuffer != nullptr) m_renderBuffer->prepareForQmlRemoval();
}

bool Pipeline::isKnown() const { return m_clip != nullptr && m_clip->isKnown(); }
TimePoint Pipeline::begin() const { return m_clip != nullptr ? m_clip->begin() : TimePoint(); }
TimePoint Pipeline::end() const { return m_clip != nullptr ? m_clip->end() : TimePoint(); }

const ClipFrames *Pipeline::frames() const {
  if (m_renderBuffer != nullptr) {
    const QVariant byFrame = m_renderBuffer->property(playByFrameProperty);
    if (byFrame.isValid() && !byFrame.toBool()) return nullptr;
  }
  return index();
}

const ClipFrames *Pipeline::index() const { return m_frames.count() > 0 ? &m_frames : nullptr; }

bool Pipeline::isBusy() const {
  const FunctorScheduler &scheduler = m_instance->scheduler();
  return std::any_of(m_chain.begin(), m_chain.end(),
                     [&scheduler](const Functor *stage) { return scheduler.isPending(stage); });
}

void Pipeline::show(TimePoint cursor) {
  if (m_stopped || m_cursor == nullptr) return;
  m_cursor->setTimeCursor(cursor);
  for (Functor *stage : std::as_const(m_chain)) stage->run();
}

void Pipeline::setPlaying(bool playing) {
  if (m_origin.playState) m_origin.playState->playing.store(playing, std::memory_order_release);
}

}  // namespace tarvo::skarnvisor
