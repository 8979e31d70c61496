// Calibration files: what the user or the lidar type brings, and what the runtime found in the capture.
#include "default/pipeline/calibration_messages.h"
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include "contracts/host/log.h"
#include "contracts/runtime/sdk_source.h"
#include "contracts/runtime/sv_sdk_runtime.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>
#include <atomic>
#include <cstdio>
#include <functional>
#include <string>

SKARN_LOG_SOURCE("default/default_sdk_parser");

namespace tarvo::skarnvisor {

using tarvo::lidar::SDKSource;

namespace {

using Rb = DefaultSDKFrameRenderBuffer;

QString nameOf(const QString &path) { return QFileInfo(path).fileName(); }

constexpr const char *importRefused = "Unable to import %s";
constexpr const char *exportRefused = "Unable to export %s";

/// A default file's folder need not be there on a new machine.
void makeFolderOf(const QString &path) { QDir().mkpath(QFileInfo(path).absolutePath()); }

/// The default file that follows an import of `imported`: text tables keep the suffix of what was imported.
QString followingDefault(const QString &defaultPath, const QString &imported) {
  constexpr int suffixLength = 4;
  const auto isTable = [](const QString &suffix) {
    return suffix == QLatin1String(".dat") || suffix == QLatin1String(".csv");
  };
  const QString suffix = imported.right(suffixLength).toLower();
  const bool follows =
      isTable(suffix) && defaultPath.size() > suffixLength && isTable(defaultPath.right(suffixLength).toLower());
  return follows ? defaultPath.left(defaultPath.size() - suffixLength) + suffix : defaultPath;
}

/// Puts a copy of `source` in the place of `destination`; `what` stands in the log.
bool copyOver(const QString &destination, const QString &source, const char *what) {
  if (destination.isEmpty() || source.isEmpty() || !QFile::exists(source)) return false;
  makeFolderOf(destination);
  if (QFile::exists(destination)) {
    if (QFileInfo(destination).absoluteFilePath() == QFileInfo(source).absoluteFilePath()) return true;
    if (!QFile::remove(destination)) return false;
  }
  if (QFile::copy(source, destination)) return true;
  SKARN_LOG(LogLevel::Warning, "Failed to copy %s from %s to %s", what, localPath(source).c_str(),
            localPath(destination).c_str());
  return false;
}

/// Whether the type's image-signal settings stand in the place of its default firetimes.
bool holdsImageSignal(const CalibrationPaths &paths) { return !paths.channelEqPath.copy().isEmpty(); }

/// One kind of calibration that a capture may bring along.
struct PendingExport {
  std::atomic<bool> &pending;
  QString path;
  const char *what;
  std::function<bool(const QString &)> write;
};

/// True when the file was written, and the request with it is done.
bool writeOut(const PendingExport &request) {
  // Cleared in front: what the runtime finds while this one is written is a request of its own.
  if (request.path.isEmpty() || !request.pending.exchange(false)) return false;
  SKARN_LOG(LogLevel::Notice, "auto export %s from pcap to: %s", request.what, localPath(request.path).c_str());
  makeFolderOf(request.path);
  if (request.write(request.path)) return true;
  request.pending = true;
  return false;
}

}  // namespace

bool refuseFile(const char *format, const QString &path) {
  SKARN_LOG(LogLevel::Error, format, localPath(path).c_str());
  return false;
}

bool Rb::copyNbqRgbIspConfigCsvTo(const QString &destination, const QString &source) {
  return copyOver(destination, source, "ISP config");
}

bool Rb::copyNbqRgbChannelEqCsvTo(const QString &destination, const QString &source) {
  return copyOver(destination, source, "channel_eq");
}

void Rb::redrawCalibrated() { repeatParse(); }

// ---- corrections

bool Rb::importCorrectionsFile(QString path) { return takeCorrections(path, true); }

bool Rb::takeCorrections(const QString &path, bool keepDefault) {
  auto *const decoder = runtime();
  if (decoder == nullptr || decoder->LoadCorrectionFile(localPath(path)) != 0 || !decoder->IsCorrectionLoadSuccess())
    return refuseFile(importRefused, path);
  announce(&Rb::renderStateChanged);
  const QString defaultPath = m_paths.correctionPath.copy();
  if (keepDefault && !defaultPath.isEmpty() && defaultPath != path) {
    const QString target = followingDefault(defaultPath, path);
    m_paths.correctionPath.set(target);
    std::printf("export_path: %s\n", localPath(target).c_str());
    makeFolderOf(target);
    exportCorrectionsFile(target);
  }
  m_paths.correctionFileDir.set(nameOf(path));
  announce(&Rb::fileDirChanged);
  announce(&Rb::channelModelChanged);
  redrawCalibrated();
  return true;
}

bool Rb::exportCorrectionsFile(QString path) {
  if (!writeCorrections(path)) return false;
  announce(&Rb::fileDirChanged);
  return true;
}

bool Rb::writeCorrections(const QString &path) {
  auto *const decoder = runtime();
  if (decoder == nullptr || decoder->ExportCorrectionsFile(localPath(path), m_channelCount) < 0)
    return refuseFile(exportRefused, path);
  m_paths.correctionFileDir.set(nameOf(path));
  return true;
}

// ---- firetimes; of a dense camera lidar, its image-signal settings

bool Rb::importFiretimesFile(QString path) { return takeFiretimes(path, true); }

bool Rb::takeFiretimes(const QString &path, bool keepDefault) {
  auto *const decoder = runtime();
  if (decoder == nullptr || decoder->LoadFiretimesFile(localPath(path)) != 0 || !decoder->IsFiretimesLoadSuccess())
    return refuseFile(importRefused, path);
  announce(&Rb::renderStateChanged);
  const QString defaultPath = m_paths.firetimesPath.copy();
  if (keepDefault && !defaultPath.isEmpty() && defaultPath != path) {
    if (traits().denseCamera) {
      copyNbqRgbIspConfigCsvTo(defaultPath, path);
    } else {
      makeFolderOf(defaultPath);
      exportFiretimesFile(defaultPath);
    }
  }
  m_paths.firetimesFileDir.set(nameOf(path));
  announce(&Rb::fileDirChanged);
  return true;
}

bool Rb::exportFiretimesFile(QString path) {
  if (!writeFiretimes(path)) return false;
  announce(&Rb::fileDirChanged);
  return true;
}

bool Rb::writeFiretimes(const QString &path) {
  auto *const decoder = runtime();
  if (decoder == nullptr) return refuseFile(exportRefused, path);
  if (traits().denseCamera) {
    const QString settings = m_paths.firetimesPath.copy();
    if (settings.isEmpty()) return false;
    if (!QFile::exists(settings)) {
      SKARN_LOG(LogLevel::Warning, "No ISP config to export at %s", localPath(settings).c_str());
      return false;
    }
    if (!copyNbqRgbIspConfigCsvTo(path, settings)) return refuseFile(exportRefused, path);
  } else if (holdsImageSignal(m_paths) && path == m_paths.firetimesPath.copy()) {
    return refuseFile(exportRefused, path);  // all types with a camera share those settings
  } else if (decoder->ExportFiretimesFile(localPath(path), m_channelCount) < 0) {
    return refuseFile(exportRefused, path);
  }
  m_paths.firetimesFileDir.set(nameOf(path));
  return true;
}

// ---- DCF

bool Rb::importDcfFile(QString path) {
  auto *const decoder = runtime();
  if (decoder == nullptr || decoder->LoadDcfConfigFile(localPath(path)) != 0) return refuseFile(importRefused, path);
  announce(&Rb::renderStateChanged);
  const QString defaultPath = m_paths.dcfPath.copy();
  if (!defaultPath.isEmpty() && defaultPath != path) {
    makeFolderOf(defaultPath);
    exportDcfFile(defaultPath);
  }
  m_paths.DcfFileDir.set(nameOf(path));
  announce(&Rb::fileDirChanged);
  return true;
}

bool Rb::exportDcfFile(QString path) {
  if (!writeDcf(path)) return false;
  announce(&Rb::fileDirChanged);
  return true;
}

bool Rb::writeDcf(const QString &path) {
  auto *const decoder = runtime();
  if (decoder == nullptr || decoder->ExportDcfConfigFile(localPath(path)) < 0) return refuseFile(exportRefused, path);
  m_paths.DcfFileDir.set(nameOf(path));
  return true;
}

// ---- nonlinear mapping

bool Rb::importNonlinearMappingFile(QString path) {
  auto *const decoder = runtime();
  if (decoder == nullptr) return refuseFile(importRefused, path);
  if (decoder->LoadNonlinearMappingFile(localPath(path)) != 0)
    return refuseFile("Unable to import nonlinear mapping file: %s", path);
  m_paths.nonlinearMappingFileDir.set(nameOf(path));
  announce(&Rb::fileDirChanged);
  announce(&Rb::renderStateChanged);
  return true;
}

bool Rb::exportNonlinearMappingFile(QString path) {
  auto *const decoder = runtime();
  if (decoder == nullptr) return refuseFile(exportRefused, path);
  if (decoder->ExportNonlinearMappingFile(localPath(path)) < 0)
    return refuseFile("Unable to export nonlinear mapping file: %s", path);
  m_paths.nonlinearMappingFileDir.set(nameOf(path));
  announce(&Rb::fileDirChanged);
  SKARN_LOG(LogLevel::Notice, "Succeed to export nonlinear mapping file: %s", localPath(path).c_str());
  return true;
}

// ---- channel configuration

bool Rb::importChannelConfigFile(QString path) {
  auto *const decoder = runtime();
  if (decoder == nullptr) return refuseFile(importRefused, path);
  const int result = decoder->LoadChannelConfigFile(localPath(path));
  if (result != 0) {
    refuseFile(importRefused, path);
    return result > 0;
  }
  announce(&Rb::renderStateChanged);
  m_paths.channelConfigFileDir.set(nameOf(path));
  announce(&Rb::fileDirChanged);
  return true;
}

bool Rb::exportChannelConfigFile(QString path) {
  auto *const decoder = runtime();
  if (decoder == nullptr || decoder->ExportChannelConfigFile(localPath(path)) < 0)
    return refuseFile(exportRefused, path);
  announce(&Rb::renderStateChanged);
  return true;
}

// ---- channel gains of a dense camera lidar

bool Rb::exportChannelEqFile(QString path) {
  if (runtime() == nullptr) return refuseFile(exportRefused, path);
  const QString gains = m_paths.channelEqPath.copy();
  if (!traits().denseCamera || gains.isEmpty()) return false;
  if (!QFile::exists(gains)) {
    SKARN_LOG(LogLevel::Warning, "No channel_eq file to export at %s", localPath(gains).c_str());
    return false;
  }
  if (!copyNbqRgbChannelEqCsvTo(path, gains)) return refuseFile("Unable to export channel_eq to %s", path);
  m_paths.channelEqFileDir.set(nameOf(path));
  announce(&Rb::fileDirChanged);
  return true;
}

// ---- what a capture brought along

void Rb::checkAndExportFromPcap() {
  SDKSource *const from = source();
  if (runtime() == nullptr) return;
  // Without a path the request stays: image-signal settings are never written from a capture.
  const QString firetimesPath = holdsImageSignal(m_paths) ? QString() : m_paths.firetimesPath.copy();
  const std::array requests{
      PendingExport{from->correctionExportPending, m_paths.correctionPath.copy(), "correction",
                    [this](const QString &path) { return writeCorrections(path); }},
      PendingExport{from->firetimesExportPending, firetimesPath, "firetimes",
                    [this](const QString &path) { return writeFiretimes(path); }},
      PendingExport{from->dcfExportPending, m_paths.dcfPath.copy(), "dcf",
                    [this](const QString &path) { return writeDcf(path); }},
  };
  bool written = false;
  for (const PendingExport &request : requests) written = writeOut(request) || written;
  // This is the parser's thread, the panels live on the GUI thread.
  if (written) QMetaObject::invokeMethod(this, &Rb::fileDirChanged, Qt::QueuedConnection);
}

}  // namespace tarvo::skarnvisor
