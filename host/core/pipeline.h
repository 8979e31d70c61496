#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <memory>

#include "contracts/host/category.h"
#include "contracts/host/clip_buffer.h"
#include "contracts/host/render_buffer.h"
#include "contracts/host/toggle.h"
#include "contracts/host/track_buffer.h"
#include "host/core/category_table.h"
#include "host/core/clip_frames.h"
#include "host/core/timeline_track.h"

namespace tarvo::skarnvisor {

/// An opened source: the functors and buffers of one sub-category by the roles they play. Lives on the GUI thread.
///
/// Roles are found through the meta-objects: the producer is the functor with a TimeCursorToggle property, the chain is
/// the producer and its successors, the clip loader is the functor with a ClipBuffer property. A role may be missing
/// (null).
class Pipeline : public QObject, public TimelineTrack {
  Q_OBJECT
  Q_PROPERTY(QString title READ title CONSTANT)
  Q_PROPERTY(bool live READ isLive CONSTANT)
  Q_PROPERTY(QObject *renderBuffer READ renderBufferObject CONSTANT)
  Q_PROPERTY(QObject *track READ trackObject CONSTANT)
  Q_PROPERTY(QObject *clip READ clipObject CONSTANT)

 public:
  struct Origin {
    QString title;  ///< what the user opened
    bool live = false;
    std::shared_ptr<lidar::PlayState> playState;
  };

  Pipeline(Category::Instance *instance, Origin origin, QObject *parent = nullptr);
  ~Pipeline() override;

  [[nodiscard]] const QString &title() const { return m_origin.title; }
  [[nodiscard]] RenderBuffer *renderBuffer() const { return m_renderBuffer; }
  [[nodiscard]] TrackBuffer *track() const { return m_track; }
  [[nodiscard]] ClipBuffer *clip() const { return m_clip; }
  [[nodiscard]] Functor *producer() const { return m_producer; }
  [[nodiscard]] Functor *clipLoader() const { return m_clipLoader; }
  /// Producer first; empty without a producer.
  [[nodiscard]] const QList<Functor *> &chain() const { return m_chain; }
  [[nodiscard]] Category::Instance *instance() const { return m_instance; }
  [[nodiscard]] QObject *renderBufferObject() const { return m_renderBuffer; }
  [[nodiscard]] QObject *trackObject() const { return m_track; }
  [[nodiscard]] QObject *clipObject() const { return m_clip; }

  /// Frames of the clip, 0 without an index.
  [[nodiscard]] int frameCount() const { return m_frames.count(); }

  /// Opens the clip and loads it; `clipLoaded` follows. A clip that may grow is loaded again every `refreshInterval`
  /// from then on, for as long as it is active.
  void start();
  /// Stops reception and the functor thread, then has the render buffer prepared for removal. May wait for the running
  /// stage. Nothing of the pipeline runs afterwards.
  void stop();

  // TimelineTrack
  [[nodiscard]] bool isKnown() const override;
  [[nodiscard]] TimePoint begin() const override;
  [[nodiscard]] TimePoint end() const override;
  [[nodiscard]] const ClipFrames *frames() const override;
  [[nodiscard]] const ClipFrames *index() const override;
  [[nodiscard]] bool isLive() const override { return m_origin.live; }
  [[nodiscard]] bool isBusy() const override;
  void show(TimePoint cursor) override;
  void setPlaying(bool playing) final;

 Q_SIGNALS:
  /// After the first load of the clip. `error` is what an exception of the loader said, else empty.
  void clipLoaded(const QString &error);
  /// The clip's extent or frame count changed.
  void extentChanged();

 private:
  struct Extent {
    TimePoint begin;
    TimePoint end;
    int frames = 0;
    bool operator==(const Extent &) const = default;
  };

  void findRoles(Functor *functor);
  void appendToChain(Functor *functor);
  void refreshClip();
  void noteExtent();

  Category::Instance *m_instance;  ///< deleted after this
  Origin m_origin;
  Functor *m_producer = nullptr;
  Functor *m_clipLoader = nullptr;
  TimeCursorToggle *m_cursor = nullptr;
  RenderBuffer *m_renderBuffer = nullptr;
  TrackBuffer *m_track = nullptr;
  ClipBuffer *m_clip = nullptr;
  QList<Functor *> m_chain;
  ClipFrames m_frames;
  Extent m_extent;  ///< as last announced
  ClipRefresh m_refresh = ClipRefresh::Repeated;
  QTimer m_refreshTimer;
  bool m_stopped = false;
};

}  // namespace tarvo::skarnvisor
