#include "tests/host/fake_pipeline.h"

#include <QThread>
#include <stdexcept>
#include <utility>

#include "contracts/host/registration.h"
#include "host/core/clip_frames.h"
#include "tests/support/inert_runtime.h"

namespace tarvo::skarnvisor::test {
namespace {

constexpr const char *key = "FAKE2368";

class RefusingRuntime : public tarvo::test::InertRuntime {
 public:
  [[nodiscard]] std::string InitError() const override { return "no lidar packets in it"; }
};

}  // namespace

Journal &Journal::instance() {
  static Journal journal;
  return journal;
}

void Journal::clear() {
  const std::lock_guard lock(m_mutex);
  m_lines.clear();
  m_frames.clear();
}

void Journal::add(const QString &line) {
  const std::lock_guard lock(m_mutex);
  m_lines.append(line);
}

void Journal::addFrame(int frame) {
  const std::lock_guard lock(m_mutex);
  m_frames.push_back(frame);
}

QStringList Journal::lines() const {
  const std::lock_guard lock(m_mutex);
  return m_lines;
}

std::vector<int> Journal::frames() const {
  const std::lock_guard lock(m_mutex);
  return m_frames;
}

void FakeClip::fill(TimePoint start, Ticks span, int frames) {
  if (m_frames == frames && begin() == start) return;
  m_start = start;
  m_span = span;
  m_frames = frames;
  setBegin(start);
  setEnd(start + (frames - 1) * span);
  if (announcesChanges) Q_EMIT changed();
}

void FakeClip::setLoading(bool loading) {
  if (!loading) Journal::instance().add(QStringLiteral("reception stopped"));
}

void FakeRender::prepareForQmlRemoval() { Journal::instance().add(QStringLiteral("render buffer prepared")); }

std::atomic<bool> FakeClip::announcesChanges{true};
std::atomic<int> FakeClipLoader::framesOfClip{25};
const TimePoint FakeClipLoader::clipStart = timeFromSeconds(1'700'000'000.1234567);

FakeClipLoader::FakeClipLoader(QObject *parent) : Functor(parent), m_clip(new FakeClip(this)) {}

void FakeClipLoader::operator()() {
  if (framesOfClip > 0) m_clip->fill(clipStart, frameSpan, framesOfClip);
}

FakeProducer::FakeProducer(QObject *parent)
    : Functor(parent), m_cursor(new TimeCursorToggle(this)), m_track(new TrackBuffer(this)) {}

void FakeProducer::operator()() {
  if (m_track->clips().isEmpty()) return;
  // Cut to whole microseconds, as a pipeline does that hands seconds to a runtime.
  const auto cursor = std::chrono::floor<std::chrono::microseconds>(m_cursor->timeCursor());
  Journal::instance().addFrame(ClipFrames(m_track->clips().first()).indexAt(cursor));
}

FakeParser::FakeParser(QObject *parent) : Functor(parent), m_render(new FakeRender(this)) {}
void FakeParser::operator()() {}

FakeLoader::FakeLoader(QObject *parent) : Functor(parent), m_toggle(new InputSDKToggle(this)) {}

void FakeLoader::operator()() {
  const QSharedPointer<SDKSource> source = m_toggle->sdkSource();
  const QString path = QString::fromStdString(source->driverParam.capturePath);
  if (path.endsWith(QLatin1String("refused"))) {
    delete std::exchange(source->runtime, new RefusingRuntime);
    return;
  }
  while (path.endsWith(QLatin1String("endless")) && !QThread::currentThread()->isInterruptionRequested()) {
    QThread::msleep(1);
  }
  if (path.endsWith(QLatin1String("endless"))) return;
  auto *const category = qobject_cast<Category::Instance *>(parent());
  Category::Instance *const made = category->addSubCategory(QStringLiteral("DefaultSDKCategory"), QLatin1String(key));
  if (path.endsWith(QLatin1String("broken"))) throw std::runtime_error("the pipeline came apart");
  const auto find = [made](const char *name) {
    return made->functor(QLatin1String("tarvo::skarnvisor::") + QLatin1String(name) + QLatin1String(key)).data();
  };
  auto *const producer = qobject_cast<FakeProducer *>(find("DefaultSDKProducer"));
  auto *const clipLoader = qobject_cast<FakeClipLoader *>(find("DefaultSDKNetLoader"));
  clipLoader->source.swap(m_toggle->sdkSource());
  producer->addSuccessor(find("DefaultSDKParser"));
  producer->track()->addClip(clipLoader->clip());
  Q_EMIT category->changed();
}

void registerFakes() {
  const auto add = [](const char *name, const QMetaObject &meta) {
    Registration::regist(QLatin1String("tarvo::skarnvisor::") + QLatin1String(name), &meta);
  };
  add("DefaultSDKLoader", FakeLoader::staticMetaObject);
  add("DefaultSDKNetLoader", FakeClipLoader::staticMetaObject);
  add("DefaultSDKProducer", FakeProducer::staticMetaObject);
  add("DefaultSDKParser", FakeParser::staticMetaObject);
  add("DefaultVDGParser", FakeSafetyParser::staticMetaObject);
  add("DefaultNBParser", Unmakeable::staticMetaObject);
}

}  // namespace tarvo::skarnvisor::test
