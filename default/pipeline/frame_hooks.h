#pragma once

#include "contracts/runtime/decoded_frame.h"
#include "contracts/runtime/point_info.h"
#include "default/frame/point_pass.h"
#include "default/models/settings_value.h"

#include <atomic>
#include <functional>

namespace tarvo::skarnvisor {

/// Where a lidar family joins the frame flow. Set before the first frame; called on the parser's
/// threads. An empty hook costs nothing.
struct FrameHooks {
  using Frame = tarvo::lidar::LidarDecodedFrame<tarvo::lidar::SDKPointInfo>;
  using Point = tarvo::lidar::SDKPointInfo;

  std::function<void(Frame &)> frame;  ///< once a frame, before its points; takes Frame::mutex itself
  PointHook point;                     ///< true hides the point; many threads at once
  PointSeenHook pointSeen;             ///< a shown point and its index, after its colour; many threads at once
  ColorRun colors;                 ///< colour words of a family with colours of its own; attributeColor() asks it too
  std::function<void()> frameEnd;  ///< after the points of a frame
  std::function<void(int, Point &)> pointRefresh;  ///< tests and colours the stored point at a position again
};

/// The runtime's per-channel correction arrays, null until the first frame with corrections. They belong to
/// the runtime; the display flags are written in place.
struct CorrectionView {
  std::atomic<float *> azimuths{nullptr};    ///< degrees
  std::atomic<float *> elevations{nullptr};  ///< degrees
  std::atomic<bool *> displayed{nullptr};
  Relaxed<int> channels{0};
};

}  // namespace tarvo::skarnvisor
