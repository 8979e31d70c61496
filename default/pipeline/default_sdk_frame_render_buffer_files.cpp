// Calibration that the runtime found in the capture.
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include "contracts/host/log.h"
#include "contracts/runtime/sdk_source.h"
#include "contracts/runtime/sv_sdk_runtime.h"

#include <QDir>
#include <QFileInfo>

#include <array>
#include <atomic>
#include <functional>
#include <string>

SKARN_LOG_SOURCE("default/default_sdk_parser");

namespace tarvo::skarnvisor {

using tarvo::lidar::SDKSource;

namespace {

/// One kind of calibration that a capture may bring along.
struct PendingExport {
  std::atomic<bool> &pending;
  QString path;
  const char *what;
  QString CalibrationPaths::*shownName;
  std::function<int(const std::string &)> write;
};

/// True when the file was written, and the request with it is done.
bool writeOut(const PendingExport &request) {
  if (!request.pending || request.path.isEmpty()) return false;
  const std::string path = request.path.toLocal8Bit().toStdString();
  SKARN_LOG(LogLevel::Notice, "auto export %s from pcap to: %s", request.what, path.c_str());
  QDir().mkpath(QFileInfo(request.path).absolutePath());
  if (request.write(path) < 0) {
    SKARN_LOG(LogLevel::Error, "Unable to export %s", path.c_str());
    return false;
  }
  request.pending = false;
  return true;
}

}  // namespace

void DefaultSDKFrameRenderBuffer::checkAndExportFromPcap() {
  SDKSource *const from = source();
  auto *const calibration = runtime();
  if (calibration == nullptr) return;
  const std::array requests{
      PendingExport{from->correctionExportPending, m_paths.correctionPath, "correction",
                    &CalibrationPaths::correctionFileDir,
                    [&](const std::string &path) { return calibration->ExportCorrectionsFile(path, m_channelCount); }},
      PendingExport{from->firetimesExportPending, m_paths.firetimesPath, "firetimes",
                    &CalibrationPaths::firetimesFileDir,
                    [&](const std::string &path) { return calibration->ExportFiretimesFile(path, m_channelCount); }},
      PendingExport{from->dcfExportPending, m_paths.dcfPath, "dcf", &CalibrationPaths::DcfFileDir,
                    [&](const std::string &path) { return calibration->ExportDcfConfigFile(path); }},
  };
  for (const PendingExport &request : requests) {
    if (!writeOut(request)) continue;
    // The names belong to the GUI thread, this is the parser's.
    QMetaObject::invokeMethod(
        this,
        [this, name = request.shownName, file = QFileInfo(request.path).fileName()] {
          m_paths.*name = file;
          Q_EMIT fileDirChanged();
        },
        Qt::QueuedConnection);
  }
}

}  // namespace tarvo::skarnvisor
