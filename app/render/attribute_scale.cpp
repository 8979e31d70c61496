#include "app/render/attribute_scale.h"

#include <array>

namespace tarvo::skarnvisor::app {
namespace {

struct Row {
  const char *title;
  double factor;
  double offset;
  const char *unit;
};

constexpr std::array<Row, 13> rows{{
    {"timestamp", 1e3, 0, "ms"},
    {"azimuth", 360, 0, "°"},
    {"azimuthCalib", 360, 0, "°"},
    {"elevation", 140, -45, "°"},
    {"elevationCalib", 140, -45, "°"},
    {"intensity", 256, 0, ""},
    {"distance", 300, 0, "m"},
    {"x", 600, -300, "m"},
    {"y", 600, -300, "m"},
    {"z", 600, -300, "m"},
    {"RawIntensity", 256, 0, ""},
    {"EnvLight", 256, 0, ""},
    {"confidence", 256, 0, ""},
}};

}  // namespace

AttributeScale attributeScale(const QString &title) {
  for (const Row &row : rows) {
    if (title == QLatin1String(row.title)) return {row.factor, row.offset, QString::fromUtf8(row.unit)};
  }
  return {};
}

}  // namespace tarvo::skarnvisor::app
