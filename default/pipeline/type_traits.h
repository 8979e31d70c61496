#pragma once

#include <string>
#include <string_view>

namespace tarvo::skarnvisor {

/// What the frame flow has to know of a lidar type, looked up once when the type is set.
struct TypeTraits {
  bool echoGate = false;        ///< points of another echo than the chosen one are hidden
  bool dirtyLevelGate = false;  ///< points of a dirty level that is switched off are hidden
  bool denseCamera = false;     ///< vertices may be filled while decoding; blind channels follow the frame's mode
  bool attributesInPointCloudMode = false;  ///< a frame without colours shows attributes
  bool nbqPointLayout = false;              ///< points have the alternate layout
  bool diffByThree = false;                 ///< scale of the distance differences in that layout
  int channelEqRows = 1080;                 ///< rows of a table of channel gains
};

struct LidarTypeInfo {
  std::string name;
  TypeTraits traits;
};

/// Traits of a type; the defaults for a type without a row.
TypeTraits typeTraits(std::string_view lidarType);

/// Colour scale of a lidar type with a camera.
struct TypeScales {
  bool rgbType = false;
  float rgbMax = 256.0F;
  float rgbMaxLong = 32.0F;
  bool rgbDualFocusScaleFlag = false;
};

}  // namespace tarvo::skarnvisor
