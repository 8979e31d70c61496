#include "default/point_files/point_file.h"

#include <QFile>
#include <cmath>
#include <numbers>

#include "default/point_files/readers/scalar_types.h"

namespace tarvo::skarnvisor {

namespace {

constexpr float degreesPerRadian = 180.0F / std::numbers::pi_v<float>;
constexpr std::size_t ringsWithoutField = 1024;  // a file without rings counts through these

std::uint16_t ringByIndex(std::size_t index) { return static_cast<std::uint16_t>(index % ringsWithoutField + 1); }

}  // namespace

PointFormat pointFormatOf(const QString &path) {
  if (path.endsWith(QLatin1String(".ply"))) return PointFormat::ply;
  if (path.endsWith(QLatin1String(".bin"))) return PointFormat::bin;
  if (path.endsWith(QLatin1String(".pcd"))) return PointFormat::pcd;
  return PointFormat::none;
}

lidar::SDKPointInfo makePoint(const BinPoint &from) {
  lidar::SDKPointInfo point{};
  point.x = from.x;
  point.y = from.y;
  point.z = from.z;
  const float across = std::sqrt(from.x * from.x + from.y * from.y);
  point.distance = std::sqrt(from.x * from.x + from.y * from.y + from.z * from.z);
  point.azimuthCalib = std::atan2(from.x, from.y) * degreesPerRadian;
  point.elevationCalib = std::atan2(from.z, across) * degreesPerRadian;
  point.channel = from.ring;
  point.intensity = from.intensity;
  point.confidence = from.confidence;
  return point;
}

PointFile::Result PointFile::read(const QString &path) {
  m_format = pointFormatOf(path);
  m_count = 0;
  m_complaint.clear();
  const std::string localPath = QFile::encodeName(path).toStdString();
  switch (m_format) {
    case PointFormat::ply:
      readPly(localPath, m_ply);
      m_count = m_ply.size();
      return Result::read;
    case PointFormat::bin:
      return readBinFile(localPath);
    case PointFormat::pcd:
      return readPcd(localPath);
    case PointFormat::none:
      m_complaint = QStringLiteral("a point file is read only with its suffix in lower case: .pcd, .ply or .bin");
      break;
  }
  return Result::nothingRead;
}

PointFile::Result PointFile::readBinFile(const std::string &path) {
  switch (readBin(path, m_bin)) {
    case BinResult::read:
      m_count = m_bin.count;
      return Result::read;
    case BinResult::notOpened:
      m_complaint = QStringLiteral("the file cannot be opened");
      return Result::nothingRead;
    case BinResult::wrongSize:
      m_complaint = QStringLiteral("the size of the file fits neither width of its records");
      break;
  }
  return Result::refused;
}

PointFile::Result PointFile::readPcd(const std::string &path) {
  if (!m_pcd.read(path)) {
    m_complaint = QStringLiteral("the compressed points of the file are damaged");
    return Result::nothingRead;
  }
  if (m_pcd.header().fields.empty()) m_complaint = QStringLiteral("the file has no PCD header that names fields");
  m_count = m_pcd.points().size();
  m_hasRing = m_pcd.hasField("ring");
  m_hasRowId = m_pcd.hasField("rowId");
  m_firstZeroRing = m_count;
  if (m_hasRing || m_hasRowId) {
    m_firstZeroRing = 0;
    while (m_firstZeroRing < m_count && plainPcdRing(m_firstZeroRing) != 0) ++m_firstZeroRing;
  }
  return Result::read;
}

std::uint16_t PointFile::plainPcdRing(std::size_t index) const {
  const PcdPoint &point = m_pcd.points()[index];
  if (m_hasRing) return point.ring;
  return m_hasRowId ? static_cast<std::uint16_t>(point.rowId + 1) : ringByIndex(index);
}

// Rings of a file that counts them from 0 are raised by 1, from the first 0 on.
BinPoint PointFile::pcdPoint(std::size_t index) const {
  const PcdPoint &point = m_pcd.points()[index];
  const int raise = index >= m_firstZeroRing ? 1 : 0;
  return {point.x,
          point.y,
          point.z,
          lowWord(point.intensity),
          lowWord(point.confidence),
          static_cast<std::uint16_t>(plainPcdRing(index) + raise)};
}

BinPoint PointFile::plyPoint(std::size_t index) const {
  const PlyPoint &point = m_ply[index];
  return {point.x, point.y, point.z, lowWord(point.intensity), lowWord(point.confidence), ringByIndex(index)};
}

BinPoint PointFile::point(std::size_t index) const {
  switch (m_format) {
    case PointFormat::ply:
      return plyPoint(index);
    case PointFormat::bin:
      return m_bin.point(static_cast<std::uint32_t>(index));
    case PointFormat::pcd:
      return pcdPoint(index);
    case PointFormat::none:
      break;
  }
  return {};
}

template <typename Source>
void PointFile::makeFrom(const Source &source, std::size_t first, std::span<lidar::SDKPointInfo> points) const {
  for (std::size_t i = 0; i < points.size(); ++i) points[i] = makePoint(source(first + i));
}

void PointFile::makePoints(std::size_t first, std::span<lidar::SDKPointInfo> points) const {
  switch (m_format) {
    case PointFormat::ply:
      return makeFrom([this](std::size_t i) { return plyPoint(i); }, first, points);
    case PointFormat::bin:
      return makeFrom([this](std::size_t i) { return m_bin.point(static_cast<std::uint32_t>(i)); }, first, points);
    case PointFormat::pcd:
      return makeFrom([this](std::size_t i) { return pcdPoint(i); }, first, points);
    case PointFormat::none:
      return;
  }
}

}  // namespace tarvo::skarnvisor
