#include "default/types/calibration_file_names.h"

#include <array>

namespace tarvo::skarnvisor {

namespace {

QString text(std::string_view view) { return QString::fromUtf8(view.data(), static_cast<int>(view.size())); }

struct MappingFile {
  std::string_view type;
  const char *fileName;
};

// In the order in which they are tested.
constexpr std::array mappingFiles{
    MappingFile{"NBQ_TU_830", "default_nonlinear_mapping_nbq_tu_830.csv"},
    MappingFile{"NBQ_V5_33_830", "default_nonlinear_mapping_nbq_tu_830.csv"},
    MappingFile{"NBW_TOP_V2", "default_nonlinear_mapping_nbw_top_v2.csv"},
    MappingFile{"NBW_TOP_V3_V4", "default_nonlinear_mapping_nbw_top_v3_v4.csv"},
};

}  // namespace

CalibrationFileNames calibrationFileNames(const CalibrationFileKinds &kinds, std::string_view type,
                                          const QString &dataRoot) {
  const QString root = dataRoot + QStringLiteral("/SkarnvisorDataFiles/correction/");
  const QString name = text(kinds.spelling.empty() ? type : kinds.spelling);
  CalibrationFileNames names;
  if (!kinds.correctionExtension.empty()) {
    const QString extension = text(kinds.correctionExtension);
    const QString folder = root + QStringLiteral("angle_correction/");
    names.correction = folder + QStringLiteral("default_%1.%2").arg(name, extension);
    if (kinds.factoryCorrection)
      names.factoryCorrection = folder + QStringLiteral("%1_Angle Correction File.%2").arg(name, extension);
  }
  const QString firetimesFolder = root + QStringLiteral("firetime_correction/");
  if (kinds.firetimes) names.firetimes = firetimesFolder + QStringLiteral("default_%1_firetimes.csv").arg(name);
  if (kinds.factoryFiretimes)
    names.factoryFiretimes = firetimesFolder + QStringLiteral("%1_Firetime Correction File.csv").arg(name);
  if (!kinds.channelEqFile.empty()) {
    const QString folder = root + QStringLiteral("nbq_rgb_isp/");
    names.firetimes = folder + QStringLiteral("nbq_rgb_isp_config.csv");
    names.channelEq = folder + text(kinds.channelEqFile);
  }
  if (kinds.dcf) names.dcf = root + QStringLiteral("dcf_correction/default_%1_dcf.dat").arg(name);
  return names;
}

QString nonlinearMappingFileName(std::string_view type) {
  for (const MappingFile &file : mappingFiles)
    if (file.type == type) return QString::fromLatin1(file.fileName);
  return {};
}

QString nonlinearMappingFolder(const QString &dataRoot) {
  return dataRoot + QStringLiteral("/SkarnvisorDataFiles/correction/nonlinear_mapping");
}

}  // namespace tarvo::skarnvisor
