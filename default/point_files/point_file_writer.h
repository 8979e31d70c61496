#pragma once

#include <QString>
#include <functional>
#include <span>

#include "contracts/runtime/point_info.h"
#include "default/point_files/point_file.h"

namespace tarvo::skarnvisor {

/// Writes the points of a read file as a BIN file of 18-byte records. A failure leaves an older file as it was. Empty,
/// or one sentence saying why it failed.
QString writeBinFile(const PointFile &file, const QString &path);

/// Writes the points of a read file as text with a header: a PCD file, or comma-separated values with a line of titles.
QString writePcdFile(const PointFile &file, const QString &path);
QString writeCsvFile(const PointFile &file, const QString &path);

/// Writes what a user captured: PCD, ascii, x y z intensity of those of `points` that `taken` holds by index.
QString writeCapture(std::span<const lidar::SDKPointInfo> points, const std::function<bool(std::size_t)> &taken,
                     const QString &path);

/// Reads one file and writes it in the format that the other's suffix names: .bin, .pcd or .csv. Any thread.
QString convertPointFile(const QString &from, const QString &to);

}  // namespace tarvo::skarnvisor
