#pragma once

/// Measures of the street scene, metres. x is across, y along the street; the pattern repeats along y.
namespace tarvo::lidar::sim::street {

inline constexpr double period = 200.0;
inline constexpr double laneWidth = 3.6;      ///< from the centre line to the parking strip
inline constexpr double roadHalfWidth = 6.0;  ///< to the kerb
inline constexpr double pavementEdge = 9.6;
inline constexpr double buildingLine = 10.0;
inline constexpr double kerbHeight = 0.15;
inline constexpr double crossingBegin = 36.0;  ///< side road, along y
inline constexpr double crossingEnd = 45.0;

}  // namespace tarvo::lidar::sim::street
