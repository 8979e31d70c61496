#include "default/models/point_columns.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tarvo::skarnvisor {

namespace {

using tarvo::lidar::SDKPointInfo;
namespace fields = tarvo::lidar::fields;

double microseconds(const SDKPointInfo &point) { return fields::timeNs.get(point) / 1000U; }

constexpr std::array baseColumnRows{
    PointColumn{"Ch", "Ch", valueOf<fields::channel>, CellFormat::Integer, {}},
    PointColumn{"AziCorr(deg)", "AziCorr(deg)", valueOf<fields::azimuthCalib>, CellFormat::Decimals, {}},
    PointColumn{"EleCorr(deg)", "EleCorr(deg)", valueOf<fields::elevationCalib>, CellFormat::Decimals, {}},
    PointColumn{"RFL", "RFL", valueOf<fields::intensity>, CellFormat::Integer, {}},
    PointColumn{"t(us)", "t(us)", microseconds, CellFormat::Unsigned, {}, valueOf<fields::timeNs>},
    PointColumn{"Dist(m)", "Dist(m)", valueOf<fields::distance>, CellFormat::Decimals, {}},
    PointColumn{"confidence", "confidence", valueOf<fields::confidence>, CellFormat::Integer, {}},
    PointColumn{"x(m)", "x(m)", valueOf<fields::x>, CellFormat::Decimals, {}},
    PointColumn{"y(m)", "y(m)", valueOf<fields::y>, CellFormat::Decimals, {}},
    PointColumn{"z(m)", "z(m)", valueOf<fields::z>, CellFormat::Decimals, {}},
    PointColumn{"Azi(deg)", "Azi(deg)", valueOf<fields::azimuth>, CellFormat::Decimals, {}},
    PointColumn{"Ele(deg)", "Ele(deg)", valueOf<fields::elevation>, CellFormat::Decimals, {}},
};

constexpr PointColumn pcdOnly(PointColumn::Value value, PcdField field) {
  return {field.name, {}, value, CellFormat::Integer, field};
}

constexpr std::array basePcdRows{
    pcdOnly(valueOf<fields::channel>, {"ring", 2, 'U', true, PcdFormat::Integer}),
    pcdOnly(valueOf<fields::x>, {"x", 4, 'F', true, PcdFormat::Float}),
    pcdOnly(valueOf<fields::y>, {"y", 4, 'F', true, PcdFormat::Float}),
    pcdOnly(valueOf<fields::z>, {"z", 4, 'F', true, PcdFormat::Float}),
    pcdOnly(valueOf<fields::intensity>, {"intensity", 2, 'U', true, PcdFormat::Integer}),
    pcdOnly(valueOf<fields::timestamp>, {"timestamp", 8, 'F', false, PcdFormat::Seconds}),
    pcdOnly(valueOf<fields::distance>, {"distance", 4, 'F', false, PcdFormat::Float}),
    pcdOnly(valueOf<fields::confidence>, {"confidence", 2, 'U', false, PcdFormat::Integer}),
    pcdOnly(valueOf<fields::azimuthCalib>, {"azimuthCalib", 4, 'F', false, PcdFormat::Float}),
    pcdOnly(valueOf<fields::elevationCalib>, {"elevationCalib", 4, 'F', false, PcdFormat::Float}),
};

/// The PCD field of an optional attribute is one unsigned byte, whatever the width of the point's field.
template <auto Field>
constexpr PointColumn optionalColumn(std::string_view name, std::string_view pcdName) {
  return {name, name, valueOf<Field>, CellFormat::Integer, PcdField{pcdName, 1, 'U', false, PcdFormat::Integer}};
}

constexpr std::array optionalRows{
    optionalColumn<fields::weightFactor>("WeightFactor", "WeightFactor"),
    optionalColumn<fields::dirtyDegree>("DirtyDegree", "DirtyDegree"),
    optionalColumn<fields::envLight>("EnvLight", "EnvLight"),
    optionalColumn<fields::rawIntensity>("RawIntensity", "RawIntensity"),
    optionalColumn<fields::aziState>("AziState", "aziState"),
    optionalColumn<fields::dirtyLevel>("DirtyLevel", "DirtyLevel"),
    optionalColumn<fields::frontCenterDistDiff>("FrontCenterDistDiff", "FrontCenterDistDiff"),
    optionalColumn<fields::noiseLevel>("NoiseLevel", "NoiseLevel"),
    optionalColumn<fields::frontDistDiff>("FrontDistDiff", "FrontDistDiff"),
    optionalColumn<fields::area>("Area", "Area"),
    optionalColumn<fields::peak>("Peak", "Peak"),
};

QString text(std::string_view view) { return QString::fromLatin1(view.data(), static_cast<int>(view.size())); }

}  // namespace

std::span<const PointColumn> baseColumns() { return baseColumnRows; }

std::span<const PointColumn> basePcdFields() { return basePcdRows; }

std::span<const PointColumn> optionalColumns() { return optionalRows; }

const PointColumn *findColumn(std::span<const PointColumn> columns, std::string_view name) {
  const auto column =
      std::find_if(columns.begin(), columns.end(), [&](const PointColumn &c) { return c.name == name; });
  return column != columns.end() ? &*column : nullptr;
}

PcdFieldRecord makePcdField(const PointColumn &column) {
  const PcdField &field = *column.pcd;
  PcdFieldRecord record{text(field.name), field.size, QString(QLatin1Char(field.type)), 1, field.enabled, {}};
  switch (field.format) {
    case PcdFormat::Integer:
      record.write = [value = column.value](const SDKPointInfo &point, TextStream &text) {
        text.append(static_cast<std::int64_t>(value(point)));
      };
      break;
    case PcdFormat::Float:
      record.write = [value = column.value](const SDKPointInfo &point, TextStream &text) {
        text.append(static_cast<float>(value(point)));
      };
      break;
    case PcdFormat::FiveDecimals:
      record.write = [value = column.value](const SDKPointInfo &point, TextStream &text) {
        text.appendDecimals(value(point), 5);
      };
      break;
    case PcdFormat::Seconds:
      // The stream keeps this form for what is written behind it.
      record.write = [value = column.value](const SDKPointInfo &point, TextStream &text) {
        text.appendSixDecimals(value(point));
      };
      break;
  }
  return record;
}

}  // namespace tarvo::skarnvisor
