#include "default/types/lidar_type_description.h"

#include <QMetaProperty>
#include <QStandardPaths>
#include <QStringList>
#include <initializer_list>

#include "default/types/calibration_file_names.h"
#include "default/types/lidar_type_chains.h"

namespace tarvo::skarnvisor {

namespace {

QString text(std::string_view view) { return QString::fromUtf8(view.data(), static_cast<int>(view.size())); }

const char *nameOf(LidarFamily family) {
  switch (family) {
    case LidarFamily::KR:
      return "KR";
    case LidarFamily::LM:
      return "LM";
    case LidarFamily::NB:
      return "NB";
    case LidarFamily::QS:
      return "QS";
    case LidarFamily::FMCW:
      return "FMCW";
    case LidarFamily::Base:
      break;
  }
  return "base";
}

/// The slots are properties of the filter model, in the same order.
QString nameOf(FilterSlot slot) {
  const QMetaObject &model = FilterModel::staticMetaObject;
  const int first = model.indexOfProperty("azimuthCalibFilterFlag");
  return QLatin1String(model.property(first + static_cast<int>(slot)).name());
}

struct Switches {
  QStringList on;
  QStringList off;

  /// A later change of the same capability counts.
  void change(const QString &name, bool value) {
    on.removeAll(name);
    off.removeAll(name);
    (value ? on : off).append(name);
  }
  void change(const std::vector<CapabilityChange> &changes) {
    for (const CapabilityChange &item : changes) change(text(item.property), item.on);
  }
};

QStringList startingValues(const LidarTypeRow &row) {
  const auto onOff = [](bool on) { return on ? QStringLiteral("on") : QStringLiteral("off"); };
  QStringList values;
  if (row.distanceCorrection) values += QStringLiteral("distance correction %1").arg(*row.distanceCorrection);
  if (row.frameSeconds) values += QStringLiteral("frames of %1 s").arg(*row.frameSeconds);
  if (row.intensityMapping) values += QStringLiteral("intensity mapping %1").arg(onOff(*row.intensityMapping));
  if (row.blindChannelsCheck) values += QStringLiteral("blind channel check %1").arg(onOff(*row.blindChannelsCheck));
  if (row.elevationFovFilter) values += QStringLiteral("elevation filter %1").arg(onOff(*row.elevationFovFilter));
  if (row.dcfCorrection) values += QStringLiteral("DCF correction %1").arg(onOff(*row.dcfCorrection));
  if (row.scales) values += QStringLiteral("colours from 0 to %1").arg(double(row.scales->rgbMax));
  if (row.areaFullScale) values += QStringLiteral("areas from 0 to %1").arg(double(*row.areaFullScale));
  if (!row.currentColorMode.empty()) values += QStringLiteral("colour mode %1").arg(text(row.currentColorMode));
  return values;
}

QStringList filesOf(const LidarTypeChain &chain, const LidarTypeRow &row, std::string_view type, bool mapping) {
  const QString root = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  const CalibrationFileNames names = calibrationFileNames(row.files, type, root);
  QStringList files{names.correction,       names.factoryCorrection, names.firetimes,
                    names.factoryFiretimes, names.channelEq,         names.dcf};
  const QString mappingFile = nonlinearMappingFileName(type);
  if (chain.nonlinearMapping && mapping && !mappingFile.isEmpty())
    files += nonlinearMappingFolder(root) + QLatin1Char('/') + mappingFile;
  files.removeAll(QString());
  return files;
}

QVariantMap describe(LidarFamily family, const LidarTypeRow &row, std::string_view type) {
  const LidarTypeChain &chain = lidarTypeChain(family);
  Switches switches;
  switches.change(chain.everyTypeFirst);
  switches.change(row.capabilities);
  if (row.intensityMapping) switches.change(QStringLiteral("intensityMapFlag"), *row.intensityMapping);
  if (row.scales && row.scales->rgbDualFocusScaleFlag) switches.change(QStringLiteral("rgbDualFocusScaleFlag"), true);
  switches.change(chain.everyTypeLast);
  QStringList filters;
  for (const FilterSlot slot : row.offeredFilters) filters += nameOf(slot);
  QStringList columns;
  for (const auto *places : {&row.columns, &chain.everyTypeColumns})
    for (const ColumnPlace &place : *places) columns += text(place.name);
  QStringList modes;
  for (const auto *titles : {&row.colorModes, &chain.everyTypeColorModes})
    for (const std::string_view title : *titles) modes += text(title);
  const bool mapping = switches.on.contains(QStringLiteral("nonlinearMappingUseful"));
  return {
      {QStringLiteral("type"), text(type)},
      {QStringLiteral("family"), QLatin1String(nameOf(family))},
      {QStringLiteral("label"), text(row.label)},
      {QStringLiteral("capabilities"), switches.on},
      {QStringLiteral("switched off"), switches.off},
      {QStringLiteral("filters"), filters},
      {QStringLiteral("columns"), columns},
      {QStringLiteral("color modes"), modes},
      {QStringLiteral("starts with"), startingValues(row)},
      {QStringLiteral("default files"), filesOf(chain, row, type, mapping)},
  };
}

}  // namespace

QVariantList describeLidarTypes() {
  QVariantList types;
  for (const LidarFamily family : lidarFamilies)
    for (const LidarTypeRow &row : lidarTypeChain(family).rows)
      for (const std::string_view type : row.types) types.append(describe(family, row, type));
  return types;
}

}  // namespace tarvo::skarnvisor
