#pragma once

#include <QString>

#include "contracts/runtime/decode_params.h"

namespace tarvo::skarnvisor {

/// Puts the energy-deduct filter's data files below the documents folder `dataRoot` in force: distance coefficients,
/// kernel, and the reflectivity mapping in the one of its two forms that fits. A file that is missing or wrong leaves
/// the built-in values. The files are read outside the parameters' lock.
void loadEnergyDeductFiles(const QString &dataRoot, lidar::DecodeParams &params);

}  // namespace tarvo::skarnvisor
