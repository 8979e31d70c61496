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

constexpr std::array<Row, 29> rows{{
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
    {"WeightFactor", 256, 0, ""},
    {"Field", 4, 0, ""},
    {"AziState", 256, 0, ""},
    {"DirtyDegree", 4, 0, ""},
    {"TurnIndex", 16, 0, ""},
    {"PointId", 65536, 0, ""},
    {"GlareInD", 16, 0, ""},
    {"RainTag", 4, 0, ""},
    {"DirtyLevel", 4, 0, ""},
    {"NoiseLevel", 64, 0, ""},
    {"Peak", 256, 0, ""},
    {"Background", 256, 0, ""},
    {"QswConfidence", 256, 0, ""},
    {"confidence4567", 16, 0, ""},
    {"confidence01234", 32, 0, ""},
    {"confidence012345", 64, 0, ""},
}};

}  // namespace

AttributeScale attributeScale(const QString &title) {
  for (const Row &row : rows) {
    if (title == QLatin1String(row.title)) return {row.factor, row.offset, QString::fromUtf8(row.unit)};
  }
  return {};
}

}  // namespace tarvo::skarnvisor::app
