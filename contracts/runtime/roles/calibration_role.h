#pragma once

#include <string>
#include <vector>

#include "contracts/runtime/correction_views.h"

namespace tarvo::lidar {

// Calibration files. Paths in the local 8-bit code page. A load answers 0 when the data is in force, a negative code
// when it is not, and leaves what was loaded before. An export answers 0 or more when the file was written, -1 when nothing
// of that kind is loaded, another negative code when it could not be written; the old file then stays whole.
class CalibrationFileRole {
 public:
  virtual ~CalibrationFileRole() = default;
  virtual int LoadCorrectionFile(const std::string &path) = 0;
  virtual int ExportCorrectionsFile(const std::string &path, int channelCount) = 0;
  virtual int LoadFiretimesFile(const std::string &path) = 0;
  virtual int ExportFiretimesFile(const std::string &path, int channelCount) = 0;
  virtual int LoadDcfConfigFile(const std::string &path) = 0;
  virtual int ExportDcfConfigFile(const std::string &path) = 0;
  virtual int LoadNonlinearMappingFile(const std::string &path) = 0;
  virtual int ExportNonlinearMappingFile(const std::string &path) = 0;
  virtual int LoadChannelConfigFile(const std::string &path) = 0;
  virtual int ExportChannelConfigFile(const std::string &path) = 0;
};

// The correction table in force. The arrays belong to the runtime, keep their place for its whole life, and are indexed
// by channel - 1; angles in degrees. The display flags may be written in place.
class CorrectionViewRole {
 public:
  virtual ~CorrectionViewRole() = default;
  // Length of the arrays of GetCorrectionView and GetCorrectionAzimuthOdd, in channels.
  [[nodiscard]] virtual int GetCorrectionViewCapacity() const = 0;
  // False, and nothing written, while no correction is loaded. For the grid lidars with directions in place of angles
  // `azimuths` holds three floats a channel.
  virtual bool GetCorrectionView(float **azimuths, float **elevations, bool **displayed) = 0;
  // Second azimuth array; null while the table has none.
  [[nodiscard]] virtual float *GetCorrectionAzimuthOdd() = 0;
  [[nodiscard]] virtual std::vector<double> GetCorrectionFrameSpan() const = 0;
  virtual void SetCorrectionFrameSpan(const std::vector<double> &span) = 0;
  // Number of channels of a section from 0, and its arrays; 0 and nothing written when there is no such section.
  virtual int GetCorrectionChannelSection(int section, SvSdkCorrectionSectionView *view) = 0;
  [[nodiscard]] virtual SvSdkCorrectionSnapshot CaptureCorrectionSnapshot() const = 0;
  // False when the lidar has no pixel layout.
  virtual bool GetLmqChannelLayout(std::vector<LmqChannelPosition> *layout) const = 0;
};

}  // namespace tarvo::lidar
