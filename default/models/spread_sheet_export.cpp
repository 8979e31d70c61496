// The point table as comma-separated values.
#include "default/models/spread_sheet_model.h"

#include <algorithm>
#include <vector>

namespace tarvo::skarnvisor {

namespace {

constexpr std::size_t rowsPerPiece = 4096;
/// Rows that are read in one go; between two such runs the points may change.
constexpr std::size_t rowsPerRun = 32 * rowsPerPiece;

using Columns = std::vector<const ColumnRecord *>;

/// The columns of `titles`, or all. False with a title that the table lacks, which is left in `missing`.
bool chooseColumns(const QVector<ColumnRecord> &all, const QStringList &titles, Columns &chosen, QString &missing) {
  if (titles.isEmpty())
    for (const ColumnRecord &column : all) chosen.push_back(&column);
  for (const QString &title : titles) {
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const ColumnRecord &column) { return column.title == title; });
    if (found == all.end()) {
      missing = title;
      return false;
    }
    chosen.push_back(&*found);
  }
  return true;
}

/// Each cell and the comma behind it, then the line's end.
void appendRow(const Columns &columns, std::uint32_t position, TextStream &text) {
  for (const ColumnRecord *const column : columns) {
    column->text(position, text);
    text.append(',');
  }
  text.append('\n');
}

void appendLine(const QStringList &cells, TextStream &text) {
  for (const QString &cell : cells) text.append((cell.toLocal8Bit() + ',').toStdString());
  text.append('\n');
}

/// Rows [begin, end) from cells, one after the other.
void formatCells(const Columns &columns, std::size_t begin, std::size_t end, TextStream &text) {
  for (std::size_t row = begin; row < end; ++row) {
    QStringList cells;
    for (const ColumnRecord *const column : columns) cells.append(column->value(static_cast<int>(row)).toString());
    appendLine(cells, text);
  }
}

/// Rows [begin, end) from the points, in pieces at the same time.
void formatPoints(const Columns &columns, std::span<const std::uint32_t> positions, std::size_t begin, std::size_t end,
                  std::vector<TextStream> &texts) {
  texts.resize((end - begin + rowsPerPiece - 1) / rowsPerPiece);
  formatPieces(texts, [&](std::size_t piece, TextStream &text) {
    const std::size_t last = std::min(end, begin + (piece + 1) * rowsPerPiece);
    for (std::size_t row = begin + piece * rowsPerPiece; row < last; ++row)
      appendRow(columns, row < positions.size() ? positions[row] : UINT32_MAX, text);
  });
}

}  // namespace

bool SpreadSheetModel::exportPointsInformation(QString filePath) const {
  WriteProgress progress;
  return writeTable(filePath, {}, progress).written();
}

WriteOutcome SpreadSheetModel::writeTable(const QString &filePath, const QStringList &titles,
                                          WriteProgress &progress) const {
  const auto layout = m_layout.take();
  const auto rows = static_cast<std::size_t>(std::max<int>(m_rowCount, 0));
  Columns columns;
  QString missing;
  if (!chooseColumns(layout->columns, titles, columns, missing))
    return {WriteOutcome::End::NotWritten, QStringLiteral("the table has no column \"%1\"").arg(missing)};
  const bool direct = m_rowAccess && std::all_of(columns.begin(), columns.end(),
                                                 [](const ColumnRecord *column) { return bool(column->text); });
  progress.total = static_cast<std::int64_t>(rows);
  OutputFile file(filePath);
  if (!file.open()) return {WriteOutcome::End::NotOpened, QStringLiteral("open file error! %1").arg(file.error())};

  std::vector<TextStream> texts(1);
  QStringList names;
  for (const ColumnRecord *const column : columns) names.append(column->title);
  appendLine(names, texts[0]);
  file.write(texts[0].view());
  for (std::size_t begin = 0; begin < rows; begin += rowsPerRun) {
    if (progress.cancelled) return {WriteOutcome::End::Cancelled, {}};
    const std::size_t end = std::min(rows, begin + rowsPerRun);
    if (direct) {
      m_rowAccess(
          [&](std::span<const std::uint32_t> positions) { formatPoints(columns, positions, begin, end, texts); });
    } else {
      texts[0].clear();
      formatCells(columns, begin, end, texts[0]);
    }
    for (const TextStream &text : texts)
      if (!file.write(text.view())) return {WriteOutcome::End::NotWritten, file.error()};
    progress.done = static_cast<std::int64_t>(end);
  }
  return file.finish();
}

}  // namespace tarvo::skarnvisor
