#include "default/point_files/point_file_writer.h"

#include <QByteArray>
#include <QFileInfo>
#include <QSaveFile>
#include <array>
#include <charconv>
#include <cstring>
#include <exception>

namespace tarvo::skarnvisor {

namespace {

constexpr int blockBytes = 1 << 20;

/// Collects bytes and passes them to the file block by block; the file takes the place of an older one at `finish`.
class BlockWriter {
 public:
  explicit BlockWriter(const QString &path) : m_file(path) {
    m_block.reserve(blockBytes + 256);
    m_good = m_file.open(QIODevice::WriteOnly);
  }

  void add(const char *bytes, std::size_t count) {
    m_block.append(bytes, static_cast<int>(count));
    if (m_block.size() >= blockBytes) pass();
  }
  void add(const QByteArray &bytes) { add(bytes.constData(), static_cast<std::size_t>(bytes.size())); }

  template <typename T>
  void addBytes(T value) {
    std::array<char, sizeof(T)> bytes;
    std::memcpy(bytes.data(), &value, sizeof value);
    add(bytes.data(), bytes.size());
  }

  /// As an output stream in its default format writes it: six significant digits.
  void addNumber(float value) {
    std::array<char, 32> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), static_cast<double>(value),
                                   std::chars_format::general, 6);
    add(text.data(), static_cast<std::size_t>(end.ptr - text.data()));
  }
  /// The shortest text that reads back as the same value.
  void addExact(float value) { addShortest(value); }
  void addWhole(unsigned value) { addShortest(value); }

  QString finish() {
    pass();
    if (m_good && m_file.flush() && m_file.commit()) return {};
    return QStringLiteral("%1 cannot be written: %2").arg(m_file.fileName(), m_file.errorString());
  }

 private:
  template <typename T>
  void addShortest(T value) {
    std::array<char, 32> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value);
    add(text.data(), static_cast<std::size_t>(end.ptr - text.data()));
  }

  void pass() {
    if (m_good) m_good = m_file.write(m_block) == m_block.size();
    m_block.resize(0);
  }

  QSaveFile m_file;
  QByteArray m_block;
  bool m_good = false;
};

QByteArray pcdHeader(const char *fields, std::size_t count) {
  const QByteArray number = QByteArray::number(static_cast<qulonglong>(count));
  return QByteArray("# .PCD v.7 - Point Cloud Data file format\nVERSION .7\n") + fields + "WIDTH " + number +
         "\nHEIGHT 1\nVIEWPOINT 0 0 0 1 0 0 0\nPOINTS " + number + "\nDATA ascii\n";
}

}  // namespace

QString writeBinFile(const PointFile &file, const QString &path) {
  BlockWriter writer(path);
  writer.addBytes(static_cast<std::uint32_t>(file.count()));
  for (std::size_t i = 0; i < file.count(); ++i) {
    const BinPoint point = file.point(i);
    for (const float coordinate : {point.x, point.y, point.z}) writer.addBytes(coordinate);
    for (const std::uint16_t word : {point.intensity, point.confidence, point.ring}) writer.addBytes(word);
  }
  return writer.finish();
}

QString writePcdFile(const PointFile &file, const QString &path) {
  BlockWriter writer(path);
  writer.add(pcdHeader(
      "FIELDS x y z intensity confidence ring\nSIZE 4 4 4 2 2 2\nTYPE F F F U U U\nCOUNT 1 1 1 1 1 1\n", file.count()));
  for (std::size_t i = 0; i < file.count(); ++i) {
    const BinPoint point = file.point(i);
    for (const float coordinate : {point.x, point.y, point.z}) {
      writer.addExact(coordinate);
      writer.add(" ", 1);
    }
    writer.addWhole(point.intensity);
    writer.add(" ", 1);
    writer.addWhole(point.confidence);
    writer.add(" ", 1);
    writer.addWhole(point.ring);
    writer.add("\n", 1);
  }
  return writer.finish();
}

QString writeCsvFile(const PointFile &file, const QString &path) {
  BlockWriter writer(path);
  writer.add("x,y,z,intensity,confidence,ring,distance,azimuth,elevation\n");
  for (std::size_t i = 0; i < file.count(); ++i) {
    const lidar::SDKPointInfo point = makePoint(file.point(i));
    for (const float coordinate : {point.x, point.y, point.z}) {
      writer.addExact(coordinate);
      writer.add(",", 1);
    }
    for (const std::uint16_t word : {point.intensity, point.confidence, point.channel}) {
      writer.addWhole(word);
      writer.add(",", 1);
    }
    writer.addExact(point.distance);
    writer.add(",", 1);
    writer.addExact(point.azimuthCalib);
    writer.add(",", 1);
    writer.addExact(point.elevationCalib);
    writer.add("\n", 1);
  }
  return writer.finish();
}

WriteOutcome writeCapture(std::span<const CapturedPoint> points, const QString &path, WriteProgress &progress) {
  constexpr std::size_t stride = 1 << 16;
  progress.total = static_cast<std::int64_t>(points.size());
  BlockWriter writer(path);
  writer.add(pcdHeader("FIELDS x y z intensity\nSIZE 4 4 4 4\nTYPE F F F F\nCOUNT 1 1 1 1\n", points.size()));
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (i % stride == 0) {
      progress.done = static_cast<std::int64_t>(i);
      if (progress.cancelled) return {WriteOutcome::End::Cancelled, {}};
    }
    for (const float coordinate : {points[i].x, points[i].y, points[i].z}) {
      writer.addNumber(coordinate);
      writer.add(" ", 1);
    }
    writer.addWhole(points[i].intensity);
    writer.add("\n", 1);
  }
  if (progress.cancelled) return {WriteOutcome::End::Cancelled, {}};
  const QString fault = writer.finish();
  return {fault.isEmpty() ? WriteOutcome::End::Written : WriteOutcome::End::NotWritten, fault};
}

QString convertPointFile(const QString &from, const QString &to) {
  PointFile file;
  try {
    static_cast<void>(file.read(from));
    if (!file.complaint().isEmpty()) return QStringLiteral("%1 cannot be read: %2").arg(from, file.complaint());
  } catch (const std::exception &failure) {
    return QStringLiteral("%1 cannot be read: %2").arg(from, QString::fromLocal8Bit(failure.what()));
  }
  const QString suffix = QFileInfo(to).suffix();
  if (suffix == QLatin1String("bin")) return writeBinFile(file, to);
  if (suffix == QLatin1String("pcd")) return writePcdFile(file, to);
  if (suffix == QLatin1String("csv")) return writeCsvFile(file, to);
  return QStringLiteral("%1: points are written as .bin, .pcd or .csv").arg(to);
}

}  // namespace tarvo::skarnvisor
