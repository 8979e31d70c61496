#pragma once

#include <QString>
#include <QtGlobal>

#include <array>
#include <vector>

namespace tarvo::skarnvisor {

/// What one 16-bit cell of a device-status block means.
///
/// `kind` says how the cell is decoded:
/// 'f' a number, scale x raw + offset; 'b' a temperature through the resistance table;
/// '1' to '4' a word of a wider unsigned number, lowest first, which is told at the word with a `flag`;
/// 's' the first two letters of a text, '-' two more, '|' the last two; anything else a signed 16-bit number.
struct MonitorRow {
  quint8 id = 0;
  char kind = 'f';
  QString name;
  float scale = 1.0F;
  float offset = 0.0F;
  qint32 flag = 0;  ///< of 'f': raw is signed; of '1' to '4': last word of its number
};

/// Neighbouring cells of a board under one name, as a board is written down. `name` has "%1" for the sign of degrees
/// Celsius.
struct BoardCells {
  int first = 0;
  int last = 0;
  const char *name = "";
  char kind = 'f';  ///< 's': one text over all cells; '1': one wide number over all cells; else each cell for itself
  float scale = 1.0F;
  float offset = 0.0F;
  qint32 flag = 0;
};

using Board = std::vector<BoardCells>;

/// The cells of a board by their index, 0 to 255. Built once, read from any thread.
class MonitorTable {
 public:
  static constexpr unsigned cellsAtMost = 256;

  explicit MonitorTable(const Board &board);

  /// Null for a cell that the board does not describe, and beyond 255.
  const MonitorRow *find(unsigned cell) const {
    return cell < cellsAtMost && m_places[cell] >= 0 ? &m_rows[static_cast<std::size_t>(m_places[cell])] : nullptr;
  }

  /// In the order of the cells.
  const std::vector<MonitorRow> &rows() const { return m_rows; }

 private:
  void add(const BoardCells &cells);

  std::vector<MonitorRow> m_rows;
  std::array<qint16, cellsAtMost> m_places{};  ///< place of a cell in m_rows, -1 for none
};

/// `board` without the cells `first` to `last`, as far as they stand in entries of their own.
Board without(Board board, int first, int last);

/// `board` with `more` behind it.
Board with(Board board, const Board &more);

}  // namespace tarvo::skarnvisor
