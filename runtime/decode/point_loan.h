#pragma once

#include <vector>

#include "contracts/runtime/decoded_frame_layout.h"
#include "contracts/runtime/sdk_source.h"

namespace tarvo::lidar {

/// The source's array of points, in the decoder's hands for the time of a decode: so a frame's points lie in memory
/// once, and nothing is copied. Meanwhile the source has none. One thread; take the locks of source and frame as told.
class PointLoan {
 public:
  PointLoan(SDKSource &source, DecodedFrame &frame) : source_(source), frame_(frame) {}
  /// Gives the array back without points when `handOver` was not called.
  ~PointLoan();
  PointLoan(const PointLoan &) = delete;
  PointLoan &operator=(const PointLoan &) = delete;

  /// Takes the array and makes it `points` long; what it holds is old. Once; takes both locks.
  void take(std::size_t points);
  [[nodiscard]] SDKPointInfo *data() { return points_.data(); }
  /// The first `points` of the array are the source's and, for as long as they stay there, the decoded frame's. Caller
  /// holds the locks of both.
  void handOver(std::size_t points);

 private:
  SDKSource &source_;
  DecodedFrame &frame_;
  std::vector<SDKPointInfo> points_;
  bool taken_ = false;
};

}  // namespace tarvo::lidar
