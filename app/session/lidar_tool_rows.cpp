// The tools that lidars can have. Facts of the setters: docs/decoder-filters.md and the headers of the render buffers.
#include "app/session/lidar_tools.h"

namespace tarvo::skarnvisor::app {
namespace {

/// Filters of the decoder, in the order in which they work.
std::vector<LidarTool> decoderFilters() {
  return {
      {.name = "elevation-fov",
       .title = "Elevation field of view",
       .tip = "Takes out points beyond the field of view that the lidar reports",
       .flag = "elevationFovFilterFlag",
       .setter = "setElevationFovFilterFlag",
       .quiet = true},
      {.name = "distance-threshold",
       .title = "Distance threshold",
       .tip = "Takes out returns that are nearer; 0 takes out none",
       .flag = "vd2DistanceFilter",
       .setter = nullptr,
       .config = "setVd2DistanceFilterThreshold",
       .numbers = {{"Distance threshold, m", 0, 1000, 2}}},
      {.name = "noise",
       .title = "Noise filter",
       .tip = "Takes out points with few returns near them",
       .flag = "yfnNoiseFilter",
       .setter = "setYfnNoiseFilterFlag",
       .config = "setYfnNoiseFilterConfig",
       .numbers = {{"Radius, m", 0, 100, 3}, {"plus share of distance", 0, 1, 4}, {"Least neighbours", 0, 30, 0}}},
      {.name = "noise-across",
       .title = "Channels beside count too",
       .tip = "Neighbours of the channels above and below count as well",
       .flag = "yfnNoiseFilter",
       .setter = "setYfnNoiseFilterMode",
       .part = "noise"},
      {.name = "offline",
       .title = "Offline filter",
       .tip = "Takes out points off the scan line",
       .flag = "vd2OfflineFilter",
       .setter = "setVd2OfflineFilterFlag"},
      {.name = "offline-2",
       .title = "Offline filter, keeps poles",
       .tip = "Takes out points off the scan line and off the line through the channels above and below",
       .flag = "vd8OffineFilterFlag",
       .setter = "setVd8OffineFilterFlag"},
      {.name = "popout",
       .title = "Pop-out filter",
       .tip = "Takes out points at whose distance nothing lies beside them",
       .flag = "vd8PopoutFilterFlag",
       .setter = "setVd8PopoutFilterFlag",
       .config = "setPopoutFilterConfig",
       .numbers = {{"Columns on either side", 1, 16, 0},
                   {"Tolerance, m", 0, 100, 3},
                   {"plus share of distance", 0, 1, 4},
                   {"Up to, m (0: any)", 0, 1000, 1}}},
      {.name = "popout-highlight",
       .title = "Highlight instead of hiding",
       .tip = "What pops out stays and is highlighted",
       .flag = "vd8PopoutFilterFlag",
       .setter = "setVd8PopoutFilterHighlight",
       .part = "popout"},
      {.name = "smoothing",
       .title = "Smoothing",
       .tip = "Draws points to the surface that they lie on",
       .flag = "pointCloudSmoothing",
       .setter = "setPointCloudSmoothingFlag",
       .config = "setPointCloutSmoothingConfig",
       .numbers = {{"Distance, m", 0, 1000, 1},
                   {nullptr, 0, 1000, 1},
                   {"Tolerance, m", 0, 100, 3},
                   {"plus share of distance", 0, 1, 4},
                   {"Intensity", 0, 65535, 0},
                   {nullptr, 0, 65535, 0},
                   {"Weight of the point", 0, 1000, 2},
                   {"Columns on either side", 0, 16, 0},
                   {"Elevation, \u00b0", -90, 90, 2},
                   {nullptr, -90, 90, 2},
                   {"Strength, 0 to 1", 0, 1, 2},
                   {"Channels on either side", 0, 4, 0},
                   {"Passes", 1, 8, 0},
                   {"Greatest shift, m", 0, 100, 3}}},
  };
}

/// What every lidar's buffer can be told beside them.
std::vector<LidarTool> switches() {
  return {
      {.name = "intensity-mapping",
       .title = "Intensity mapping",
       .tip = "Takes intensities through the nonlinear mapping",
       .flag = "reflectanceMappingFlag",
       .setter = "intensityMapping"},
      {.name = "dirt-mapping",
       .title = "Dirt mapping of reflectance",
       .tip = "Asks the decoder to take the dirt into the reflectance",
       .flag = "dirtyMappingReflectanceUsefulFlag",
       .setter = "setDirtyMappingReflectanceFlag"},
      {.name = "remake",
       .title = "Angle grid",
       .tip = "Lays the points out by azimuth and elevation in place of space",
       .flag = "remakeAndQuantifyFlag",
       .setter = "remakeConfig"},
      {.name = "transform",
       .title = "Coordinate transform",
       .tip = "Shows the points turned by roll, pitch and yaw, then moved",
       .flag = "coordinateTransformUseful",
       .setter = "coordinateTransformEnabled",
       .numbers = {{"x, m", -10000, 10000, 3, "coordinateTransformX"},
                   {"y, m", -10000, 10000, 3, "coordinateTransformY"},
                   {"z, m", -10000, 10000, 3, "coordinateTransformZ"},
                   {"Roll, \u00b0", -360, 360, 3, "coordinateTransformRoll"},
                   {"Pitch, \u00b0", -360, 360, 3, "coordinateTransformPitch"},
                   {"Yaw, \u00b0", -360, 360, 3, "coordinateTransformYaw"}}},
  };
}

/// Switches of the families, which their buffers bring.
std::vector<LidarTool> familySwitches() {
  return {
      {"blooming", "Blooming filter", "Takes out the halo of strong reflectors", "nbBloomingFilterFlag",
       "nbBloomingFilter"},
      {"noise-points", "Noise filter", "Takes out noise", "nbNoiseFilterFlag", "nbNoiseFilter"},
      {"broadband", "Broadband filter", "Takes out broadband interference", "broadbandFilterFlag", "broadbandFilter"},
      {"confidence0", "Confidence bit 0 filter", "Hides points whose lowest confidence bit is set",
       "setConfidence0FilterFlag", "setConfidence0Filter"},
      {"sub-channels", "Sub-channel filter", "Hides the points of sub-channels", "subChannelFilterFlag",
       "subChannelFilter"},
      {"smoothing-nbq", "Smoothing", "Draws points to the surface that they lie on", "nbqSmoothingFlag",
       "NbqSmoothingFlag"},
      {"road-markers", "Road marker filter", "Filters the points of road markers", "roadMarkerFilterFlag",
       "roadMarkerFilter"},
      {"bank-reflectivity", "Bank reflectivity filter", "Evens the reflectivity of the banks",
       "bankReflectivityFilterFlag", "bankReflectivityFilter"},
      {"energy-deduct", "Energy deduct filter", "Deducts the energy that strays beside strong returns",
       "energyDeductFilterFlag", "energyDeductFilter"},
      {"image-signal", "Image-signal chain", "Works the camera picture up", "ispFlag", "ispEnable"},
      {"rgb-1260", "Camera picture of 1260 lines", "Shows the camera picture with 1260 lines", "rgbDisplay1260Flag",
       "rgbDisplay1260"},
      {"rgb-rows", "Camera picture by row and column", "Lays the camera picture out by row and column",
       "rgbDisplayLayoutFlag", "rgbDisplayUseRowCol"},
      {"real-channels", "Only real channels", "Shows the points of real channels alone", "useOnlyShowRealChannel",
       "setOnlyShowRealChannelSwitch"},
      {"drag-points", "Drag point filter", "Takes out points dragged between two surfaces", "qswDragPointFilter",
       "setQswDragPointFilterFlag"},
      {"dirt-diagnostic", "Dirt diagnostic", "Has the lidar's window watched for dirt", "qswDirtyDiagnostic",
       "setQswDirtyDiagnosticFlag"},
      {"spikes", "Spike filter", "Takes out points whose speed leaps", "fmcwPostProcessUseful", "pointFilterEnabled"},
  };
}

}  // namespace

const std::vector<LidarTool> &lidarTools() {
  static const std::vector<LidarTool> tools = [] {
    std::vector<LidarTool> all;
    for (auto *group : {decoderFilters, switches, familySwitches})
      for (LidarTool &tool : group()) all.push_back(std::move(tool));
    return all;
  }();
  return tools;
}

}  // namespace tarvo::skarnvisor::app
