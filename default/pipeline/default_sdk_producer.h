#pragma once

#include <QSharedPointer>

#include "contracts/host/functor.h"
#include "contracts/host/toggle.h"
#include "default/pipeline/default_sdk_track_buffer.h"

namespace tarvo::skarnvisor {

class DefaultSDKFrameRenderBuffer;
struct StackSettings;

/// Decides at each run which frames the runtime is to decode next, and waits until they are. It tells the parser behind
/// it through the render buffer's skip word whether there is anything new. Runs on the pipeline's functor thread; the
/// members below `operator()` belong to that thread, and families build their own choice of frames from them.
class DefaultSDKProducer : public Functor {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::TimeCursorToggle *timeCursorToggle READ timeCursorToggle CONSTANT)
  Q_PROPERTY(tarvo::skarnvisor::DefaultSDKTrackBuffer *defaultSDKTrackBuffer READ defaultSDKTrackBuffer CONSTANT)

 public:
  Q_INVOKABLE explicit DefaultSDKProducer(QObject *parent);
  Q_INVOKABLE DefaultSDKProducer();
  ~DefaultSDKProducer() override;

  void operator()() override;

  [[nodiscard]] virtual TimeCursorToggle *timeCursorToggle() const { return m_timeCursorToggle.data(); }
  [[nodiscard]] virtual DefaultSDKTrackBuffer *defaultSDKTrackBuffer() const { return m_trackBuffer.data(); }

  /// Not owned; set while the pipeline is wired, before the first run.
  void setRenderBuffer(DefaultSDKFrameRenderBuffer *renderBuffer);
  [[nodiscard]] DefaultSDKFrameRenderBuffer *renderBuffer() const { return m_renderBuffer; }

 protected:
  /// True while the pipeline of the source is open and wired.
  [[nodiscard]] bool clipActive() const;
  /// Tells the parser that nothing new was decoded.
  void skip();
  /// Decodes the span of one frame that ends at the cursor, and forgets the position.
  void decodeTimeWindow();
  /// Shows frame `id` as image-signal processing has it; false at once when that is off.
  bool imageSignalStep(int id, bool playing);

 private:
  void decodeByFrame();
  [[nodiscard]] bool stackChanged(const StackSettings &stack, bool playing);
  void restartStack(int id, const StackSettings &stack);
  void overlayStep(int id, int groupFrames, bool playing);
  [[nodiscard]] bool wentBack(int id) const;
  bool overlayWaits(int id, int groupFrames, bool playing);
  void overlayGroup(int id, int groupFrames);
  bool pullImageSignal(int id, bool playing);
  void startOverAtCaptureEnd(int id);
  void showDisplayedSequence();
  [[nodiscard]] bool isCaptureFile() const;

  QSharedPointer<TimeCursorToggle> m_timeCursorToggle;
  QSharedPointer<DefaultSDKTrackBuffer> m_trackBuffer;
  bool m_lastPlaying = false;
  int m_lastFrameNumber = 1;
  bool m_resyncPending = false;  ///< the stack restarts from the track's position before its next group
  /// A stack begins with a whole group, which may reach beyond the cursor: where the cursor stood then, and the
  /// position behind that group.
  struct {
    int cursor = 0;
    int position = -1;
  } m_ahead;
  std::int64_t m_imageSignalTarget = -1;
  DefaultSDKFrameRenderBuffer *m_renderBuffer = nullptr;
};

}  // namespace tarvo::skarnvisor
