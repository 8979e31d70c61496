#include "default/point_files/readers/pcd_file_reader.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace tarvo::skarnvisor {

bool PcdFileReader::read(const std::string &path) {
  const InputFile file(path);
  if (!file.isOpen()) throw std::runtime_error("无法打开文件: " + path);
  m_points.clear();
  m_header = PcdHeader{};
  std::uint64_t dataStart = 0;
  if (!readPcdHeader(file, m_header, dataStart)) {
    std::printf("解析文件头失败\n");
    return false;
  }
  switch (m_header.data_kind) {
    case PcdDataKind::ascii:
      return readAscii(file, dataStart);
    case PcdDataKind::binary:
      return readBinary(file, dataStart);
    case PcdDataKind::binary_compressed:
      return readCompressed(file, dataStart);
  }
  throw std::runtime_error("不支持的数据格式");
}

bool PcdFileReader::hasField(std::string_view name) const {
  return std::find(m_header.fields.begin(), m_header.fields.end(), name) != m_header.fields.end();
}

}  // namespace tarvo::skarnvisor
