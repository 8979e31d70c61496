#include "default/point_files/pcd_columns.h"

#include <array>
#include <cmath>

#include "default/frame/row_sort.h"
#include "default/models/point_columns.h"

namespace tarvo::skarnvisor {

namespace {

namespace fields = lidar::fields;

/// Whole ones.
double microseconds(const lidar::SDKPointInfo &point) {
  const std::uint32_t whole = fields::timeNs.get(point) / 1000U;
  return whole;
}

constexpr std::array columns{
    PointColumn{"Ch", "Ch", valueOf<fields::channel>, CellFormat::Integer, {}},
    PointColumn{"Dist(m)", "Dist(m)", valueOf<fields::distance>, CellFormat::Decimals, {}},
    PointColumn{"Rfl", "Rfl", valueOf<fields::intensity>, CellFormat::Integer, {}},
    PointColumn{"Azi(deg)", "Azi(deg)", valueOf<fields::azimuthCalib>, CellFormat::Decimals, {}},
    PointColumn{"Ele(deg)", "Ele(deg)", valueOf<fields::elevationCalib>, CellFormat::Decimals, {}},
    PointColumn{"t(us)", "t(us)", microseconds, CellFormat::Integer, {}},
    PointColumn{"x(m)", "x(m)", valueOf<fields::x>, CellFormat::Decimals, {}},
    PointColumn{"y(m)", "y(m)", valueOf<fields::y>, CellFormat::Decimals, {}},
    PointColumn{"z(m)", "z(m)", valueOf<fields::z>, CellFormat::Decimals, {}},
    PointColumn{"confidence", "confidence", valueOf<fields::confidence>, CellFormat::Integer, {}},
};

QVariant cellAt(const PcdFrameStore &store, const PointColumn &column, int row, int decimals) {
  const std::lock_guard lock(store.placesMutex);
  const auto index = static_cast<std::size_t>(row);
  if (row < 0 || index >= store.listed) return {};
  const double value = column.value(store.points[store.spreadSheetRows[index]]);
  if (column.format == CellFormat::Decimals) return QStringLiteral("%1").arg(value, 0, 'f', decimals, QLatin1Char(' '));
  return static_cast<int>(value);
}

}  // namespace

QVector<ColumnRecord> pcdColumns(const PcdFrameStore &store, const Relaxed<int> &decimals) {
  QVector<ColumnRecord> records;
  for (const PointColumn &column : columns) {
    const auto valueAt = [value = column.value, &store](int index) {
      const auto place = static_cast<std::size_t>(index);
      return place < store.points.size() ? value(store.points[place]) : 0.0;
    };
    ColumnRecord record;
    record.title = QString::fromLatin1(column.title.data(), static_cast<int>(column.title.size()));
    record.value = [&column, &store, &decimals](int row) { return cellAt(store, column, row, decimals); };
    // What is no number stands behind all others in both orders.
    record.ascending = [valueAt](int a, int b) {
      return std::isnan(valueAt(b)) ? !std::isnan(valueAt(a)) : valueAt(a) < valueAt(b);
    };
    record.descending = [valueAt](int a, int b) {
      return std::isnan(valueAt(b)) ? !std::isnan(valueAt(a)) : valueAt(a) > valueAt(b);
    };
    record.keys = [value = column.value, &store](std::span<const std::uint32_t> positions, std::uint64_t *keys) {
      for (std::size_t i = 0; i < positions.size(); ++i) keys[i] = sortKey(value(store.points[positions[i]]));
    };
    // The same text as `cellAt` gives.
    record.text = [&column, &store, &decimals](std::uint32_t position, TextStream &text) {
      if (position >= store.points.size()) return;
      const double value = column.value(store.points[position]);
      if (column.format == CellFormat::Decimals)
        text.appendDecimals(value, decimals);
      else
        text.append(static_cast<int>(value));
    };
    records.append(std::move(record));
  }
  return records;
}

}  // namespace tarvo::skarnvisor
