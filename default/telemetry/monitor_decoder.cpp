#include "default/telemetry/monitor_decoder.h"

#include <QtEndian>

#include <algorithm>
#include <utility>

namespace tarvo::skarnvisor {

namespace {

constexpr int shownDecimals = 2;
constexpr float unknownCelsius = -40.0F;

QVariant shown(float value) { return QString::number(static_cast<double>(value), 'f', shownDecimals); }

/// Decodes the cells of one group, in their order.
class GroupDecoder {
 public:
  GroupDecoder(const ResistanceTable &rntc, std::vector<NamedValue> &rows) : m_rntc(rntc), m_rows(rows) {}

  void take(const MonitorRow &row, quint16 raw);

 private:
  void emitRow(const MonitorRow &row, QVariant value) { m_rows.push_back({row.id, row.name, std::move(value)}); }
  void addLetters(quint16 raw) {
    m_text += QLatin1Char(static_cast<char>(raw & 0xFF));
    m_text += QLatin1Char(static_cast<char>(raw >> 8));
  }

  const ResistanceTable &m_rntc;
  std::vector<NamedValue> &m_rows;
  QString m_text;
  quint64 m_sum = 0;
};

void GroupDecoder::take(const MonitorRow &row, quint16 raw) {
  const auto asSigned = static_cast<qint16>(raw);
  switch (row.kind) {
    case 'f': {
      const float number = row.flag != 0 ? static_cast<float>(asSigned) : static_cast<float>(raw);
      emitRow(row, shown(row.scale * number + row.offset));
      break;
    }
    case 'b':
      emitRow(row, shown(thermistorCelsius(raw, m_rntc)));
      break;
    case '1':
    case '2':
    case '3':
    case '4':
      m_sum += quint64{raw} << (16 * (row.kind - '1'));
      if (row.flag != 0) emitRow(row, std::exchange(m_sum, 0));
      break;
    case 's':
      m_text.clear();
      addLetters(raw);
      break;
    case '-':
      addLetters(raw);
      break;
    case '|':
      addLetters(raw);
      emitRow(row, m_text);
      break;
    default:
      emitRow(row, int{asSigned});
      break;
  }
}

}  // namespace

float thermistorCelsius(quint16 raw, const ResistanceTable &table) {
  constexpr double seriesOhms = 2.2;  // kilo-ohms, as the table counts
  constexpr double fullScale = 4096.0;
  const auto r = static_cast<float>(raw * seriesOhms / (fullScale - raw));
  const auto found = std::find_if(table.resistances.begin(), table.resistances.end(),
                                  [r](float resistance) { return r > resistance; });
  if (found == table.resistances.begin() || found == table.resistances.end()) return unknownCelsius;
  const auto i = static_cast<std::size_t>(found - table.resistances.begin());
  const float along = (table.resistances[i - 1] - r) / (table.resistances[i - 1] - table.resistances[i]);
  return along * (table.temperatures[i] - table.temperatures[i - 1]) + table.temperatures[i - 1];
}

void decodeGroup(const unsigned char *cells, quint32 count, const MonitorTable &table, const ResistanceTable &rntc,
                 std::vector<NamedValue> &rows) {
  GroupDecoder decoder(rntc, rows);
  const quint32 present = std::min<quint32>(count, MonitorTable::cellsAtMost);
  for (quint32 i = 0; i < present; ++i) {
    const unsigned char *const cell = cells + i * status_block::cellBytes;
    if (cell[2] == 0) continue;
    if (const MonitorRow *const row = table.find(i)) decoder.take(*row, qFromLittleEndian<quint16>(cell));
  }
}

std::vector<NamedValue> decodeMonitor(const unsigned char *block, const MonitorBoards &boards,
                                      const ResistanceTable &rntc) {
  const auto count = qFromLittleEndian<quint32>(block + status_block::countOffset);
  std::vector<NamedValue> rows;
  std::size_t most = 0;
  for (const MonitorTable *const table : boards) most += table != nullptr ? table->rows().size() : 0;
  rows.reserve(most);
  const unsigned char *cells = block + status_block::groupsOffset;
  for (const MonitorTable *const table : boards) {
    if (table != nullptr) decodeGroup(cells, count, *table, rntc, rows);
    cells += status_block::groupBytes;
  }
  return rows;
}

}  // namespace tarvo::skarnvisor
