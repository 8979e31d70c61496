#pragma once

#include <QString>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "contracts/runtime/point_info.h"
#include "default/point_files/readers/bin_reader.h"
#include "default/point_files/readers/pcd_file_reader.h"
#include "default/point_files/readers/ply_reader.h"

namespace tarvo::skarnvisor {

/// The formats that the pipeline reads, by their suffix in lower case.
enum class PointFormat { none, ply, bin, pcd };
[[nodiscard]] PointFormat pointFormatOf(const QString &path);

/// Reads one file at a time, of any of the formats, and makes points of what it holds. Buffers are used again from file
/// to file. One thread at a time; the points may be made by many.
class PointFile {
 public:
  enum class Result {
    read,         ///< the points can be made
    nothingRead,  ///< an error that was printed, a file that could not be opened, an unknown suffix
    refused,      ///< a BIN file whose size fits no record width: there is nothing to draw
  };

  /// Throws what the readers of PCD and PLY files throw.
  Result read(const QString &path);

  /// Why the last read gave no points, for the user; empty if it gave some, or if the file truly holds none.
  [[nodiscard]] QString complaint() const { return m_complaint; }
  [[nodiscard]] std::size_t count() const { return m_count; }
  /// What a BIN record keeps of point `index`, below `count()`.
  [[nodiscard]] BinPoint point(std::size_t index) const;
  /// Makes the points from index `first` on: position, distance, angles, channel, intensity, confidence; all else 0.
  void makePoints(std::size_t first, std::span<lidar::SDKPointInfo> points) const;

 private:
  Result readPcd(const std::string &path);
  Result readBinFile(const std::string &path);

  QString m_complaint;
  PointFormat m_format = PointFormat::none;
  std::size_t m_count = 0;
  PcdFileReader m_pcd;
  bool m_hasRing = false;
  bool m_hasRowId = false;
  std::size_t m_firstZeroRing = 0;  ///< index of the first PCD point whose ring is 0; the count without one
  PlyPoints m_ply;
  BinFrame m_bin;

  template <typename Source>
  void makeFrom(const Source &source, std::size_t first, std::span<lidar::SDKPointInfo> points) const;
  [[nodiscard]] std::uint16_t plainPcdRing(std::size_t index) const;
  [[nodiscard]] BinPoint pcdPoint(std::size_t index) const;
  [[nodiscard]] BinPoint plyPoint(std::size_t index) const;
};

/// A point as the frame holds it, from metres and raw counts. Azimuth 0 points along +y, 90 along +x.
[[nodiscard]] lidar::SDKPointInfo makePoint(const BinPoint &from);

}  // namespace tarvo::skarnvisor
