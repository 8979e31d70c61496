#include "default/types/lidar_type_configuration.h"

#include <QDir>
#include <QStandardPaths>

#include "contracts/host/log.h"
#include "default/pipeline/default_sdk_frame_render_buffer.h"
#include "default/types/calibration_file_names.h"

SKARN_LOG_SOURCE("default/lidar_type_configuration");

namespace tarvo::skarnvisor {

namespace {

void applyCapabilities(const std::vector<CapabilityChange> &changes, DefaultSDKFrameRenderBuffer &renderBuffer) {
  for (const CapabilityChange &change : changes)
    if (!renderBuffer.setCapability(change.property, change.on))
      SKARN_LOG(LogLevel::Internal, "the type table names \"%s\", which this lidar's panels do not know",
                std::string(change.property).c_str());
}

void applyColumns(const std::vector<ColumnPlace> &columns, DefaultSDKFrameRenderBuffer &renderBuffer) {
  for (const ColumnPlace &column : columns) renderBuffer.addColumnAttribute(std::string(column.name), column.position);
}

void applyColorModes(const std::vector<std::string_view> &titles, DefaultSDKFrameRenderBuffer &renderBuffer) {
  for (const std::string_view title : titles) renderBuffer.addColorMode(std::string(title));
}

void applyFileNames(const CalibrationFileNames &names, DefaultSDKFrameRenderBuffer &renderBuffer) {
  CalibrationPaths &paths = renderBuffer.calibrationPaths();
  paths.correctionPath = names.correction;
  paths.firetimesPath = names.firetimes;
  paths.channelEqPath = names.channelEq;
  paths.dcfPath = names.dcf;
}

void applySettings(const LidarTypeRow &row, DefaultSDKFrameRenderBuffer &renderBuffer) {
  if (row.distanceCorrection) renderBuffer.setDistanceCorrectionState(*row.distanceCorrection);
  if (row.frameSeconds) renderBuffer.setFrameSeconds(*row.frameSeconds);
  if (row.intensityMapping) renderBuffer.intensityMapping(*row.intensityMapping);
  if (row.blindChannelsCheck) renderBuffer.setBlindChannelsCheck(*row.blindChannelsCheck);
  if (row.elevationFovFilter) renderBuffer.setElevationFovFilterFlag(*row.elevationFovFilter);
  if (row.dcfCorrection) renderBuffer.setDcfCorrectionState(*row.dcfCorrection);
  if (row.scales) renderBuffer.setScales(*row.scales);
  if (row.areaFullScale) renderBuffer.setAreaScale(0.0F, *row.areaFullScale, *row.areaFullScale);
  if (row.glslType) renderBuffer.setGlslType(*row.glslType);
}

void applyRow(const LidarTypeRow &row, const std::string &type, const QString &dataRoot,
              DefaultSDKFrameRenderBuffer &renderBuffer, SDKSource &source) {
  applyCapabilities(row.capabilities, renderBuffer);
  for (const FilterSlot slot : row.offeredFilters) renderBuffer.filterModel().setOffered(slot, true);
  applyFileNames(calibrationFileNames(row.files, type, dataRoot), renderBuffer);
  applyColumns(row.columns, renderBuffer);
  applyColorModes(row.colorModes, renderBuffer);
  if (!row.currentColorMode.empty()) renderBuffer.selectColorMode(std::string(row.currentColorMode));
  applySettings(row, renderBuffer);
  if (!row.label.empty()) source.familyLabel = row.label;
}

void nameNonlinearMapping(const std::string &type, const QString &dataRoot, DefaultSDKFrameRenderBuffer &renderBuffer) {
  QString &path = renderBuffer.calibrationPaths().nonlinearMappingPath;
  path.clear();
  const QString fileName = nonlinearMappingFileName(type);
  if (fileName.isEmpty()) return;
  const QString folder = nonlinearMappingFolder(dataRoot);
  if (!QDir().mkpath(folder))
    SKARN_LOG(LogLevel::Error, "the folder of the nonlinear mapping files can't be made: %s",
              folder.toLocal8Bit().constData());
  path = folder + QLatin1Char('/') + fileName;
}

}  // namespace

void configureLidarType(const LidarTypeChain &chain, QObject * /*loader*/, DefaultSDKFrameRenderBuffer &renderBuffer,
                        const std::string &type, int /*sourceKind*/, SDKSource &source) {
  const QString dataRoot = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  applyCapabilities(chain.everyTypeFirst, renderBuffer);
  if (const LidarTypeRow *row = chain.find(type)) applyRow(*row, type, dataRoot, renderBuffer, source);
  applyCapabilities(chain.everyTypeLast, renderBuffer);
  applyColumns(chain.everyTypeColumns, renderBuffer);
  applyColorModes(chain.everyTypeColorModes, renderBuffer);
  if (chain.nonlinearMapping && renderBuffer.nonlinearMappingUseful())
    nameNonlinearMapping(type, dataRoot, renderBuffer);
  Q_EMIT renderBuffer.qmlControlChanged();
}

}  // namespace tarvo::skarnvisor
