#pragma once

#include <cstdint>

namespace tarvo::lidar {

class SDKSource;

// The image-signal engine of a source: it holds decoded frames in display order, and the producer pulls them. Sequences
// are frame ids. Every operation may be called from any thread.
class ParallelIspEngine {
 public:
  virtual ~ParallelIspEngine() = default;

  // False: the engine takes no part and the source is decoded directly.
  [[nodiscard]] virtual bool Enabled() const = 0;
  // Sequence of the frame that was displayed last; -1 while there was none.
  [[nodiscard]] virtual std::int64_t LastDisplayedSeq() const = 0;
  // Sequence that the next plain pull will deliver.
  [[nodiscard]] virtual std::int64_t NextDisplaySeq() const = 0;
  // True: frames hold absolute raw values, and a pull never skips.
  [[nodiscard]] virtual bool IsMipiRawAbsoluteMode() const = 0;
  // Reads and clears the request that RequestForcePull made.
  [[nodiscard]] virtual bool ConsumeForcePull() = 0;
  virtual void RequestForcePull() = 0;
  // Fills `source` with the next frame in order, or with `latest` with the newest one; true: it did. Does not wait.
  virtual bool DisplayPullAndFill(SDKSource *source, bool latest) = 0;
  // Fills `source` with frame `sequence`, waiting for it at most `timeoutMs` milliseconds; true: it did.
  virtual bool DisplayPullTargetAndFill(SDKSource *source, std::int64_t sequence, int timeoutMs) = 0;
  // Drops every frame held; the next frame in order is `sequence`.
  virtual void ClearAll(std::int64_t sequence) = 0;
};

}  // namespace tarvo::lidar

namespace tarvo {
using lidar::ParallelIspEngine;
}
