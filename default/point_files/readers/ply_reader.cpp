#include "default/point_files/readers/ply_reader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "contracts/host/log.h"
#include "default/point_files/readers/number_text.h"
#include "default/point_files/readers/parallel_parts.h"
#include "default/point_files/readers/ply_header.h"
#include "default/point_files/readers/text_points.h"

SKARN_LOG_SOURCE("default/point_files/ply_reader");

namespace tarvo::skarnvisor {

namespace {

struct WantedProperty {
  const char *name;
  float PlyPoint::*member;
};

constexpr std::array<WantedProperty, 5> wantedProperties = {{{"x", &PlyPoint::x},
                                                             {"y", &PlyPoint::y},
                                                             {"z", &PlyPoint::z},
                                                             {"intensity", &PlyPoint::intensity},
                                                             {"confidence", &PlyPoint::confidence}}};

/// A property of the vertex element and the member that it fills, null for one that is passed over.
struct VertexProperty {
  PlyProperty property;
  std::uint64_t offset = 0;  ///< in a record without lists
  float PlyPoint::*member = nullptr;
};

std::vector<VertexProperty> vertexProperties(const PlyElement &vertex) {
  std::vector<VertexProperty> properties;
  std::uint64_t offset = 0;
  for (const PlyProperty &property : vertex.properties) {
    properties.push_back({property, offset, nullptr});
    offset += scalarSize(property.type);
  }
  for (const WantedProperty &wanted : wantedProperties) {
    const auto found = std::find_if(properties.begin(), properties.end(), [&](const VertexProperty &candidate) {
      return !candidate.property.isList() && candidate.property.name == wanted.name;
    });
    if (found == properties.end()) throw std::runtime_error(std::string("PLY parser: missing property ") + wanted.name);
    found->member = wanted.member;
  }
  return properties;
}

void warnShort(std::uint64_t found, std::uint64_t claimed) {
  SKARN_LOG(LogLevel::Warning, "PLY file ends early: %llu of %llu vertices are there",
            static_cast<unsigned long long>(found), static_cast<unsigned long long>(claimed));
}

/// One line of an ascii vertex. False where a token is missing or no number.
bool readVertexLine(NumberLine line, const std::vector<VertexProperty> &properties, PlyPoint &point) {
  float passedOver = 0.0F;
  for (const VertexProperty &property : properties) {
    if (property.property.isList()) {
      float length = 0.0F;
      if (!line.read(length) || !(length >= 0.0F)) return false;
      // Whatever the length, it ends with the words of the line.
      // NOLINTNEXTLINE(clang-analyzer-security.FloatLoopCounter)
      for (float i = 0.0F; i < length; i += 1.0F)
        if (!line.skipWord()) return false;
    } else if (!line.read(property.member ? point.*property.member : passedOver)) {
      return false;
    }
  }
  return true;
}

/// Where the vertices of an ascii file begin: behind one line an entry for each element in front of them.
std::uint64_t asciiVertexStart(const InputFile &file, const PlyHeader &header, std::uint64_t entriesBefore) {
  std::uint64_t position = header.dataStart;
  if (entriesBefore == 0) return position;
  forEachLine(file, position, position, file.size(), [&](const char *begin, const char *end) {
    position += static_cast<std::uint64_t>(end - begin) + 1;
    char next = '\n';
    if (file.readAt(position - 1, &next, 1) == 1 && next == '\r') ++position;
    if (begin != end) --entriesBefore;
    return entriesBefore > 0;
  });
  return std::min(position, file.size());
}

void readAsciiVertices(const InputFile &file, std::uint64_t start, std::uint64_t claimed,
                       const std::vector<VertexProperty> &properties, PlyPoints &points) {
  TextFormat format;
  format.dataStart = start;
  format.mostPoints = claimed;
  const auto broken =
      readTextPoints(file, format, points, [&properties](const char *begin, const char *end, PlyPoint &point) {
        return readVertexLine(NumberLine(begin, end, readableBehindLine), properties, point);
      });
  if (broken)
    throw std::runtime_error("PLY parser: vertex " + std::to_string(*broken + 1) + " of " + std::to_string(claimed) +
                             " is not a line of as many numbers as the header names");
  if (points.size() < claimed) warnShort(points.size(), claimed);
}

/// Walks binary records of any layout, a buffered block at a time.
class BinaryWalker {
 public:
  BinaryWalker(const InputFile &file, std::uint64_t position, bool bigEndian)
      : m_file(file), m_position(position), m_bigEndian(bigEndian) {}

  /// Reads one number as float; false at the file's end.
  bool read(ScalarType type, double &value) {
    std::array<char, 8> bytes{};
    if (!take(bytes.data(), scalarSize(type))) return false;
    withScalarType(type, [&](auto zero) {
      using T = decltype(zero);
      value = static_cast<double>(m_bigEndian ? loadScalar<T, std::endian::big>(bytes.data())
                                              : loadScalar<T>(bytes.data()));
    });
    return true;
  }

  bool skip(std::uint64_t bytes) {
    if (bytes > m_file.size() - std::min(m_position, m_file.size())) return false;
    m_position += bytes;
    return true;
  }

  /// Steps over one property; false at the file's end.
  bool skip(const PlyProperty &property) {
    if (!property.isList()) return skip(scalarSize(property.type));
    double length = 0.0;
    if (!read(property.lengthType, length)) return false;
    return length <= 0.0 || skip(static_cast<std::uint64_t>(length) * scalarSize(property.type));
  }

  [[nodiscard]] std::uint64_t position() const { return m_position; }

 private:
  bool take(char *target, std::size_t length) {
    if (m_position < m_blockStart || m_position + length > m_blockStart + m_block.size()) {
      m_block.resize(64 * 1024);
      m_blockStart = m_position;
      m_block.resize(m_file.readAt(m_position, m_block.data(), m_block.size()));
      if (m_block.size() < length) return false;
    }
    std::memcpy(target, m_block.data() + (m_position - m_blockStart), length);
    m_position += length;
    return true;
  }

  const InputFile &m_file;
  std::uint64_t m_position;
  bool m_bigEndian;
  std::uint64_t m_blockStart = 0;
  std::vector<char> m_block;
};

/// Where the vertices of a binary file begin; the file's size where it ends before them.
std::uint64_t binaryVertexStart(const InputFile &file, const PlyHeader &header, std::size_t vertexIndex) {
  BinaryWalker walker(file, header.dataStart, header.format == PlyFormat::bigEndian);
  for (std::size_t i = 0; i < vertexIndex; ++i) {
    const PlyElement &element = header.elements[i];
    if (!element.hasList()) {
      const std::uint64_t width = element.recordBytes();
      if (width != 0 && element.count > file.size() / width) return file.size();
      if (!walker.skip(element.count * width)) return file.size();
      continue;
    }
    for (std::uint64_t entry = 0; entry < element.count; ++entry)
      for (const PlyProperty &property : element.properties)
        if (!walker.skip(property)) return file.size();
  }
  return walker.position();
}

template <std::endian Order>
void decodeVertices(const char *records, std::uint64_t width, const std::vector<VertexProperty> &properties,
                    PlyPoint *points, std::uint64_t count) {
  for (const VertexProperty &property : properties) {
    if (!property.member) continue;
    withScalarType(property.property.type, [&](auto zero) {
      const char *first = records + property.offset;
      for (std::uint64_t i = 0; i < count; ++i)
        points[i].*property.member = static_cast<float>(loadScalar<decltype(zero), Order>(first + i * width));
    });
  }
}

void readRecords(const InputFile &file, std::uint64_t start, const PlyElement &vertex, bool bigEndian,
                 const std::vector<VertexProperty> &properties, PlyPoints &points) {
  constexpr std::uint64_t blockBytes = 128 * 1024;
  const std::uint64_t width = vertex.recordBytes();
  const std::uint64_t count = std::min(vertex.count, (file.size() - start) / width);
  if (count < vertex.count) warnShort(count, vertex.count);
  renew(points, count);
  const std::size_t parts = partCountFor(count * width);
  runParts(parts, [&](std::size_t part) {
    const std::uint64_t blockRecords = std::max<std::uint64_t>(1, blockBytes / width);
    const std::uint64_t last = partBegin(count, parts, part + 1);
    RawVector<char> block(blockRecords * width);
    for (std::uint64_t first = partBegin(count, parts, part); first < last; first += blockRecords) {
      const std::uint64_t length = std::min(blockRecords, last - first);
      const std::size_t got = file.readAt(start + first * width, block.data(), length * width);
      if (got < length * width) throw std::runtime_error("PLY parser: the file shrank while it was read");
      const auto decode = bigEndian ? decodeVertices<std::endian::big> : decodeVertices<std::endian::little>;
      decode(block.data(), width, properties, points.data() + first, length);
    }
  });
}

/// Vertices with list properties: no two records need be equally long, so they are walked one by one.
void walkRecords(const InputFile &file, std::uint64_t start, const PlyElement &vertex, bool bigEndian,
                 const std::vector<VertexProperty> &properties, PlyPoints &points) {
  BinaryWalker walker(file, start, bigEndian);
  points.clear();
  for (std::uint64_t i = 0; i < vertex.count; ++i) {
    PlyPoint point{};
    for (const VertexProperty &property : properties) {
      double value = 0.0;
      if (!property.member ? walker.skip(property.property) : walker.read(property.property.type, value)) {
        if (property.member) point.*property.member = static_cast<float>(value);
        continue;
      }
      warnShort(points.size(), vertex.count);
      return;
    }
    points.push_back(point);
  }
}

}  // namespace

void readPly(const std::string &path, PlyPoints &points) {
  points.clear();
  const InputFile file(path);
  if (!file.isOpen()) throw std::runtime_error("PLY parser: could not open file " + path);
  const PlyHeader header = readPlyHeader(file);
  std::uint64_t entriesBefore = 0;
  std::size_t index = 0;
  for (; index < header.elements.size() && header.elements[index].name != "vertex"; ++index)
    entriesBefore += header.elements[index].count;
  if (index == header.elements.size()) throw std::runtime_error("PLY parser: no element with name: vertex");
  const PlyElement &vertex = header.elements[index];
  const std::vector<VertexProperty> properties = vertexProperties(vertex);
  if (header.format == PlyFormat::ascii)
    return readAsciiVertices(file, asciiVertexStart(file, header, entriesBefore), vertex.count, properties, points);
  const bool bigEndian = header.format == PlyFormat::bigEndian;
  const std::uint64_t start = binaryVertexStart(file, header, index);
  (vertex.hasList() ? walkRecords : readRecords)(file, start, vertex, bigEndian, properties, points);
}

PlyPoints readPly(const std::string &path) {
  PlyPoints points;
  readPly(path, points);
  return points;
}

}  // namespace tarvo::skarnvisor
