#pragma once

#include "default/telemetry/monitor_decoder.h"

#include <QtEndian>

#include <array>
#include <string>
#include <vector>

namespace tarvo::skarnvisor::test {

/// A device-status block by hand.
class BlockMaker {
 public:
  explicit BlockMaker(quint32 count = 256, quint8 variant = 0) {
    m_bytes[0] = 1;
    m_bytes[status_block::variantOffset] = variant;
    qToLittleEndian(count, m_bytes.data() + status_block::countOffset);
  }

  BlockMaker &cell(unsigned group, unsigned index, quint16 value, quint8 valid = 1) {
    unsigned char *const at = m_bytes.data() + status_block::groupsOffset + group * status_block::groupBytes +
                              index * status_block::cellBytes;
    qToLittleEndian(value, at);
    at[2] = valid;
    return *this;
  }

  /// Two letters of a text, the first in the low byte.
  BlockMaker &letters(unsigned group, unsigned index, const char *two) {
    return cell(group, index, static_cast<quint16>(two[0] | two[1] << 8));
  }

  const unsigned char *data() const { return m_bytes.data(); }
  std::array<unsigned char, status_block::blockBytes> bytes() const { return m_bytes; }

 private:
  std::array<unsigned char, status_block::blockBytes> m_bytes{};
};

/// "id name=value" of each row.
inline std::vector<std::string> texts(const std::vector<NamedValue> &rows) {
  std::vector<std::string> out;
  for (const NamedValue &row : rows)
    out.push_back(QStringLiteral("%1 %2=%3").arg(row.id).arg(row.name, row.value.toString()).toStdString());
  return out;
}

using Texts = std::vector<std::string>;

}  // namespace tarvo::skarnvisor::test
