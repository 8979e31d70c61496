// The 2-D remake switch and the coordinate transform.
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include "contracts/runtime/sdk_source.h"
#include "contracts/runtime/sv_sdk_runtime.h"

#include <algorithm>
#include <cmath>

namespace tarvo::skarnvisor {

namespace {

constexpr float degreesPerRadian = 57.295776F;
constexpr float radiansPerDegree = 0.017453292F;

/// Closer than one part in 100,000 of the smaller magnitude.
bool nearlyEqual(float a, float b) { return std::fabs(a - b) * 100000.0F <= std::min(std::fabs(a), std::fabs(b)); }

}  // namespace

void DefaultSDKFrameRenderBuffer::setRemakeConfig(bool on) {
  m_settings.remakeEnabled = on;
  tarvo::lidar::SDKSource *const from = source();
  if (auto *const decoder = runtime()) {
    writeParams([on](tarvo::lidar::FrameDecodeParam &params) { params.remake.enabled = on; });
    if (on) decoder->ApplyRemakeDefaultConfig();
    const auto grid = tarvo::lidar::DecodeParams::read(*decoder, [](const auto &params) { return params.remake; });
    from->remakeWidth = std::max(grid.elevationCells, 1);
    from->mergedFrames = std::max(grid.mergedFrames, 1);
  }
  if (from != nullptr) from->fastPathDone = false;
  m_picture.dropFastVertex();
  repeatParse();
  announce(&DefaultSDKFrameRenderBuffer::remakeConfigChanged);
  announce(&DefaultSDKFrameRenderBuffer::vertexChanged);
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::setCoordinateTransformEnabled(bool enabled) {
  if (m_transform.enabled.exchange(enabled) == enabled) return;
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::storeTransform(Relaxed<float> &field, float value) {
  if (nearlyEqual(field, value)) return;
  field = value;
  if (m_transform.enabled) announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

float DefaultSDKFrameRenderBuffer::coordinateTransformRoll() const { return m_transform.rollRad * degreesPerRadian; }

void DefaultSDKFrameRenderBuffer::setCoordinateTransformRoll(float degrees) {
  storeTransform(m_transform.rollRad, degrees * radiansPerDegree);
}

float DefaultSDKFrameRenderBuffer::coordinateTransformPitch() const { return m_transform.pitchRad * degreesPerRadian; }

void DefaultSDKFrameRenderBuffer::setCoordinateTransformPitch(float degrees) {
  storeTransform(m_transform.pitchRad, degrees * radiansPerDegree);
}

float DefaultSDKFrameRenderBuffer::coordinateTransformYaw() const { return m_transform.yawRad * degreesPerRadian; }

void DefaultSDKFrameRenderBuffer::setCoordinateTransformYaw(float degrees) {
  storeTransform(m_transform.yawRad, degrees * radiansPerDegree);
}

void DefaultSDKFrameRenderBuffer::refreshCoordinateTransform() {
  if (m_transform.enabled) announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

}  // namespace tarvo::skarnvisor
