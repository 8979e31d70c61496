#pragma once

#include <cstdint>
#include <vector>

#include "contracts/runtime/frame_decode_param.h"
#include "runtime/calibration/calibration_store.h"
#include "runtime/decode/packet_decoder.h"

namespace tarvo::lidar {

/// What the decode of a point needs to know of its channel, worked out once a frame.
///
/// With the column's azimuth a, d metres of distance and the channel's azimuth offset o and elevation e, a point lies
/// at x = d cos(e) sin(a + o), y = d cos(e) cos(a + o), z = d sin(e): x to the right, y ahead, z up, azimuth clockwise
/// from y seen from above. The sum in the angle is taken apart, so that a point costs no call of sine or cosine.
struct ChannelEntry {
  float alongCos = 1;  ///< cos(e) cos(o)
  float alongSin = 0;  ///< cos(e) sin(o)
  float upward = 0;    ///< sin(e)
  float azimuthOffsetDeg = 0;
  float elevationDeg = 0;       ///< as the lidar tells it
  float elevationCalibDeg = 0;  ///< by the corrections
  float distanceOffset = 0;     ///< metres, added to a return
  std::uint32_t delayNs = 0;    ///< added to the firing time
  bool shown = true;
};

/// Which calibration a decode uses.
struct ChannelTableInput {
  const CalibrationSnapshot *calibration = nullptr;
  const CalibrationStore *store = nullptr;  ///< for the display flags, read in place
  bool useCorrections = true;
  bool firetimes = false;
  bool distanceOffsets = false;
};

struct ChannelTable {
  std::vector<ChannelEntry> entries;  ///< index 0 is channel 1
  bool turning = false;               ///< azimuths are kept in [0, 360)

  void build(const StreamDescription &shape, std::uint32_t frameNumber, const ChannelTableInput &input);
};

}  // namespace tarvo::lidar
