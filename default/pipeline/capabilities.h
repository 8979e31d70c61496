#pragma once

#include <string_view>
#include <vector>

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

class FamilyCapability;

/// What the types of one family can do beside that, in the order in which the family declares it.
using FamilyCapabilities = std::vector<FamilyCapability *>;

/// One capability of a family: a member that is named as its property, whose READ calls it. Read from any thread.
class FamilyCapability {
 public:
  /// Enters itself into `all`, which stands in the same object.
  FamilyCapability(FamilyCapabilities &all, std::string_view property, bool on = false)
      : m_property(property), m_on(on) {
    all.push_back(this);
  }
  FamilyCapability(const FamilyCapability &) = delete;
  FamilyCapability &operator=(const FamilyCapability &) = delete;

  bool operator()() const { return m_on; }
  void set(bool on) { m_on = on; }
  std::string_view property() const { return m_property; }

 private:
  std::string_view m_property;
  Relaxed<bool> m_on;
};

}  // namespace tarvo::skarnvisor
