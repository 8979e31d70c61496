#pragma once

#include <QString>

namespace tarvo::skarnvisor::test {

/// The folder that this test process has to itself; it is the working directory, holds the home and documents folders,
/// and is removed when the process ends. Valid once main() has begun.
QString processFolder();

/// The documents folder of this process, where the settings file and the calibration files live.
QString documentsFolder();

}  // namespace tarvo::skarnvisor::test
