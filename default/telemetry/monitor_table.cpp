#include "default/telemetry/monitor_table.h"

#include <algorithm>

namespace tarvo::skarnvisor {

namespace {

constexpr ushort celsiusSign = 0x2103;

QString shownName(const char *name) {
  const QString text = QString::fromUtf8(name);
  return text.contains(QLatin1String("%1")) ? text.arg(QChar(celsiusSign), 0, QLatin1Char(' ')) : text;
}

char kindWithin(const BoardCells &cells, int cell) {
  if (cells.kind == 's') return cell == cells.first ? 's' : cell == cells.last ? '|' : '-';
  if (cells.kind == '1' && cells.last > cells.first) return static_cast<char>('1' + (cell - cells.first));
  return cells.kind;
}

}  // namespace

MonitorTable::MonitorTable(const Board &board) {
  for (const BoardCells &cells : board) add(cells);
  std::sort(m_rows.begin(), m_rows.end(), [](const MonitorRow &a, const MonitorRow &b) { return a.id < b.id; });
  m_places.fill(-1);
  for (std::size_t i = 0; i < m_rows.size(); ++i) m_places[m_rows[i].id] = static_cast<qint16>(i);
}

void MonitorTable::add(const BoardCells &cells) {
  const QString name = shownName(cells.name);
  for (int cell = cells.first; cell <= cells.last; ++cell) {
    const bool wordBefore = cells.kind == '1' && cell != cells.last;
    m_rows.push_back({static_cast<quint8>(cell), kindWithin(cells, cell), name, cells.scale, cells.offset,
                      wordBefore ? 0 : cells.flag});
  }
}

Board without(Board board, int first, int last) {
  std::erase_if(board, [=](const BoardCells &cells) { return cells.first >= first && cells.last <= last; });
  return board;
}

Board with(Board board, const Board &more) {
  board.insert(board.end(), more.begin(), more.end());
  return board;
}

}  // namespace tarvo::skarnvisor
