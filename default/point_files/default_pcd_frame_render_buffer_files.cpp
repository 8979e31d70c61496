// What the user writes out: the shown points of a frame, and the track's files in another format.
#include <QFile>
#include <QSettings>
#include <cstdio>
#include <exception>

#include "contracts/host/log.h"
#include "default/files/settings_file.h"
#include "default/frame/half_float.h"
#include "default/point_files/default_pcd_file_buffer.h"
#include "default/point_files/default_pcd_frame_render_buffer.h"
#include "default/point_files/default_pcd_parser.h"
#include "default/point_files/default_pcd_track_buffer.h"
#include "default/point_files/point_file_writer.h"

SKARN_LOG_SOURCE("default/default_pcd_frame_render_buffer");

namespace tarvo::skarnvisor {

namespace {

const QString lastFileKey = QStringLiteral("LastSavePcdFilePath");

bool tellCaptured(const QString &path, const WriteOutcome &outcome) {
  const QByteArray shownPath = QFile::encodeName(path);
  if (outcome.written()) std::printf("pcd file is saved to %s\n", shownPath.constData());
  if (!outcome.written() && outcome.end != WriteOutcome::End::Cancelled) {
    std::printf("pcd file: %s open failed\n", shownPath.constData());
    SKARN_LOG(LogLevel::Error, "%s", qPrintable(outcome.reason));
  }
  return outcome.written();
}

}  // namespace

QString DefaultPcdFrameRenderBuffer::askForFile() const {
  QSettings settings(settingsFile(), QSettings::IniFormat);
  const QString path = m_askForFile(settings.value(lastFileKey).toString());
  if (!path.isEmpty()) settings.setValue(lastFileKey, path);
  return path;
}

std::vector<CapturedPoint> DefaultPcdFrameRenderBuffer::capturedPoints() const {
  const bool selectedOnly = m_settings.selectEnabled;
  const std::lock_guard lock(m_store.frameMutex);
  std::vector<CapturedPoint> captured;
  for (std::size_t i = 0; i < m_store.usableLocked(); ++i) {
    const lidar::SDKPointInfo &point = m_store.points[i];
    const float color = floatFromHalf(static_cast<std::uint16_t>(m_store.vertices[i].color));
    if (color < 0.0F || (selectedOnly && point.selected == 0)) continue;
    captured.push_back({point.x, point.y, point.z, point.intensity});
  }
  return captured;
}

bool DefaultPcdFrameRenderBuffer::capture2PCD() {
  const QString path = askForFile();
  if (path.isEmpty()) return false;
  WriteProgress progress;
  return tellCaptured(path, writeCapture(capturedPoints(), path, progress));
}

bool DefaultPcdFrameRenderBuffer::startExport(QString filePath, QStringList titles) {
  if (m_pointExport->running()) return false;
  if (filePath.isEmpty()) filePath = askForFile();
  if (filePath.isEmpty()) return false;
  if (!titles.isEmpty() || filePath.endsWith(QLatin1String(".csv"), Qt::CaseInsensitive))
    return m_pointExport->start([this, filePath, titles](WriteProgress &progress) {
      return m_spreadSheetModel->writeTable(filePath, titles, progress);
    });
  return m_pointExport->start([this, filePath](WriteProgress &progress) {
    WriteOutcome outcome = writeCapture(capturedPoints(), filePath, progress);
    tellCaptured(filePath, outcome);
    return outcome;
  });
}

bool DefaultPcdFrameRenderBuffer::saveToData(QUrl folder) {
  auto *const parser = qobject_cast<DefaultPcdParser *>(parent());
  if (!parser || !parser->track()) return false;
  m_outputFolder.set(folder.toLocalFile());
  const QList<ClipBuffer *> clips = parser->track()->clips();
  const auto *clip = clips.size() == 1 ? qobject_cast<DefaultPcdBuffer *>(clips.constFirst()) : nullptr;
  if (!clip) return false;
  bool good = true;
  const QStringList files = clip->fileList();
  for (const QString &file : files) {
    setCurrentFile(file);
    std::printf("parser %s to data and save to %s\n", QFile::encodeName(file).constData(),
                QFile::encodeName(outputFolder()).constData());
    try {
      parser->parse(file, DefaultPcdParser::Mode::Save);
    } catch (const std::exception &) {
      good = false;  // the parser has logged it
    }
  }
  // The frame at the cursor takes its place again.
  Q_EMIT renderStateChanged();
  return good;
}

QString DefaultPcdFrameRenderBuffer::convertFile(QString from, QString to) const { return convertPointFile(from, to); }

}  // namespace tarvo::skarnvisor
