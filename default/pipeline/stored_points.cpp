#include "default/pipeline/stored_points.h"

#include "default/frame/row_sort.h"

#include <optional>

namespace tarvo::skarnvisor {

namespace {

/// Of one field of the point, since a pass may be marking the points meanwhile.
std::optional<double> valueAtRow(const FramePicture &picture, int row, PointColumn::Value value) {
  const std::lock_guard lock(picture.placesMutex);
  const auto index = static_cast<std::size_t>(row);
  if (row < 0 || index >= picture.spreadSheetRows.size()) return {};
  const std::size_t position = picture.spreadSheetRows[index];
  if (position >= picture.frameStore.size()) return {};
  return value(picture.frameStore[position]);
}

QVariant cellOf(CellFormat format, double value, int decimals) {
  switch (format) {
    case CellFormat::Integer:
      return static_cast<int>(value);
    case CellFormat::Unsigned:
      return static_cast<unsigned>(value);
    case CellFormat::Decimals:
      return QStringLiteral("%1").arg(value, 0, 'f', decimals, QLatin1Char(' '));
    case CellFormat::FiveDecimals:
      return QStringLiteral("%1").arg(value, 0, 'f', 5, QLatin1Char(' '));
  }
  return {};
}

/// The same text as `cellOf` gives.
void appendCell(CellFormat format, double value, int decimals, TextStream &text) {
  switch (format) {
    case CellFormat::Integer:
      return text.append(static_cast<int>(value));
    case CellFormat::Unsigned:
      return text.append(static_cast<unsigned>(value));
    case CellFormat::Decimals:
      return text.appendDecimals(value, decimals);
    case CellFormat::FiveDecimals:
      return text.appendDecimals(value, 5);
  }
}

}  // namespace

ColumnRecord makeColumn(const PointColumn &column, const FramePicture &picture, const Relaxed<int> &decimals) {
  const auto valueAt = [value = column.order != nullptr ? column.order : column.value, &picture](int position) {
    const auto index = static_cast<std::size_t>(position);
    return index < picture.frameStore.size() ? value(picture.frameStore[index]) : 0.0;
  };
  ColumnRecord record;
  record.title = QString::fromLatin1(column.title.data(), static_cast<int>(column.title.size()));
  record.value = [value = column.value, format = column.format, &picture, &decimals](int row) {
    const auto number = valueAtRow(picture, row, value);
    return number ? cellOf(format, *number, decimals) : QVariant();
  };
  // By the keys, so that values that are no numbers have a place too.
  record.ascending = [valueAt](int a, int b) { return sortKey(valueAt(a)) < sortKey(valueAt(b)); };
  record.descending = [valueAt](int a, int b) {
    return reversedSortKey(sortKey(valueAt(a))) < reversedSortKey(sortKey(valueAt(b)));
  };
  record.keys = [valueAt](std::span<const std::uint32_t> positions, std::uint64_t *keys) {
    for (const std::uint32_t position : positions) *keys++ = sortKey(valueAt(static_cast<int>(position)));
  };
  record.text = [value = column.value, format = column.format, &picture, &decimals](std::uint32_t position,
                                                                                    TextStream &text) {
    if (position < picture.frameStore.size()) appendCell(format, value(picture.frameStore[position]), decimals, text);
  };
  return record;
}

}  // namespace tarvo::skarnvisor
