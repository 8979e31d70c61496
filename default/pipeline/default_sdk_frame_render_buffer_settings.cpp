// Settings that end in a word to the decoder or in a run of the pipeline.
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include "contracts/host/log.h"
#include "contracts/host/time.h"
#include "contracts/runtime/decoded_frame_resize.h"
#include "contracts/runtime/sdk_source.h"
#include "contracts/runtime/sv_sdk_runtime.h"

#include <array>
#include <cmath>

SKARN_LOG_SOURCE("default/default_sdk_parser");

namespace tarvo::skarnvisor {

using tarvo::lidar::FrameDecodeParam;

namespace {

/// Frames of a decode are sized by this many seconds each.
constexpr double secondsPerDecodeFrame = 0.2;

constexpr int noDetailExport = -1;  ///< detailExportType while no frame is written

struct CapabilityRow {
  std::string_view name;
  Relaxed<bool> Capabilities::*flag;
};

constexpr std::array capabilityRows{
    CapabilityRow{"monitorViewUseful", &Capabilities::monitorViewUseful},
    CapabilityRow{"firetimesUseful", &Capabilities::firetimesUseful},
    CapabilityRow{"faultmessageViewUsed", &Capabilities::faultmessageViewUsed},
    CapabilityRow{"reflectanceMappingFlag", &Capabilities::reflectanceMappingFlag},
    CapabilityRow{"channelConfigUseful", &Capabilities::channelConfigUseful},
    CapabilityRow{"dirtyMappingReflectanceUsefulFlag", &Capabilities::dirtyMappingReflectanceUsefulFlag},
    CapabilityRow{"frameDurationFlag", &Capabilities::frameDurationFlag},
    CapabilityRow{"frameNumberFlag", &Capabilities::frameNumberFlag},
    CapabilityRow{"remakeAndQuantifyFlag", &Capabilities::remakeAndQuantifyFlag},
    CapabilityRow{"groundFiterFlag", &Capabilities::groundFiterFlag},
    CapabilityRow{"d2DViewUsed", &Capabilities::d2DViewUsed},
    CapabilityRow{"dcfUseful", &Capabilities::dcfUseful},
    CapabilityRow{"nonlinearMappingUseful", &Capabilities::nonlinearMappingUseful},
    CapabilityRow{"useBlindChannels", &Capabilities::useBlindChannels},
    CapabilityRow{"vd8PopoutFilterFlag", &Capabilities::vd8PopoutFilterFlag},
    CapabilityRow{"vd2OfflineFilter", &Capabilities::vd2OfflineFilter},
    CapabilityRow{"pointCloudSmoothing", &Capabilities::pointCloudSmoothing},
    CapabilityRow{"coordinateTransformUseful", &Capabilities::coordinateTransformUseful},
    CapabilityRow{"vd2DistanceFilter", &Capabilities::vd2DistanceFilter},
    CapabilityRow{"yfnNoiseFilter", &Capabilities::yfnNoiseFilter},
    CapabilityRow{"elevationFovFilterFlag", &Capabilities::elevationFovFilterFlag},
    CapabilityRow{"vd8OffineFilterFlag", &Capabilities::vd8OffineFilterFlag},
};

}  // namespace

bool DefaultSDKFrameRenderBuffer::setCapability(std::string_view propertyName, bool on) {
  if (propertyName == "intensityMapFlag") {
    m_settings.intensityMapFlag = on;
    return true;
  }
  for (const CapabilityRow &row : capabilityRows) {
    if (row.name == propertyName) {
      m_capabilities.*row.flag = on;
      return true;
    }
  }
  for (FamilyCapability *const capability : m_familyCapabilities) {
    if (capability->property() == propertyName) {
      capability->set(on);
      return true;
    }
  }
  return false;
}

void DefaultSDKFrameRenderBuffer::writeParams(const std::function<void(FrameDecodeParam &)> &change) {
  if (auto *const decoder = runtime()) tarvo::lidar::DecodeParams::write(*decoder, change);
}

void DefaultSDKFrameRenderBuffer::setPlayByFrame(bool byFrame) {
  m_settings.playByFrame = byFrame;
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::setDistanceCorrectionState(int state) {
  m_settings.distanceCorrectionState = state;
  writeParams([state](FrameDecodeParam &params) { params.distanceCorrection = state > 0; });
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::setMonitorViewEnabled(bool enabled) {
  m_settings.monitorViewEnabled = enabled;
  if (auto *const decoder = runtime()) {
    if (auto *const frame = decoder->DecodeFrame()) {
      const std::lock_guard lock(frame->mutex);
      frame->deviceStatus[0] = enabled ? 1 : 0;
    }
  }
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::setFaultmessageViewEnabled(bool enabled) {
  m_settings.faultmessageViewEnabled = enabled;
  writeParams([enabled](FrameDecodeParam &params) { params.faultPackets = enabled; });
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

double DefaultSDKFrameRenderBuffer::frameSeconds() const {
  return secondsFromTicks(Ticks(m_settings.frameTicks.load()));
}

void DefaultSDKFrameRenderBuffer::setFrameSeconds(double seconds) {
  const double frames = 1.0 + std::trunc(seconds / secondsPerDecodeFrame);
  if (!(frames > 0.0) || frames > std::numeric_limits<int>::max()) return;
  if (auto *const decoder = runtime()) {
    if (auto *const frame = decoder->DecodeFrame()) tarvo::lidar::resizeDecodedFrame(*frame, static_cast<int>(frames));
  }
  m_settings.frameTicks = ticksFromSeconds(seconds).count();
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::setUseCuda(int use) {
  m_settings.useCuda = use;
  writeParams([use](FrameDecodeParam &params) { params.useCuda = use > 0; });
  SKARN_LOG(LogLevel::Information, "set cuda param: %d", use);
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
  announce(&DefaultSDKFrameRenderBuffer::useCudaChanged);
}

void DefaultSDKFrameRenderBuffer::toggleDirtry(int level, bool shown) {
  if (level >= 0 && static_cast<std::size_t>(level) < std::tuple_size_v<DirtyMask>)
    m_settings.dirtyMask.update([&](DirtyMask &mask) { mask[static_cast<std::size_t>(level)] = shown; });
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::setBlindChannelsCheck(bool check) {
  m_settings.blindChannelCheck = check;
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::intensityMapping(bool on) {
  m_settings.intensityMapFlag = on;
  writeParams([on](FrameDecodeParam &params) { params.intensityMapping = on; });
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

bool DefaultSDKFrameRenderBuffer::setFiretimeCorrectionState(bool on) {
  writeParams([on](FrameDecodeParam &params) { params.firetimeCorrection = on; });
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
  return true;
}

bool DefaultSDKFrameRenderBuffer::setDcfCorrectionState(bool on) {
  writeParams([on](FrameDecodeParam &params) { params.dcfCorrection = on; });
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
  return true;
}

void DefaultSDKFrameRenderBuffer::setDirtyMappingReflectanceFlag(bool on) {
  writeParams([on](FrameDecodeParam &params) { params.dirtyMappingReflectance = on; });
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::setElevationFovFilterFlag(bool on) {
  writeParams([on](FrameDecodeParam &params) { params.elevationFovFilter = on; });
}

void DefaultSDKFrameRenderBuffer::setEchoModelReturnMode(int index) {
  writeParams([index](FrameDecodeParam &params) { params.selectedEcho = static_cast<std::uint8_t>(index); });
  m_echoModel.setEchoDisplayMode(index);
  if (traits().echoGate) {
    if (m_ring.active())
      filterMultiPoints();
    else
      filterSinglePoints();
  }
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::setDetailExport(bool on, int type, QUrl url) {
  if (on) {
    m_settings.detailExportPath.set(url.toLocalFile());
    if (m_settings.detailExportType == noDetailExport)
      m_beforeExport = {m_settings.spreadSheetEnabled, m_settings.playByFrame};
    m_settings.spreadSheetEnabled = true;
    m_settings.playByFrame = true;
  } else if (m_settings.detailExportType != noDetailExport) {
    m_settings.spreadSheetEnabled = m_beforeExport.spreadSheetEnabled;
    m_settings.playByFrame = m_beforeExport.playByFrame;
  }
  m_settings.detailExportType = on ? type : noDetailExport;
}

}  // namespace tarvo::skarnvisor
