// Channel gains and image-signal settings of the colour lidars: taken in, read again, worked into the frame at hand.
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <vector>

#include "contracts/host/log.h"
#include "contracts/runtime/sdk_source.h"
#include "contracts/runtime/sv_sdk_runtime.h"
#include "default/pipeline/calibration_messages.h"
#include "default/pipeline/default_sdk_frame_render_buffer.h"
#include "libtarvo/UdpParser/energy_deduct_data_loaders.h"

SKARN_LOG_SOURCE("default/default_sdk_frame_render_buffer_image_signal");

namespace tarvo::skarnvisor {

namespace {

using Rb = DefaultSDKFrameRenderBuffer;

/// Puts the points of a decoded frame at the start of the source's own; false when the frame holds none.
bool takeOver(tarvo::lidar::SDKSource &source, tarvo::lidar::DecodedFrame &frame) {
  const std::lock_guard lock(source.frameLock);
  {
    const std::lock_guard frameGuard(frame.mutex);
    const std::size_t capacity = std::size_t{frame.packetCapacity} * frame.pointsPerPacket;
    const std::size_t count = std::min<std::size_t>(frame.pointCount, capacity);
    if (count == 0 || frame.points == nullptr) return false;
    if (source.points.size() < count) source.points.resize(capacity);
    std::copy_n(frame.points, count, source.points.begin());
    source.pointCount = static_cast<std::int32_t>(count);
  }
  source.CopyRgbOverlayFromFrame(&frame);
  return true;
}

}  // namespace

bool Rb::importChannelEqFile(QString path) {
  auto *const decoder = runtime();
  if (decoder == nullptr || !QFile::exists(path)) return refuseFile("Unable to import channel_eq %s", path);
  const int rows = traits().channelEqRows;
  const std::string file = localPath(path);
  std::vector<float> red;
  std::vector<float> green;
  std::vector<float> blue;
  // Channels beyond the type's own say that the table is another type's.
  if (!tarvo::lidar::loadChannelEqGains(file, rows, red, green, blue) ||
      tarvo::lidar::lastChannelOfEqGains(file) >= rows) {
    SKARN_LOG(LogLevel::Error, "Invalid channel_eq CSV (expect %d elevation rows): %s", rows, file.c_str());
    return false;
  }
  const QString defaultPath = m_paths.channelEqPath.copy();
  if (!defaultPath.isEmpty() && defaultPath != path) copyNbqRgbChannelEqCsvTo(defaultPath, path);
  decoder->ExecuteWithIspLock([this, &file] {
    writeParams([&file](tarvo::lidar::FrameDecodeParam &params) {
      params.isp.channelEqPath = file;
      params.isp.channelEqEnable = true;
    });
  });
  m_paths.channelEqFileDir.set(QFileInfo(path).fileName());
  announce(&Rb::fileDirChanged);
  announce(&Rb::renderStateChanged);
  return true;
}

bool Rb::importIspConfigFile(QUrl url) {
  const bool taken = importFiretimesFile(url.toLocalFile());
  if (taken) reapplyIspOnCurrentFrame();
  return taken;
}

bool Rb::reloadIspConfigAndReapply() {
  const QString path = m_paths.firetimesPath.copy();
  if (path.isEmpty() || !QFile::exists(path)) return refuseFile("Unable to reload ISP config: %s", path);
  if (!importFiretimesFile(path)) return false;
  reapplyIspOnCurrentFrame();
  return true;
}

bool Rb::reloadChannelEqAndReapply() {
  const QString path = m_paths.channelEqPath.copy();
  if (path.isEmpty() || !QFile::exists(path)) return refuseFile("Unable to reload channel_eq: %s", path);
  if (!importChannelEqFile(path)) return false;
  reapplyIspOnCurrentFrame();
  return true;
}

void Rb::reapplyIspOnCurrentFrame() {
  auto *const decoder = runtime();
  if (decoder == nullptr) return;
  auto *const frame = decoder->DecodeFrame();
  if (frame == nullptr || source()->pointCount == 0 || decoder->ReapplyIsp(frame) != 0) return;
  if (takeOver(*source(), *frame)) repeatParse();
}

}  // namespace tarvo::skarnvisor
