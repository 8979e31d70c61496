// The text kind of PCD data: one point a line, one token a field.
#include <cstring>
#include <vector>

#include "default/point_files/readers/number_text.h"
#include "default/point_files/readers/parallel_parts.h"
#include "default/point_files/readers/pcd_fields.h"
#include "default/point_files/readers/pcd_file_reader.h"
#include "default/point_files/readers/text_lines.h"

namespace tarvo::skarnvisor {

namespace {

/// Fills the point's places token by token; a token that doesn't parse leaves its place and all later ones at 0.
void readFields(NumberLine &line, const std::vector<PcdPlace> &places, PcdPoint &point) {
  float passedOver = 0.0F;
  for (const PcdPlace place : places) {
    bool good = false;
    switch (place) {
      case PcdPlace::x:
        good = line.read(point.x);
        break;
      case PcdPlace::y:
        good = line.read(point.y);
        break;
      case PcdPlace::z:
        good = line.read(point.z);
        break;
      case PcdPlace::intensity:
        good = line.read(point.intensity);
        break;
      case PcdPlace::confidence:
        good = line.read(point.confidence);
        break;
      case PcdPlace::ring:
        good = line.read(point.ring);
        break;
      case PcdPlace::rowId:
        good = line.read(point.rowId);
        break;
      case PcdPlace::none:
        good = line.read(passedOver);
        break;
    }
    if (!good) return;
  }
}

}  // namespace

bool PcdFileReader::readAscii(const InputFile &file, std::uint64_t dataStart) {
  std::vector<PcdPlace> places;
  for (const std::string &field : m_header.fields) places.push_back(pcdPlace(field));

  const std::uint64_t bytes = file.size() - dataStart;
  const std::size_t parts = partCountFor(bytes);
  std::vector<PcdPoints> found(parts);
  runParts(parts, [&](std::size_t part) {
    const std::uint64_t first = dataStart + partBegin(bytes, parts, part);
    const std::uint64_t last = dataStart + partBegin(bytes, parts, part + 1);
    PcdPoints &points = found[part];
    std::uint64_t taken = 0;  // bytes of the lines so far
    forEachLine(file, dataStart, first, last, [&](const char *begin, const char *end) {
      if (begin == end || *begin == '#') return true;
      PcdPoint point{};
      NumberLine line(begin, end);
      readFields(line, places, point);
      points.push_back(point);
      taken += static_cast<std::uint64_t>(end - begin) + 1;
      if (points.size() == linesOfEstimate) points.reserve(estimatedLines(last - first, taken));
      return true;
    });
  });

  if (parts == 1) {
    m_points = std::move(found.front());
    return true;
  }
  std::vector<std::size_t> starts(parts + 1, 0);
  for (std::size_t part = 0; part < parts; ++part) starts[part + 1] = starts[part] + found[part].size();
  m_points.resize(starts[parts]);
  runParts(parts, [&](std::size_t part) {
    if (!found[part].empty())
      std::memcpy(m_points.data() + starts[part], found[part].data(), found[part].size() * sizeof(PcdPoint));
    found[part] = PcdPoints{};
  });
  return true;
}

}  // namespace tarvo::skarnvisor
