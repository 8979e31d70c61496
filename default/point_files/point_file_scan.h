#pragma once

#include <QString>
#include <optional>

#include "default/point_files/pcd_frame_entry.h"

namespace tarvo::skarnvisor {

/// Time in seconds that a file name, without its suffix, tells: the digits on both sides of the first dot are seconds
/// with their fraction; without a dot the first run of digits counts milliseconds. Empty for a name with neither.
[[nodiscard]] std::optional<double> secondsInName(const QString &baseName);

/// The point files of a folder (not of its subfolders) in the order of their names, each accepted and each passed-over
/// file with its line on standard output. A path that is a point file itself gives that one, at time 0 if its name
/// tells none. A path that does not exist gives nothing and a line in the log.
[[nodiscard]] PcdFrameList scanPointFiles(const QString &path);

}  // namespace tarvo::skarnvisor
