#include "app/window/row_search.h"

#include <array>
#include <cmath>

namespace tarvo::skarnvisor::app {
namespace {

/// The canvas holds whole millimetres, the table rounds to three decimals.
constexpr double reach = 0.00101;

}  // namespace

int rowOfPoint(const QAbstractItemModel &table, const QStringList &columnNames, const QVector3D &place) {
  std::array<int, 3> columns{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    columns[axis] = static_cast<int>(columnNames.indexOf(QString(QChar("xyz"[axis])) + QStringLiteral("(m)")));
    if (columns[axis] < 0) return -1;
  }
  int found = -1;
  double nearest = 3 * reach;
  for (int row = 0, rows = table.rowCount(); row < rows; ++row) {
    double away = 0;
    for (std::size_t axis = 0; axis < 3 && away < nearest; ++axis) {
      const double off = std::abs(table.data(table.index(row, columns[axis])).toDouble() -
                                  static_cast<double>(place[static_cast<int>(axis)]));
      away = off > reach ? nearest : away + off;
    }
    if (away >= nearest) continue;
    nearest = away;
    found = row;
  }
  return found;
}

}  // namespace tarvo::skarnvisor::app
