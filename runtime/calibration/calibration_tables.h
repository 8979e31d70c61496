#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo::lidar {

/// Largest channel number of any table: a grid of 512 x 512.
inline constexpr int maxChannels = 512 * 512;
inline constexpr int correctionSections = 4;

/// Angle corrections; index 0 is channel 1. Degrees. `azimuths` are offsets that are added to a measured azimuth,
/// `elevations` are the channel's elevation.
struct CorrectionTable {
  struct Section {
    int first = 0;  ///< index of its first channel
    int count = 0;
  };
  std::vector<float> elevations;
  std::vector<float> azimuths;
  std::vector<float> azimuthsOdd;  ///< empty, or one a channel
  std::array<Section, correctionSections> sections{};
  std::vector<double> frameSpan;
};

/// Firing time of each channel inside its block, nanoseconds; index 0 is channel 1.
struct FiretimeTable {
  std::vector<float> nanoseconds;
};

/// Distance correction of each channel, metres, added to a measured distance; index 0 is channel 1.
struct DcfTable {
  std::vector<float> distanceOffsets;
};

/// Mapping of raw intensity, by straight lines between its nodes; `inputs` rise strictly, both 0 to 65535.
struct NonlinearTable {
  std::vector<std::uint16_t> inputs;
  std::vector<std::uint16_t> outputs;
};

/// Which channels are in service; index 0 is channel 1.
struct ChannelConfigTable {
  std::vector<bool> enabled;
};

/// Readers of the text forms (docs/calibration-files.md). Each checks the whole text before it returns and throws
/// std::invalid_argument with "line N: expected ..., got ..." when it does not hold a table. `channels`: how many a
/// table by channel must have; 0: any number.
CorrectionTable parseCorrections(std::string_view text, int channels = 0);
FiretimeTable parseFiretimes(std::string_view text, int channels = 0);
DcfTable parseDcf(std::string_view text, int channels = 0);
NonlinearTable parseNonlinear(std::string_view text);
ChannelConfigTable parseChannelConfig(std::string_view text, int channels = 0);

/// Writers: their result reads back as the same values, bit for bit.
std::string formatTable(const CorrectionTable &table);
std::string formatTable(const FiretimeTable &table);
std::string formatTable(const DcfTable &table);
std::string formatTable(const NonlinearTable &table);
std::string formatTable(const ChannelConfigTable &table);

}  // namespace tarvo::lidar
