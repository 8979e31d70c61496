#pragma once

namespace tarvo::lidar {

// The numbers of the decoder's filters, with the values that a runtime starts with.

struct PopoutSettings {
  int window = 2;                    ///< columns looked at on either side, 1 to 16
  float toleranceMetres = 0.3F;      ///< a neighbour is as far away, give or take this much
  float toleranceOfRange = 0.02F;    ///< and this share of the point's range
  float greatestRangeMetres = 0.0F;  ///< points further away are left alone; 0: none are
};

struct NoiseSettings {
  int mode = 0;                 ///< 0: neighbours along the channel; any other: of the two channels beside it as well
  float radiusMetres = 0.5F;    ///< how near a neighbour must be in space
  float radiusOfRange = 0.01F;  ///< added to the radius, as a share of the point's range
  int leastNeighbours = 2;
};

// In the order of the tool box's list.
struct SmoothingSettings {
  float leastRangeMetres = 0.0F;  ///< points outside these limits stay as they are
  float greatestRangeMetres = 1000.0F;
  float toleranceMetres = 0.1F;     ///< only neighbours at about the same range count, so that edges stay
  float toleranceOfRange = 0.002F;  ///< added to the tolerance, as a share of the range
  float leastIntensity = 0.0F;
  float greatestIntensity = 65535.0F;
  float centreWeight = 1.0F;  ///< of the point itself, against 1 of each neighbour
  int columnReach = 2;        ///< columns on either side, 0 to 16
  float leastElevationDeg = -90.0F;
  float greatestElevationDeg = 90.0F;
  float strength = 1.0F;  ///< 0: nothing moves, 1: all the way to the mean
  int channelReach = 0;   ///< channels on either side, 0 to 4
  int passes = 1;         ///< 1 to 8
  float greatestShiftMetres = 0.1F;
};

}  // namespace tarvo::lidar
