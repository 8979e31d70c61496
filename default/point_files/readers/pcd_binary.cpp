// The two binary kinds of PCD data: records one after another, and LZF-compressed columns.
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <vector>

#include "default/point_files/readers/lzf.h"
#include "default/point_files/readers/parallel_parts.h"
#include "default/point_files/readers/pcd_fields.h"
#include "default/point_files/readers/pcd_file_reader.h"

namespace tarvo::skarnvisor {

namespace {

// Records decoded at a time: small enough that the bytes and the points stay in a core's cache between the field loops.
constexpr std::uint64_t recordBlockBytes = 128 * 1024;

// The most that LZF makes of its input: a reference of three bytes writes up to 264.
constexpr std::uint64_t largestExpansion = 88;

std::uint32_t littleWord(const unsigned char *bytes) {
  return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
         static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

// Writers that map the file into memory leave its last page filled up with zeros.
constexpr std::uint64_t pageBytes = 4096;

/// Whether the file ends at `position`, or holds nothing but such a filling behind it.
bool endsAt(const InputFile &file, std::uint64_t position) {
  if (position > file.size() || file.size() - position >= pageBytes) return false;
  std::vector<char> rest(file.size() - position);
  return file.readAt(position, rest.data(), rest.size()) == rest.size() &&
         std::all_of(rest.begin(), rest.end(), [](char c) { return c == '\0'; });
}

/// Fills `target` on all cores; false where the file gave less.
bool readInParts(const InputFile &file, std::uint64_t position, char *target, std::uint64_t bytes) {
  const std::size_t parts = partCountFor(bytes);
  std::atomic<bool> whole{true};
  runParts(parts, [&](std::size_t part) {
    const std::uint64_t first = partBegin(bytes, parts, part);
    const std::uint64_t wanted = partBegin(bytes, parts, part + 1) - first;
    if (file.readAt(position + first, target + first, wanted) != wanted) whole = false;
  });
  return whole;
}

/// Reads and decodes records [first, last) and returns how many the file gave.
std::uint64_t decodeRecords(const InputFile &file, std::uint64_t dataStart, const PcdRecordPlan &plan,
                            std::uint64_t first, std::uint64_t last, PcdPoint *points) {
  const std::uint64_t blockRecords = std::max<std::uint64_t>(1, recordBlockBytes / plan.width);
  RawVector<char> block(std::min(blockRecords, last - first) * plan.width);
  for (std::uint64_t record = first; record < last;) {
    const std::uint64_t wanted = std::min(blockRecords, last - record);
    const std::size_t got = file.readAt(dataStart + record * plan.width, block.data(), wanted * plan.width);
    const std::uint64_t whole = got / plan.width;
    std::fill_n(points + record, whole, PcdPoint{});
    for (const PcdFieldPlan &field : plan.fields)
      decodePcdField(field, block.data() + field.offset, plan.width, points + record, whole);
    record += whole;
    if (whole < wanted) return record - first;
  }
  return last - first;
}

}  // namespace

bool PcdFileReader::readBinary(const InputFile &file, std::uint64_t dataStart) {
  const PcdRecordPlan plan = pcdRecordPlan(m_header);
  if (plan.width == 0) return true;
  const std::uint64_t available = (file.size() - dataStart) / plan.width;
  std::uint64_t count = m_header.points;
  if (count > available) {
    std::printf("警告: Binary PCD 文件数据不足 (声明点数=%u, 实际可读点数=%u)\n", m_header.points,
                static_cast<std::uint32_t>(available));
    count = available;
  }
  renew(m_points, count);
  const std::size_t parts = partCountFor(count * plan.width);
  std::vector<std::uint64_t> decoded(parts, 0);
  runParts(parts, [&](std::size_t part) {
    decoded[part] = decodeRecords(file, dataStart, plan, partBegin(count, parts, part),
                                  partBegin(count, parts, part + 1), m_points.data());
  });
  for (std::size_t part = 0; part < parts; ++part) {
    const std::uint64_t first = partBegin(count, parts, part);
    if (first + decoded[part] == partBegin(count, parts, part + 1)) continue;
    std::printf("警告: Binary PCD 读取失败，已读取 %u 个点\n", static_cast<std::uint32_t>(first + decoded[part]));
    m_points.resize(first + decoded[part]);
    break;
  }
  return true;
}

bool PcdFileReader::readCompressed(const InputFile &file, std::uint64_t dataStart) {
  unsigned char words[8] = {};
  const std::uint64_t blockStart = dataStart + file.readAt(dataStart, reinterpret_cast<char *>(words), sizeof words);
  m_header.compressed_size = littleWord(words);
  m_header.uncompressed_size = littleWord(words + 4);
  const std::uint32_t packed = m_header.compressed_size;
  const std::uint32_t unpacked = m_header.uncompressed_size;
  if (!endsAt(file, blockStart + packed)) {
    std::printf("错误: 文件大小不匹配 (数据开始位置=%zu, 压缩大小=%u, 文件大小=%zu)\n",
                static_cast<std::size_t>(blockStart), packed, static_cast<std::size_t>(file.size()));
    return false;
  }
  renew(m_packed, packed);
  if (!readInParts(file, blockStart, reinterpret_cast<char *>(m_packed.data()), packed)) {
    std::printf("错误: 读取压缩数据失败\n");
    return false;
  }
  const PcdRecordPlan plan = pcdRecordPlan(m_header);
  const std::uint64_t expected = plan.width * m_header.points;
  if (unpacked != expected) {
    std::printf("错误: 解压数据大小不匹配 (解压大小=%u, 预期大小=%u)\n", unpacked,
                static_cast<std::uint32_t>(expected));
    return false;
  }
  // A claim beyond what the input can expand to fails in the decompressor; the block needn't be as large as the claim.
  renew(m_columns, std::min<std::uint64_t>(unpacked, packed * largestExpansion + largestExpansion));
  if (!lzfDecompress(m_packed.data(), packed, m_columns.data(), unpacked)) {
    std::printf("解压失败\n");
    return false;
  }
  const std::uint64_t count = plan.width == 0 ? 0 : m_header.points;
  renew(m_points, count);
  const std::size_t parts = partCountFor(unpacked);
  const auto *bytes = reinterpret_cast<const char *>(m_columns.data());
  runParts(parts, [&](std::size_t part) {
    constexpr std::uint64_t blockPoints = 4096;
    const std::uint64_t last = partBegin(count, parts, part + 1);
    for (std::uint64_t first = partBegin(count, parts, part); first < last; first += blockPoints) {
      const std::uint64_t length = std::min(blockPoints, last - first);
      std::fill_n(m_points.data() + first, length, PcdPoint{});
      for (const PcdFieldPlan &field : plan.fields)
        decodePcdField(field, bytes + count * field.offset + first * field.fieldBytes, field.fieldBytes,
                       m_points.data() + first, length);
    }
  });
  return true;
}

}  // namespace tarvo::skarnvisor
