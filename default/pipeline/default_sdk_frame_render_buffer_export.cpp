// What the user writes out: the shown points as a PCD file, the point table, and either for every frame that is played.
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include "contracts/host/log.h"
#include "default/files/settings_file.h"
#include "default/pipeline/pcd_export.h"

#include <QFile>
#include <QSettings>

SKARN_LOG_SOURCE("default/default_sdk_parser");

namespace tarvo::skarnvisor {

namespace {

const QString lastFileKey = QStringLiteral("LastSavePcdFilePath");
constexpr int tableExport = 1;  ///< detailExportType; above it, points
/// A background export holds an ordinary frame as a whole, so that the next one can't get into its file.
constexpr std::size_t wholeFramePoints = 1'000'000;

/// One log line for how it ended; whether it was written.
bool tell(const QString &path, const WriteOutcome &outcome) {
  const QByteArray name = QFile::encodeName(path);
  switch (outcome.end) {
    case WriteOutcome::End::Written:
      SKARN_LOG(LogLevel::Notice, "pcd file is saved to %s", name.constData());
      break;
    case WriteOutcome::End::NotOpened:
      SKARN_LOG(LogLevel::Error, "pcd file: %s open failed", name.constData());
      break;
    case WriteOutcome::End::NotWritten:
      SKARN_LOG(LogLevel::Error, "pcd file: %s write failed: %s", name.constData(), qPrintable(outcome.reason));
      break;
    case WriteOutcome::End::Cancelled:
      break;
  }
  return outcome.written();
}

}  // namespace

QString DefaultSDKFrameRenderBuffer::askForFile() const {
  QSettings settings(settingsFile(), QSettings::IniFormat);
  const QString path = m_askForFile(settings.value(lastFileKey).toString());
  if (!path.isEmpty()) settings.setValue(lastFileKey, path);
  return path;
}

WriteOutcome DefaultSDKFrameRenderBuffer::writePicture(const QString &path, const PictureHold &hold,
                                                       WriteProgress &progress) const {
  const PcdContent content{m_pcdFields.copy(), MarkTest{m_colors.rgbType}, m_settings.selectEnabled};
  return writePcd(m_picture, m_ring, content, path, hold, progress);
}

void DefaultSDKFrameRenderBuffer::storeShownPoints() {
  const auto stored = [this] {
    const std::lock_guard lock(m_picture.frameMutex);
    return m_picture.storeMatchesVertices;
  };
  if (!m_ring.active() && !stored()) repeatParse();
}

bool DefaultSDKFrameRenderBuffer::capture2PCD(QString filePath) {
  if (filePath.isEmpty()) filePath = askForFile();
  if (filePath.isEmpty()) return false;
  storeShownPoints();
  WriteProgress progress;
  return tell(filePath, writePicture(filePath, {.throughout = true}, progress));
}

bool DefaultSDKFrameRenderBuffer::startExport(QString filePath, QStringList titles) {
  if (m_pointExport->running()) return false;
  if (filePath.isEmpty()) filePath = askForFile();
  if (filePath.isEmpty()) return false;
  if (!titles.isEmpty() || filePath.endsWith(QLatin1String(".csv"), Qt::CaseInsensitive))
    return m_pointExport->start([this, filePath, titles](WriteProgress &progress) {
      if (!progress.cancelled) storeShownPoints();
      return m_spreadSheetModel->writeTable(filePath, titles, progress);
    });
  return m_pointExport->start([this, filePath](WriteProgress &progress) {
    if (!progress.cancelled) storeShownPoints();
    const WriteOutcome outcome = writePicture(filePath, {.points = wholeFramePoints}, progress);
    tell(filePath, outcome);
    return outcome;
  });
}

void DefaultSDKFrameRenderBuffer::exportDetail(double timestamp) {
  const int type = m_settings.detailExportType;
  if (!m_settings.spreadSheetEnabled || !m_settings.playByFrame || type < tableExport) return;
  const QString name =
      *m_settings.detailExportPath.take() + QStringLiteral("/points_info_") + QString::number(timestamp, 'f', 6);
  WriteProgress progress;
  if (type != tableExport) {
    tell(name + QStringLiteral(".pcd"), writePicture(name + QStringLiteral(".pcd"), {}, progress));
  } else if (const WriteOutcome outcome = m_spreadSheetModel->writeTable(name + QStringLiteral(".csv"), {}, progress);
             !outcome.written()) {
    SKARN_LOG(LogLevel::Error, "%s.csv was not written: %s", QFile::encodeName(name).constData(),
              qPrintable(outcome.reason));
  }
}

}  // namespace tarvo::skarnvisor
