#pragma once

#include "default/telemetry/device_tables.h"

#include <vector>

namespace tarvo::skarnvisor {

/// Folds a batch of fault packets, six bytes each, into rows: for each field its distinct values in
/// ascending order, at most 1000. Invalid packets add nothing.
std::vector<NamedValue> faultRows(const unsigned char *packets, int count);

}  // namespace tarvo::skarnvisor
