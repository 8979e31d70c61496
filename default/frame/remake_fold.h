#pragma once

#include <algorithm>
#include <cstddef>

namespace tarvo::skarnvisor {

/// The 2-D remake lays the points of a frame out as a grid, in their order; frames that were merged in
/// one decode and are equally long fold onto one grid.
class RemakeFold {
 public:
  struct Cell {
    int row;
    int column;
  };

  RemakeFold() = default;

  /// \param width columns of the grid; below 1 counts as 1
  /// \param merged frames in the decode
  /// \param pointCount points of the decode
  RemakeFold(int width, int merged, int pointCount)
      : m_width(std::max(width, 1)),
        m_perFrame(merged >= 2 && pointCount / merged > 0 && pointCount % merged == 0 ? pointCount / merged
                                                                                      : pointCount),
        m_last(m_perFrame > 0 ? cellOf(static_cast<std::size_t>(m_perFrame) - 1) : Cell{-1, -1}),
        m_centre{m_perFrame / m_width / 2, m_width / 2} {}

  /// Cell of the point with this index.
  [[nodiscard]] Cell cellOf(std::size_t index) const noexcept {
    const auto plain = static_cast<int>(index);
    const int folded = m_perFrame > 0 ? plain % m_perFrame : plain;
    return {folded / m_width, folded % m_width};
  }

  /// Cell of the point behind the one at `cell`; saves the divisions of `cellOf` in a loop.
  [[nodiscard]] Cell next(Cell cell) const noexcept {
    if (cell.row == m_last.row && cell.column == m_last.column) {
      return {0, 0};
    }
    return cell.column + 1 == m_width ? Cell{cell.row + 1, 0} : Cell{cell.row, cell.column + 1};
  }

  /// Coordinates, in metres, that stand in for the point's own: x is 0, the grid is centred.
  [[nodiscard]] float yOf(Cell cell) const noexcept { return static_cast<float>(cell.row - m_centre.row); }
  [[nodiscard]] float zOf(Cell cell) const noexcept { return static_cast<float>(cell.column - m_centre.column); }

 private:
  int m_width = 1;
  int m_perFrame = 0;
  Cell m_last{-1, -1};
  Cell m_centre{0, 0};
};

}  // namespace tarvo::skarnvisor
