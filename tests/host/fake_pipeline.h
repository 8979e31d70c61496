#pragma once

#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <atomic>
#include <mutex>
#include <vector>

#include "contracts/host/category.h"
#include "contracts/host/clip_buffer.h"
#include "contracts/host/functor.h"
#include "contracts/host/render_buffer.h"
#include "contracts/host/toggle.h"
#include "contracts/host/track_buffer.h"

namespace tarvo::skarnvisor::test {

/// What the fake pipelines of one test did, in order. Thread-safe.
class Journal {
 public:
  static Journal &instance();
  void clear();
  void add(const QString &line);
  void addFrame(int frame);
  [[nodiscard]] QStringList lines() const;
  [[nodiscard]] std::vector<int> frames() const;

 private:
  mutable std::mutex m_mutex;  ///< guards both lists
  QStringList m_lines;
  std::vector<int> m_frames;
};

/// A clip of `frames` frames, `span` ticks each, from `start` on.
class FakeClip : public ClipBuffer {
  Q_OBJECT
  Q_PROPERTY(int frameCount READ frameCount NOTIFY changed)

 public:
  static std::atomic<bool> announcesChanges;

  using ClipBuffer::ClipBuffer;
  ~FakeClip() override { Journal::instance().add(QStringLiteral("clip died")); }

  void fill(TimePoint start, Ticks span, int frames);
  [[nodiscard]] int frameCount() const { return m_frames; }
  Q_INVOKABLE double getFrameStartSeconds(int frame) const { return secondsOf(m_start + frame * m_span); }
  [[nodiscard]] bool pcapActive() const override { return m_active; }
  void setPcapActive(bool active) override { m_active = active; }
  void setLoading(bool loading) override;

 private:
  std::atomic<int> m_frames{0};
  std::atomic<bool> m_active{false};
  TimePoint m_start;
  Ticks m_span{0};
};

class FakeRender : public RenderBuffer {
  Q_OBJECT
  Q_PROPERTY(bool playByFrame READ playByFrame CONSTANT)

 public:
  using RenderBuffer::RenderBuffer;
  [[nodiscard]] bool playByFrame() const { return true; }
  [[nodiscard]] QString renderSource() const override { return QStringLiteral("Fake.qml"); }
  void prepareForQmlRemoval() override;
};

/// Its clip has `framesOfClip` frames of 20 ms.
class FakeClipLoader : public Functor {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::test::FakeClip *clip READ clip CONSTANT)

 public:
  static std::atomic<int> framesOfClip;
  static const TimePoint clipStart;
  static constexpr Ticks frameSpan{200'000};

  Q_INVOKABLE explicit FakeClipLoader(QObject *parent = nullptr);
  void operator()() override;
  [[nodiscard]] FakeClip *clip() const { return m_clip.data(); }

  QSharedPointer<SDKSource> source;

 private:
  QSharedPointer<FakeClip> m_clip;
};

class FakeProducer : public Functor {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::TimeCursorToggle *timeCursorToggle READ timeCursorToggle CONSTANT)
  Q_PROPERTY(tarvo::skarnvisor::TrackBuffer *track READ track CONSTANT)

 public:
  Q_INVOKABLE explicit FakeProducer(QObject *parent = nullptr);
  void operator()() override;
  [[nodiscard]] TimeCursorToggle *timeCursorToggle() const { return m_cursor.data(); }
  [[nodiscard]] TrackBuffer *track() const { return m_track.data(); }

 private:
  QSharedPointer<TimeCursorToggle> m_cursor;
  QSharedPointer<TrackBuffer> m_track;
};

class FakeParser : public Functor {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::test::FakeRender *frameBuffer READ frameBuffer CONSTANT)

 public:
  Q_INVOKABLE explicit FakeParser(QObject *parent = nullptr);
  void operator()() override;
  [[nodiscard]] FakeRender *frameBuffer() const { return m_render.data(); }

 private:
  QSharedPointer<FakeRender> m_render;
};

/// The parser that some keys get in place of FakeParser.
class FakeSafetyParser : public FakeParser {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit FakeSafetyParser(QObject *parent = nullptr) : FakeParser(parent) {}
};

/// Wires a pipeline of the fakes; the name of the capture file says what goes wrong: "refused" ends as a start that
/// failed, "broken" throws half-way, "endless" waits until it is interrupted.
class FakeLoader : public Functor {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::InputSDKToggle *inputSDKToggle READ inputSDKToggle CONSTANT)

 public:
  Q_INVOKABLE explicit FakeLoader(QObject *parent = nullptr);
  void operator()() override;
  [[nodiscard]] InputSDKToggle *inputSDKToggle() const { return m_toggle.data(); }

 private:
  QSharedPointer<InputSDKToggle> m_toggle;
};

/// Has no invokable constructor taking a parent.
class Unmakeable : public Functor {
  Q_OBJECT
};

/// Registers the fakes under the names that the category table knows.
void registerFakes();

}  // namespace tarvo::skarnvisor::test
