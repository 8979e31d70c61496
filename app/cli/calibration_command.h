#pragma once

#include <QString>
#include <QStringList>

namespace CLI {
class App;
}

namespace tarvo::skarnvisor::app {

class CaptureSession;

/// What "calibration" is asked for; with nothing asked it lists the kinds.
struct CalibrationOptions {
  QString exportFolder;
  QStringList imports;  ///< KIND=FILE each, in the order given
};

void addCalibrationOptions(CLI::App &command, CalibrationOptions &options);
/// Imports first, then exports, then lists. An empty string, or one sentence saying what failed.
QString runCalibration(CaptureSession &session, const CalibrationOptions &options);

}  // namespace tarvo::skarnvisor::app
