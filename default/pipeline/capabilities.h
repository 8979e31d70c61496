#pragma once

#include "default/models/settings_value.h"

namespace tarvo::skarnvisor {

/// What a lidar type can do: which tools the panels offer. Filled once by the lidar type
/// configuration; `useBlindChannels` alone may follow the frames later.
struct Capabilities {
  Relaxed<bool> monitorViewUseful{false};
  Relaxed<bool> firetimesUseful{true};
  Relaxed<bool> faultmessageViewUsed{false};
  Relaxed<bool> reflectanceMappingFlag{false};
  Relaxed<bool> channelConfigUseful{false};
  Relaxed<bool> dirtyMappingReflectanceUsefulFlag{false};
  Relaxed<bool> frameDurationFlag{false};
  Relaxed<bool> frameNumberFlag{false};
  Relaxed<bool> remakeAndQuantifyFlag{false};
  Relaxed<bool> groundFiterFlag{false};
  Relaxed<bool> d2DViewUsed{false};
  Relaxed<bool> dcfUseful{false};
  Relaxed<bool> nonlinearMappingUseful{false};
  Relaxed<bool> useBlindChannels{true};
  Relaxed<bool> vd8PopoutFilterFlag{false};
  Relaxed<bool> vd2OfflineFilter{false};
  Relaxed<bool> pointCloudSmoothing{false};
  Relaxed<bool> coordinateTransformUseful{false};
  Relaxed<bool> vd2DistanceFilter{false};
  Relaxed<bool> yfnNoiseFilter{false};
  Relaxed<bool> elevationFovFilterFlag{false};
  Relaxed<bool> vd8OffineFilterFlag{false};
};

}  // namespace tarvo::skarnvisor
