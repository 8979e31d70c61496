#include "default/pipeline/default_sdk_net_buffer.h"

#include <QApplication>
#include <QFileDialog>
#include <QPalette>
#include <QSettings>

#include "contracts/host/log.h"
#include "contracts/host/time.h"
#include "default/files/settings_file.h"

SKARN_LOG_SOURCE("default/default_sdk_net_buffer");

namespace tarvo::skarnvisor {

namespace {

const QString lastRecordKey = QStringLiteral("LastSavePcapFilePath");

QString dialogStyle(const QPalette &palette) {
  const QString window = palette.color(QPalette::Window).name();
  const QString highlight = palette.color(QPalette::Highlight).name();
  return QStringLiteral("background-color:") + window + QStringLiteral(";selection-background-color:") + highlight +
         QStringLiteral(";alternate-background-color:") + highlight + QStringLiteral(";");
}

}  // namespace

DefaultSDKNetBuffer::DefaultSDKNetBuffer(QObject *parent) : ClipBuffer(parent) {}

DefaultSDKNetBuffer::~DefaultSDKNetBuffer() = default;

lidar::SDKSource *DefaultSDKNetBuffer::source() const {
  const auto *owner = dynamic_cast<const SdkSourceOwner *>(parent());
  return owner ? owner->ownedSource() : nullptr;
}

lidar::SvSdkRuntime *DefaultSDKNetBuffer::runtime() const {
  const lidar::SDKSource *current = source();
  return current ? current->runtime : nullptr;
}

bool DefaultSDKNetBuffer::pcapActive() const {
  const lidar::SDKSource *current = source();
  return current && (current->clipLoading || current->clipActive);
}

bool DefaultSDKNetBuffer::pcapLoading() const {
  const lidar::SDKSource *current = source();
  return current && current->clipLoading;
}

bool DefaultSDKNetBuffer::pcapStopped() const {
  const lidar::SDKSource *current = source();
  return current && current->clipStopped;
}

void DefaultSDKNetBuffer::setPcapActive(bool active) {
  lidar::SDKSource *current = source();
  if (!current) return;
  current->clipLoading = active;
  current->clipActive = active;
}

void DefaultSDKNetBuffer::setLoading(bool loading) {
  m_loading = loading;
  if (lidar::SvSdkRuntime *sdk = runtime()) sdk->SetStopRecv(!loading);
  Q_EMIT changed();
}

void DefaultSDKNetBuffer::showFrame(int frame) {
  if (m_frameID.exchange(frame) != frame) Q_EMIT frameIDChanged();
}

void DefaultSDKNetBuffer::follow(const lidar::SDKSource &source) {
  const lidar::SvSdkRuntime *sdk = source.runtime;
  const int frames = sdk && sdk->HasPreParser() ? sdk->GetFrameCount() : 0;
  const double begin = source.beginSeconds;
  const double end = source.endSeconds;
  if (begin < 0.0 || end < 0.0 || begin > end) return;
  setBegin(timeFromSeconds(begin));
  setEnd(timeFromSeconds(end));
  if (frames == m_frameCount && !m_frameIndexUseful) return;
  m_frameCount = frames;
  m_frameIndexUseful = false;
  Q_EMIT changed();
}

double DefaultSDKNetBuffer::getFrameStartSeconds(int frame) const {
  const lidar::SvSdkRuntime *sdk = runtime();
  return sdk && frame >= 0 && frame < m_frameCount ? sdk->GetFrameStartSeconds(frame) : 0.0;
}

bool DefaultSDKNetBuffer::cutPcap(QUrl target, int first, int last) {
  lidar::SvSdkRuntime *sdk = runtime();
  return sdk && sdk->CutPcap(target.toLocalFile().toLocal8Bit().toStdString(), first, last);
}

bool DefaultSDKNetBuffer::cutPcap(QUrl target, QString begin, QString end) {
  lidar::SvSdkRuntime *sdk = runtime();
  return sdk && sdk->CutPcap(target.toLocalFile().toLocal8Bit().toStdString(), secondsOf(dateMsTimeString2Time(begin)),
                             secondsOf(dateMsTimeString2Time(end)));
}

bool DefaultSDKNetBuffer::setRecord(bool on) {
  m_recording = on;
  lidar::SvSdkRuntime *sdk = runtime();
  if (!sdk) {
    SKARN_LOG(LogLevel::Internal, "error: sdk runtime is null");
    return false;
  }
  if (!on) {
    sdk->StopRecordPcap();
    return true;
  }
  QSettings settings(settingsFile(), QSettings::IniFormat);
  const QString file = askRecordFile(settings.value(lastRecordKey, QString()).toString());
  if (file.isNull()) return false;
  m_recordPath = file.toLocal8Bit().toStdString();
  if (m_recordPath.empty()) {
    SKARN_LOG(LogLevel::Internal, "error: record path is empty");
    return false;
  }
  sdk->StartRecordPcap(m_recordPath);
  settings.setValue(lastRecordKey, file);
  return true;
}

QString DefaultSDKNetBuffer::askRecordFile(const QString &lastPath) {
  QObject *owner = parent();
  QFileDialog dialog(owner && owner->isWidgetType() ? static_cast<QWidget *>(owner) : nullptr);
  dialog.setStyleSheet(dialogStyle(QApplication::palette()));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setWindowTitle(QStringLiteral("Save pcap file"));
  dialog.setNameFilter(QStringLiteral("pcap files (*.pcap)"));
  dialog.setDefaultSuffix(QStringLiteral("pcap"));
  dialog.selectFile(lastPath);
  if (dialog.exec() != QDialog::Accepted) return {};
  const QStringList files = dialog.selectedFiles();
  return files.isEmpty() ? QString() : files.constFirst();
}

}  // namespace tarvo::skarnvisor
