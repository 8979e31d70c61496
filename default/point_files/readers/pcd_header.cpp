#include "default/point_files/readers/pcd_header.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

namespace tarvo::skarnvisor {

namespace {

/// Hands out the lines of a file from its start, reading a block at a time. A line ends at a line feed or the file's
/// end.
class LineReader {
 public:
  explicit LineReader(const InputFile &file) : m_file(file) {}

  bool next(std::string &line) {
    line.clear();
    for (;;) {
      const std::size_t end = m_block.find('\n', m_position);
      if (end != std::string::npos) {
        take(line, end);
        m_position = end + 1;
        return true;
      }
      take(line, m_block.size());
      m_position = m_block.size();
      if (!readBlock()) return !line.empty();
    }
  }

  /// Bytes of the file before the next line.
  [[nodiscard]] std::uint64_t position() const { return m_blockStart + m_position; }

 private:
  static constexpr std::size_t blockSize = 16 * 1024;
  static constexpr std::size_t longestLine = 64 * 1024;  // what follows is passed over: no header line is as long

  void take(std::string &line, std::size_t end) const {
    const std::size_t room = longestLine - line.size();
    line.append(m_block, m_position, std::min(end - m_position, room));
  }

  bool readBlock() {
    m_blockStart += m_block.size();
    m_position = 0;
    m_block.resize(blockSize);
    m_block.resize(m_file.readAt(m_blockStart, m_block.data(), blockSize));
    return !m_block.empty();
  }

  const InputFile &m_file;
  std::string m_block;
  std::uint64_t m_blockStart = 0;
  std::size_t m_position = 0;
};

template <typename T>
void appendAll(std::istringstream &words, std::vector<T> &list) {
  for (T value; words >> value;) list.push_back(value);
}

PcdDataKind dataKind(const std::string &word) {
  if (word == "binary") return PcdDataKind::binary;
  if (word == "binary_compressed") return PcdDataKind::binary_compressed;
  return PcdDataKind::ascii;
}

/// Takes one header line; true when it was the DATA line.
bool takeLine(const std::string &line, PcdHeader &header) {
  std::istringstream words(line);
  std::string key;
  words >> key;
  if (key == "VERSION") {
    words >> header.version;
  } else if (key == "FIELDS") {
    appendAll(words, header.fields);
  } else if (key == "SIZE" || key == "SIZES") {
    appendAll(words, header.sizes);
  } else if (key == "TYPE" || key == "TYPES") {
    appendAll(words, header.types);
  } else if (key == "COUNT" || key == "COUNTS") {
    appendAll(words, header.counts);
  } else if (key == "WIDTH") {
    words >> header.width;
  } else if (key == "HEIGHT") {
    words >> header.height;
  } else if (key == "VIEWPOINT") {
    appendAll(words, header.viewpoint);
  } else if (key == "POINTS") {
    words >> header.points;
  } else if (key == "DATA") {
    std::string word;
    words >> word;
    header.data_kind = dataKind(word);
    return true;
  }
  return false;
}

}  // namespace

bool readPcdHeader(const InputFile &file, PcdHeader &header, std::uint64_t &dataStart) {
  LineReader lines(file);
  std::string line;
  dataStart = file.size();
  while (lines.next(line)) {
    if (line.empty() || line.front() == '#') continue;
    if (!takeLine(line, header)) continue;
    dataStart = lines.position();
    break;
  }
  if (std::uint64_t{header.width} * header.height != header.points)
    std::printf("警告: 点云数据大小不匹配 (宽度=%u, 高度=%u, 点数=%u)，将使用 POINTS 值\n", header.width, header.height,
                header.points);
  return true;
}

}  // namespace tarvo::skarnvisor
