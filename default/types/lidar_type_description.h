#pragma once

#include <QVariant>

namespace tarvo::skarnvisor {

/// The lidar type table for reading by people: a map for every type, chain by chain in the order of the rows, with
/// "type", "family" and "label" as texts, and as text lists the "capabilities" that the type has switched on beyond or
/// against the defaults, those "switched off", the "filters" offered beside the usual ones, the optional "columns" and
/// "color modes", what the type "starts with", and the paths of its "default files". Any thread.
QVariantList describeLidarTypes();

}  // namespace tarvo::skarnvisor
