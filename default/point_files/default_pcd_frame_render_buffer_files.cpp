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

}  // namespace

bool DefaultPcdFrameRenderBuffer::capture2PCD() {
  QSettings settings(settingsFile(), QSettings::IniFormat);
  const QString path = m_askForFile(settings.value(lastFileKey).toString());
  if (path.isEmpty()) return false;
  settings.setValue(lastFileKey, path);
  return capture2PCD(path);
}

bool DefaultPcdFrameRenderBuffer::capture2PCD(const QString &path) {
  const QByteArray shownPath = QFile::encodeName(path);
  const bool selectedOnly = m_settings.selectEnabled;
  QString fault;
  {
    const std::lock_guard lock(m_store.frameMutex);
    const std::span<const lidar::SDKPointInfo> points(m_store.points.data(), m_store.usableLocked());
    fault = writeCapture(
        points,
        [&](std::size_t i) {
          const float color = floatFromHalf(static_cast<std::uint16_t>(m_store.vertices[i].color));
          return color >= 0.0F && (!selectedOnly || points[i].selected != 0);
        },
        path);
  }
  if (!fault.isEmpty()) {
    std::printf("pcd file: %s open failed\n", shownPath.constData());
    SKARN_LOG(LogLevel::Error, "%s", qPrintable(fault));
    return false;
  }
  std::printf("pcd file is saved to %s\n", shownPath.constData());
  return true;
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
