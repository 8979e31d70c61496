#pragma once

#include <QString>
#include <span>

#include "default/files/output_file.h"
#include "default/point_files/point_file.h"

namespace tarvo::skarnvisor {

/// Writes the points of a read file as a BIN file of 18-byte records. A failure leaves an older file as it was. Empty,
/// or one sentence saying why it failed.
QString writeBinFile(const PointFile &file, const QString &path);

/// Writes the points of a read file as text with a header: a PCD file, or comma-separated values with a line of titles.
QString writePcdFile(const PointFile &file, const QString &path);
QString writeCsvFile(const PointFile &file, const QString &path);

/// What a capture keeps of a point.
struct CapturedPoint {
  float x = 0;
  float y = 0;
  float z = 0;
  unsigned intensity = 0;
};

/// Writes what a user captured: PCD, ascii, x y z intensity. Given up, it leaves an older file as it was.
WriteOutcome writeCapture(std::span<const CapturedPoint> points, const QString &path, WriteProgress &progress);

/// Reads one file and writes it in the format that the other's suffix names: .bin, .pcd or .csv. Any thread.
QString convertPointFile(const QString &from, const QString &to);

}  // namespace tarvo::skarnvisor
