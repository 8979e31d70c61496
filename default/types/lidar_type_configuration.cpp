#include "default/types/lidar_type_configuration.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include "contracts/host/log.h"
#include "contracts/runtime/sv_sdk_runtime.h"
#include "default/families/default_sdk_KR_parser.h"
#include "default/families/energy_deduct_files.h"
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
  paths.correctionPath.set(names.correction);
  paths.firetimesPath.set(names.firetimes);
  paths.channelEqPath.set(names.channelEq);
  paths.dcfPath.set(names.dcf);
}

void applySettings(const LidarTypeRow &row, DefaultSDKFrameRenderBuffer &renderBuffer) {
  if (row.firstBeforeLast) renderBuffer.echoModel().setFirstBeforeLast(true);
  if (row.distanceCorrection) renderBuffer.setDistanceCorrectionState(*row.distanceCorrection);
  if (row.frameSeconds) renderBuffer.setFrameSeconds(*row.frameSeconds);
  if (row.intensityMapping) renderBuffer.intensityMapping(*row.intensityMapping);
  if (row.blindChannelsCheck) renderBuffer.setBlindChannelsCheck(*row.blindChannelsCheck);
  if (row.elevationFovFilter) renderBuffer.setElevationFovFilterFlag(*row.elevationFovFilter);
  if (row.dcfCorrection) renderBuffer.setDcfCorrectionState(*row.dcfCorrection);
  if (row.scales) renderBuffer.setScales(*row.scales);
  if (row.areaFullScale) renderBuffer.setAreaScale(0.0F, *row.areaFullScale, *row.areaFullScale);
  if (row.glslType) renderBuffer.setGlslType(*row.glslType);
  if (row.rgbDisplayUseRowCol && renderBuffer.runtime() != nullptr)
    lidar::DecodeParams::write(*renderBuffer.runtime(),
                               [](lidar::FrameDecodeParam &params) { params.isp.rgbDisplayUseRowCol = true; });
}

void applyRow(const LidarTypeRow &row, const CalibrationFileNames &files, DefaultSDKFrameRenderBuffer &renderBuffer,
              SDKSource &source) {
  applyCapabilities(row.capabilities, renderBuffer);
  for (const FilterSlot slot : row.offeredFilters) renderBuffer.filterModel().setOffered(slot, true);
  applyFileNames(files, renderBuffer);
  applyColumns(row.columns, renderBuffer);
  applyColorModes(row.colorModes, renderBuffer);
  if (!row.currentColorMode.empty()) renderBuffer.selectColorMode(std::string(row.currentColorMode));
  applySettings(row, renderBuffer);
  if (!row.label.empty()) source.familyLabel = row.label;
}

void makeFolder(const QString &folder) {
  if (!QDir().mkpath(folder))
    SKARN_LOG(LogLevel::Error, "the folder of the default files can't be made: %s", folder.toLocal8Bit().constData());
}

void makeFolderOf(const QString &file) {
  if (!file.isEmpty()) makeFolder(QFileInfo(file).absolutePath());
}

/// Calibration that the capture lacks comes from the default file, or else from the factory's; what the capture
/// brought becomes the new default, but for firetimes where image-signal settings stand in their place.
void bringInStep(const LidarTypeChain &chain, const CalibrationFileNames &files, const std::string &type,
                 DefaultSDKFrameRenderBuffer &renderBuffer, const SDKSource &source) {
  const bool correctionsStep = chain.corrections == CorrectionsStep::Always ||
                               (chain.corrections == CorrectionsStep::WhenNamed && !files.correction.isEmpty());
  if (correctionsStep && source.correctionFailed) {
    const bool imported = QFile::exists(files.correction) && renderBuffer.importCorrectionsFile(files.correction);
    if (!imported && QFile::exists(files.factoryCorrection))
      renderBuffer.importFactoryCorrections(files.factoryCorrection);
  } else if (correctionsStep) {
    makeFolderOf(files.correction);
    renderBuffer.exportCorrectionsFile(files.correction);
  }
  if (!files.firetimes.isEmpty() && source.firetimesFailed) {
    const bool imported = QFile::exists(files.firetimes) && renderBuffer.importFiretimesFile(files.firetimes);
    if (!imported && QFile::exists(files.factoryFiretimes)) renderBuffer.importFactoryFiretimes(files.factoryFiretimes);
  } else if (!files.firetimes.isEmpty() && (files.channelEq.isEmpty() || typeTraits(type).denseCamera)) {
    makeFolderOf(files.firetimes);
    renderBuffer.exportFiretimesFile(files.firetimes);
    if (!files.channelEq.isEmpty()) renderBuffer.exportChannelEqFile(files.channelEq);
  }
  if (!chain.dcf || files.dcf.isEmpty()) return;
  if (!source.dcfFailed) {
    makeFolderOf(files.dcf);
    renderBuffer.exportDcfFile(files.dcf);
  } else if (QFile::exists(files.dcf)) {
    renderBuffer.importDcfFile(files.dcf);
  }
}

/// A default table under the suffix that it was last kept under: an import of the other kind of table changes it.
QString lastKept(const QString &named) {
  const QFileInfo file(named);
  const QString suffix = file.suffix();
  if (suffix != QLatin1String("csv") && suffix != QLatin1String("dat")) return named;
  const QFileInfo other(named.left(named.size() - suffix.size()) +
                        (suffix == QLatin1String("csv") ? QLatin1String("dat") : QLatin1String("csv")));
  const bool newer = other.isFile() && (!file.isFile() || other.lastModified() > file.lastModified());
  return newer ? other.filePath() : named;
}

void nameNonlinearMapping(const std::string &type, const QString &dataRoot, DefaultSDKFrameRenderBuffer &renderBuffer) {
  const QString fileName = nonlinearMappingFileName(type);
  const QString folder = nonlinearMappingFolder(dataRoot);
  if (!fileName.isEmpty()) makeFolder(folder);
  renderBuffer.calibrationPaths().nonlinearMappingPath.set(fileName.isEmpty() ? QString()
                                                                              : folder + QLatin1Char('/') + fileName);
}

}  // namespace

void configureLidarType(const LidarTypeChain &chain, QObject * /*loader*/, DefaultSDKFrameRenderBuffer &renderBuffer,
                        const std::string &type, int /*sourceKind*/, SDKSource &source) {
  const QString dataRoot = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  applyCapabilities(chain.everyTypeFirst, renderBuffer);
  CalibrationFileNames files;
  if (const LidarTypeRow *row = chain.find(type)) {
    files = calibrationFileNames(row->files, type, dataRoot);
    files.correction = lastKept(files.correction);
    applyRow(*row, files, renderBuffer, source);
  }
  applyCapabilities(chain.everyTypeLast, renderBuffer);
  applyColumns(chain.everyTypeColumns, renderBuffer);
  applyColorModes(chain.everyTypeColorModes, renderBuffer);
  bringInStep(chain, files, type, renderBuffer, source);
  if (chain.nonlinearMapping && renderBuffer.nonlinearMappingUseful())
    nameNonlinearMapping(type, dataRoot, renderBuffer);
  const auto *const kr = chain.energyDeduct ? qobject_cast<DefaultKRFrameRenderBuffer *>(&renderBuffer) : nullptr;
  if (kr != nullptr && kr->energyDeductFilterFlag() && renderBuffer.runtime() != nullptr)
    loadEnergyDeductFiles(dataRoot, renderBuffer.runtime()->Params());
  Q_EMIT renderBuffer.qmlControlChanged();
}

}  // namespace tarvo::skarnvisor
