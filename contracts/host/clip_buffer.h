#pragma once

#include "contracts/host/buffer.h"

namespace tarvo::skarnvisor {

/// A stretch of recorded or received data on a track. The virtual operations that the base answers with "nothing" are
/// overridden by clips that stand before a source. Called on the GUI thread unless said otherwise.
///
/// The host also looks for `frameCount` (int property) and `getFrameStartSeconds(int)` (invokable, double) in the
/// clip's meta-object; with both, and a frame count above 0, playback and stepping go by frames.
class ClipBuffer : public TimeIntervalBuffer {
  Q_OBJECT
  Q_PROPERTY(bool loading READ loading WRITE setLoading NOTIFY changed)
  Q_PROPERTY(bool pcapLoading READ pcapLoading NOTIFY changed)

 public:
  explicit ClipBuffer(QObject *parent = nullptr);
  ~ClipBuffer() override;

  /// Forgets the extent and announces it.
  virtual void reset();
  /// True while the source delivers: it is loading, or its pipeline may run. The host refreshes the clip while it
  /// holds. Callable from any thread.
  [[nodiscard]] virtual bool pcapActive() const;
  /// Moves the clip on the timeline. False, as in the base: this clip stays where its data say.
  virtual bool setTimeOffset(Ticks offset);
  /// The clip takes data; false stops reception at once.
  [[nodiscard]] virtual bool loading() const;
  virtual void setLoading(bool loading);
  /// The first load of the source is still going on. Callable from any thread.
  [[nodiscard]] virtual bool pcapLoading() const;
  /// The source has been stopped. Callable from any thread.
  [[nodiscard]] virtual bool pcapStopped() const;
  /// Opens (true) or shuts (false) the pipeline of the source; the host calls it with true once it has taken the clip
  /// up.
  virtual void setPcapActive(bool active);
};

}  // namespace tarvo::skarnvisor
