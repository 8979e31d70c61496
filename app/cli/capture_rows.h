#pragma once

#include "app/cli/report.h"
#include "contracts/runtime/capture_report.h"

namespace tarvo::skarnvisor::app {

/// Loss, disorder, sensors and gaps; what is rarer, only when it was met.
void addHealthRows(Report &report, const lidar::CaptureReport &health);

}  // namespace tarvo::skarnvisor::app
