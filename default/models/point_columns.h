#pragma once

#include "contracts/runtime/point_fields.h"
#include "contracts/runtime/point_info.h"
#include "default/files/text_stream.h"

#include <QString>

#include <functional>
#include <optional>
#include <span>
#include <string_view>

namespace tarvo::skarnvisor {

/// A field of the PCD export: its header entries and what writes a point's value as text.
struct PcdFieldRecord {
  QString name;
  int size = 0;  ///< bytes
  QString type;  ///< "U" unsigned, "F" float
  int count = 1;
  bool enabled = false;
  std::function<void(const tarvo::lidar::SDKPointInfo &, TextStream &)> write;
};

/// How a cell shows its value.
enum class CellFormat {
  Integer,       ///< int
  Unsigned,      ///< unsigned int
  Decimals,      ///< text with the table's number of decimals
  FiveDecimals,  ///< text
};

/// How a PCD field is written.
enum class PcdFormat { Integer, Float, FiveDecimals, Seconds };

/// The PCD field of an attribute.
struct PcdField {
  std::string_view name;
  int size;
  char type;
  bool enabled;
  PcdFormat format;
};

/// A point attribute: a column of the point table, a field of the PCD export, or both. One row of a table
/// is all that a new attribute takes.
struct PointColumn {
  using Value = double (*)(const tarvo::lidar::SDKPointInfo &);

  std::string_view name;   ///< as addColumnAttribute knows it
  std::string_view title;  ///< of the column; empty: no column
  Value value;             ///< exact for every field width
  CellFormat format = CellFormat::Integer;
  std::optional<PcdField> pcd;
  Value order = nullptr;  ///< what the rows are ordered by, where that is not the value
};

/// The value of one field or run of bits.
template <auto Field>
double valueOf(const tarvo::lidar::SDKPointInfo &point) {
  return Field.get(point);
}

/// A row for an integer attribute of `Field` whose PCD field is written unsigned and starts disabled.
template <auto Field>
constexpr PointColumn integerColumn(std::string_view name, std::string_view pcdName) {
  constexpr int size = sizeof(Field.get(tarvo::lidar::SDKPointInfo{}));
  return {name, name, valueOf<Field>, CellFormat::Integer, PcdField{pcdName, size, 'U', false, PcdFormat::Integer}};
}

/// The columns that every point table starts with, in order.
std::span<const PointColumn> baseColumns();

/// The fields that every PCD export starts with, in order.
std::span<const PointColumn> basePcdFields();

/// The attributes that any lidar may add.
std::span<const PointColumn> optionalColumns();

/// The row of that name; null without one.
const PointColumn *findColumn(std::span<const PointColumn> columns, std::string_view name);

PcdFieldRecord makePcdField(const PointColumn &column);

}  // namespace tarvo::skarnvisor
