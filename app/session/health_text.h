#pragma once

#include <QString>

#include "contracts/runtime/capture_report.h"

namespace tarvo::skarnvisor::app {

/// What went wrong on the way of the packets, and frames left out in playing, for one line: "12 packets lost, 3 out of
/// order, 4 frames skipped". Empty when nothing did.
QString healthText(const lidar::CaptureReport &health, int skippedFrames);

}  // namespace tarvo::skarnvisor::app
