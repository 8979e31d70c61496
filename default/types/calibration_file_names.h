#pragma once

#include <QString>
#include <string_view>

#include "default/types/lidar_type_row.h"

namespace tarvo::skarnvisor {

/// Absolute paths of the default files of one lidar type; empty where the type has none.
struct CalibrationFileNames {
  QString correction;
  QString factoryCorrection;  ///< read while the default file is missing, never written
  QString firetimes;
  QString factoryFiretimes;
  QString channelEq;
  QString dcf;
};

/// Names the files below `dataRoot`, the user's documents folder. Touches no file.
CalibrationFileNames calibrationFileNames(const CalibrationFileKinds &kinds, std::string_view type,
                                          const QString &dataRoot);

/// File name of the type's nonlinear mapping, without a folder; empty for a type that has none.
QString nonlinearMappingFileName(std::string_view type);

/// Folder of the nonlinear mapping files, without a separator at its end.
QString nonlinearMappingFolder(const QString &dataRoot);

}  // namespace tarvo::skarnvisor
