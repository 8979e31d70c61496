#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <vector>

#include "default/point_files/readers/parallel_parts.h"
#include "default/point_files/readers/raw_vector.h"
#include "default/point_files/readers/text_lines.h"

namespace tarvo::skarnvisor {

struct TextFormat {
  std::uint64_t dataStart = 0;  ///< in the file
  char comment = '\n';          ///< begins lines that are passed over; a line feed: none does
  std::uint64_t mostPoints = std::numeric_limits<std::uint64_t>::max();  ///< lines behind them are not looked at
};

/// Makes a point of each line that holds something, in the file's order, on all cores where the file is large: one look
/// to count the lines, so that each part of the file has its place in `points`, and one to read them. `take(begin, end,
/// point)` fills a cleared point from a line, of which it may look `readableBehindLine` bytes further; false ends the
/// points before that line, and its index is the result.
template <typename Point, typename Take>
std::optional<std::size_t> readTextPoints(const InputFile &file, const TextFormat &format, RawVector<Point> &points,
                                          const Take &take) {
  struct Part {
    std::size_t begin = 0;  // in `points`
    std::size_t room = 0;
    std::size_t found = 0;
    bool broken = false;
  };
  const std::uint64_t bytes = file.size() - std::min(format.dataStart, file.size());
  std::vector<Part> parts(partCountFor(bytes));
  const auto edge = [&](std::size_t part) { return format.dataStart + partBegin(bytes, parts.size(), part); };
  runParts(parts.size(), [&](std::size_t i) {
    parts[i].room = countDataLines(file, format.dataStart, edge(i), edge(i + 1), format.comment);
  });
  std::size_t total = 0;
  for (Part &part : parts) {
    part.begin = total;
    part.room = static_cast<std::size_t>(std::min<std::uint64_t>(part.room, format.mostPoints - total));
    total += part.room;
  }
  renew(points, total);
  runParts(parts.size(), [&](std::size_t i) {
    Part &part = parts[i];
    if (part.room == 0) return;
    forEachLine(file, format.dataStart, edge(i), edge(i + 1), [&](const char *begin, const char *end) {
      if (begin == end || *begin == format.comment) return true;
      Point &point = points[part.begin + part.found];
      point = Point{};
      part.broken = !take(begin, end, point);
      return !part.broken && ++part.found < part.room;
    });
  });

  // A file that changes under the reader leaves parts with room to spare.
  std::size_t end = 0;
  std::optional<std::size_t> broken;
  for (const Part &part : parts) {
    if (part.begin != end && part.found != 0)
      std::memmove(points.data() + end, points.data() + part.begin, part.found * sizeof(Point));
    end += part.found;
    if (!part.broken) continue;
    broken = end;
    break;
  }
  points.resize(end);
  return broken;
}

}  // namespace tarvo::skarnvisor
