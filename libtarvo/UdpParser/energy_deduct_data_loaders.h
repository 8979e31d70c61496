#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvo::lidar {

// Readers of the data that the energy-deduct filter takes, and of the channel equalisation gains. Free functions
// without state, for any thread; paths in the local 8-bit code page. A failure is the result false, never a message or
// an exception. A cell that is no number passes over its row; in a kernel, where that would shift the rest, it fails
// the whole file. Files over 64 MiB are refused.

/// Distance coefficients, one a row, from the column whose header holds "dist_coef" (else the second, else the only
/// one). False: unreadable, empty, or without any coefficient.
bool loadEnergyDistCoefCsv(const std::string &path, std::vector<float> &out);

/// Reflectivity mapping from raw byte to byte. Starts as the identity; false with `loaded` false when nothing was
/// taken.
bool loadReflectivityByteLut(const std::string &path, std::uint8_t (&lut)[256], bool &loaded);

/// Reflectivity mapping from raw values 0 to 63 to a reflectivity. Starts as the built-in curve; false with `loaded`
/// false when nothing was taken.
bool loadReflectivityFloatLut(const std::string &path, float (&lut)[64], bool &loaded);

/// Convolution kernel, row-major, `values` of rows x cols. False: unreadable, a cell that is no number, or a count that
/// fits no shape; `values` then holds what was read.
bool loadEnergyKernelCsv(const std::string &path, int &rows, int &cols, std::vector<float> &values);

/// False, with the file untouched, when the size is not rows x cols; false too when the file can't be written.
bool saveEnergyKernelCsv(const std::string &path, int rows, int cols, const std::vector<float> &values);

/// The kernel that stands until a file is loaded: 17 x 17, a sharpened stripe of the columns 5 to 11.
void defaultEnergyKernel(int &rows, int &cols, std::vector<float> &values);

/// Gains of red, green and blue by channel, each of `channelCount` entries, 1.0 where nothing is given. ".csv": true
/// when at least half of the channels are given; ".npy": version 1, little-endian floats, row by row, exactly
/// channelCount x 3.
bool loadChannelEqGains(const std::string &path, int channelCount, std::vector<float> &r, std::vector<float> &g,
                        std::vector<float> &b);

/// The highest channel that a ".csv" of gains gives; -1 when it gives none, can't be read or is of another form.
int lastChannelOfEqGains(const std::string &path);

}  // namespace tarvo::lidar
