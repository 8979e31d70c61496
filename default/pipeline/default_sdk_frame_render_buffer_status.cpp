// Status text, device tables, inertial unit and channel display.
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include "contracts/runtime/sdk_source.h"
#include "contracts/runtime/status_packet.h"
#include "default/telemetry/fault_messages.h"
#include "default/telemetry/monitor_decoder.h"

#include <atomic>
#include <cmath>
#include <utility>

namespace tarvo::skarnvisor {

QString DefaultSDKFrameRenderBuffer::status() const {
  if (!m_settings.statusEnabled) return {};
  QString text;
  if (const double speed = m_motorSpeed; speed != 0.0)
    text += QStringLiteral("Motor Speed: ") + QStringLiteral("%1").arg(speed, 9, 'f', 3) + QStringLiteral("\t\t");
  text += QStringLiteral("Return Mode: ") + m_echoModel.returnModeName() + QStringLiteral("\t\t") +
          *m_settings.title.take() + QStringLiteral("\t\n");
  if (m_imuConfig > 0) {
    const auto sample = m_imuSample.take();
    const auto number = [](double value, int decimals) { return QString::number(value, 'f', decimals); };
    text += QStringLiteral("accel_x: ") + number(sample->acceleration[0], 8) + QStringLiteral("\t\t") +
            QStringLiteral("accel_y: ") + number(sample->acceleration[1], 8) + QStringLiteral("\t\t") +
            QStringLiteral("accel_z: ") + number(sample->acceleration[2], 8) + QStringLiteral("\n");
    text += QStringLiteral("ang_vel_x: ") + number(sample->angularVelocity[0], 5) + QStringLiteral("\t\t") +
            QStringLiteral("ang_vel_y: ") + number(sample->angularVelocity[1], 5) + QStringLiteral("\t\t") +
            QStringLiteral("ang_vel_z: ") + number(sample->angularVelocity[2], 5) + QStringLiteral("\n");
  }
  return text;
}

void DefaultSDKFrameRenderBuffer::setImuConfig(int config) {
  m_imuConfig = config;
  announce(&DefaultSDKFrameRenderBuffer::imuConfigChanged);
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

QList<double> DefaultSDKFrameRenderBuffer::imuData() const {
  const auto &[x, y, z] = m_imuSample.take()->acceleration;
  const double length = std::sqrt(x * x + y * y + z * z);
  if (length == 0.0) return {0.0, 0.0, 0.0};
  return {x / length, y / length, z / length};
}

void DefaultSDKFrameRenderBuffer::updateImu(std::vector<tarvo::lidar::ImuSample> &samples) {
  for (const tarvo::lidar::ImuSample &sample : samples) {
    if (!sample.valid) continue;
    const int config = m_imuConfig;
    if (config < 0 && m_imuConfig.replace(config, 0)) announce(&DefaultSDKFrameRenderBuffer::imuConfigChanged);
    if (m_imuConfig > 0) {
      m_imuSample.set(sample);
      announce(&DefaultSDKFrameRenderBuffer::imuDataChanged);
    }
    break;
  }
  samples.clear();
}

void DefaultSDKFrameRenderBuffer::setDisplayedFlag(int channel, bool shown, bool refresh) {
  bool *const displayed = m_correctionView.displayed;
  if (displayed == nullptr) return;
  // The decoder reads the byte while this writes it. A frame may name more channels than the table has.
  if (channel >= 0 && channel < m_correctionView.channels)
    std::atomic_ref(displayed[channel]).store(shown, std::memory_order_relaxed);
  if (refresh) {
    announce(&DefaultSDKFrameRenderBuffer::channelModelChanged);
    announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
  }
}

void DefaultSDKFrameRenderBuffer::updateMonitor(const unsigned char *block) {
  showMonitor(block, monitorBoards(lidarType(), block[status_block::variantOffset]));
}

void DefaultSDKFrameRenderBuffer::showMonitor(const unsigned char *block, const MonitorBoards &boards) {
  std::vector<NamedValue> rows = decodeMonitor(block, boards, m_deviceTables.rntcTable);
  const int count = static_cast<int>(rows.size());
  m_deviceTables.monitorRows.replace(std::move(rows));
  m_monitorModel->setRowCount(count);
  announce(&DefaultSDKFrameRenderBuffer::monitorModelChanged);
}

std::size_t DefaultSDKFrameRenderBuffer::faultRecordBytes() const { return tarvo::lidar::shortStatusPacketBytes; }

void DefaultSDKFrameRenderBuffer::updateFaultMessages(const unsigned char *packets, int count) {
  if (!m_settings.faultmessageViewEnabled) return;
  std::vector<NamedValue> rows = faultRows(packets, count);
  const int rowCount = static_cast<int>(rows.size());
  m_deviceTables.faultRows.replace(std::move(rows));
  m_faultmessageModel->setRowCount(rowCount);
  announce(&DefaultSDKFrameRenderBuffer::faultmessageModelChanged);
}

}  // namespace tarvo::skarnvisor
