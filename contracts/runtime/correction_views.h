#pragma once

#include <cstdint>
#include <vector>

namespace tarvo::lidar {

// Arrays of one section of a multi-section correction table, one entry a channel. They belong to the runtime and live
// as long as it; the display flags may be written in place.
struct SvSdkCorrectionSectionView {
  float *azimuths = nullptr;    // degrees
  float *elevations = nullptr;  // degrees
  bool *displayed = nullptr;
};

// A copy of the correction table at one moment; index 0 is channel 1. Angles in degrees. `generation` rises by one with
// every table that comes into force; 0 means that none has.
struct SvSdkCorrectionSnapshot {
  std::uint64_t generation = 0;
  bool loaded = false;
  std::vector<float> elevations;
  std::vector<float> azimuths;
  std::vector<float> azimuthsOdd;  // empty: the table has one azimuth a channel
  std::vector<bool> displayed;
  std::vector<double> frameSpan;
};

// Place of a channel in the pixel grid of a lidar with sub-pixel channels.
struct LmqChannelPosition {
  int channel = 0;  // from 1
  int group = 0;
  int row = 0;
  int column = 0;
  float elevation = 0.0F;  // degrees
};

}  // namespace tarvo::lidar

namespace tarvo {
using lidar::LmqChannelPosition;
using lidar::SvSdkCorrectionSectionView;
using lidar::SvSdkCorrectionSnapshot;
}  // namespace tarvo
