#pragma once

#include "contracts/host/time.h"
#include "host/core/clip_frames.h"

namespace tarvo::skarnvisor {

/// A pipeline as the timeline sees it. Used on the GUI thread only.
class TimelineTrack {
 public:
  virtual ~TimelineTrack() = default;

  /// False until begin and end mean something.
  [[nodiscard]] virtual bool isKnown() const = 0;
  [[nodiscard]] virtual TimePoint begin() const = 0;
  [[nodiscard]] virtual TimePoint end() const = 0;
  /// The frames to go by, or null while the track is played by time or has no frame index.
  [[nodiscard]] virtual const ClipFrames *frames() const = 0;
  /// The frames to tell the user of, also while the track is played by time; null without an index.
  [[nodiscard]] virtual const ClipFrames *index() const { return frames(); }
  /// The end moves with the present.
  [[nodiscard]] virtual bool isLive() const = 0;
  /// What the last `show` asked for is not on the canvas yet.
  [[nodiscard]] virtual bool isBusy() const = 0;
  /// Gives the cursor to the pipeline and has its chain run. Returns at once.
  virtual void show(TimePoint cursor) = 0;
  virtual void setPlaying(bool playing) = 0;
};

}  // namespace tarvo::skarnvisor
