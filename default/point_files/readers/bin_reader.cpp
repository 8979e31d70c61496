#include "default/point_files/readers/bin_reader.h"

#include <iostream>

#include "default/point_files/readers/input_file.h"
#include "default/point_files/readers/parallel_parts.h"
#include "default/point_files/readers/scalar_types.h"

namespace tarvo::skarnvisor {

namespace {

constexpr std::uint64_t countBytes = 4;
constexpr std::uint64_t fullRecord = 18;
constexpr std::uint64_t shortRecord = 16;

}  // namespace

BinPoint BinFrame::point(std::uint32_t index) const {
  const char *record = bytes.data() + index * recordBytes;
  BinPoint point{};
  point.x = loadScalar<float>(record);
  point.y = loadScalar<float>(record + 4);
  point.z = loadScalar<float>(record + 8);
  point.intensity = loadScalar<std::uint16_t>(record + 12);
  if (recordBytes == fullRecord) point.confidence = loadScalar<std::uint16_t>(record + 14);
  point.ring = loadScalar<std::uint16_t>(record + recordBytes - 2);
  return point;
}

BinResult readBin(const std::string &path, BinFrame &frame) {
  frame.count = 0;
  const InputFile file(path);
  if (!file.isOpen()) return BinResult::notOpened;
  char head[countBytes] = {};
  file.readAt(0, head, sizeof head);
  const auto count = loadScalar<std::uint32_t>(head);
  const std::uint64_t full = countBytes + fullRecord * count;
  const std::uint64_t brief = countBytes + shortRecord * count;
  const auto refuse = [&](std::uint64_t size) {
    std::cerr << "Error: File size mismatch. Expected " << full << " or " << brief << " bytes, got " << size << " bytes"
              << std::endl;
    return BinResult::wrongSize;
  };
  if (file.size() != full && file.size() != brief) return refuse(file.size());
  frame.recordBytes = file.size() == full ? fullRecord : shortRecord;
  const std::uint64_t bytes = file.size() - countBytes;
  renew(frame.bytes, bytes);
  const std::size_t parts = partCountFor(bytes);
  std::vector<std::uint64_t> got(parts, 0);
  runParts(parts, [&](std::size_t part) {
    const std::uint64_t first = partBegin(bytes, parts, part);
    got[part] = file.readAt(countBytes + first, frame.bytes.data() + first, partBegin(bytes, parts, part + 1) - first);
  });
  std::uint64_t total = 0;
  for (const std::uint64_t part : got) total += part;
  if (total != bytes) return refuse(countBytes + total);
  frame.count = count;
  return BinResult::read;
}

}  // namespace tarvo::skarnvisor
