// Filters that the decoder applies: each setting goes to the runtime and has the current frame decoded again.
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include "contracts/host/log.h"
#include "contracts/runtime/sdk_source.h"
#include "contracts/runtime/sv_sdk_runtime.h"

#include <functional>
#include <type_traits>

SKARN_LOG_SOURCE("default/default_sdk_parser");

namespace tarvo::skarnvisor {

using tarvo::lidar::SmoothingConfig;
using tarvo::lidar::SvSdkRuntime;

namespace {

using Rb = DefaultSDKFrameRenderBuffer;

bool longEnough(const QVariantList &list, int least, const char *what) {
  if (list.size() >= least) return true;
  SKARN_LOG(LogLevel::Error, "%s takes %d values, got %d", what, least, static_cast<int>(list.size()));
  return false;
}

/// Elements from `first` on, one for each place of `to`; what is no number reads as 0.
template <typename Places>
void takeNumbers(const QVariantList &list, int first, Places &to) {
  for (auto &place : to) place = list[first++].template value<std::decay_t<decltype(place)>>();
}

/// The next decode takes up a filter that has been switched on.
void askForFilteredDecode(SvSdkRuntime &decoder) {
  auto *const frame = decoder.DecodeFrame();
  if (frame == nullptr) return;
  const std::lock_guard lock(frame->mutex);
  frame->popoutRefresh = 1;
}

}  // namespace

void Rb::forwardFilter(const std::function<void(SvSdkRuntime &)> &setting) {
  if (auto *const decoder = runtime()) setting(*decoder);
  announce(&Rb::renderStateChanged);
}

void Rb::setVd8PopoutFilterFlag(bool flag) {
  forwardFilter([flag](SvSdkRuntime &decoder) {
    decoder.SetPopoutFilterFlag(flag);
    if (flag) askForFilteredDecode(decoder);
  });
}

void Rb::setVd8PopoutFilterHighlight(bool flag) {
  m_settings.vd8PopoutHighlight = flag;
  forwardFilter([flag](SvSdkRuntime &decoder) { decoder.SetPopoutFilterHighlight(flag); });
}

void Rb::setPopoutFilterConfig(QVariantList list) {
  if (!longEnough(list, 4, "setPopoutFilterConfig")) return;
  forwardFilter([&list](SvSdkRuntime &decoder) {
    decoder.SetPopoutFilterConfig(list[0].toInt(), list[1].toFloat(), list[2].toFloat(), list[3].toFloat());
  });
}

void Rb::setVd2OfflineFilterFlag(bool flag) {
  forwardFilter([flag](SvSdkRuntime &decoder) {
    decoder.SetOfflineFilterFlag(flag);
    if (flag) askForFilteredDecode(decoder);
  });
}

void Rb::setVd8OffineFilterFlag(bool flag) {
  forwardFilter([flag](SvSdkRuntime &decoder) { decoder.SetVd8OfflineFilterFlag(flag); });
}

void Rb::setPointCloudSmoothingFlag(bool flag) {
  forwardFilter([flag](SvSdkRuntime &decoder) { decoder.SetPointCloudSmoothingFlag(flag); });
}

void Rb::setPointCloutSmoothingConfig(QVariantList list) {
  constexpr int lastElement = 13;
  if (!longEnough(list, lastElement + 1, "setPointCloutSmoothingConfig")) return;
  forwardFilter([&list](SvSdkRuntime &decoder) {
    SmoothingConfig config;
    config.enabled = decoder.GetPointCloudSmoothingFlag();
    takeNumbers(list, 0, config.floats0);
    config.int7 = list[7].toInt();
    takeNumbers(list, 8, config.floats8);
    takeNumbers(list, 11, config.ints11);
    decoder.SetPointCloudSmoothingConfig(config, list[lastElement].toFloat());
  });
}

void Rb::setVd2DistanceFilterThreshold(float metres) {
  writeParams([metres](tarvo::lidar::FrameDecodeParam &params) { params.vd2DistanceThreshold = metres; });
  announce(&Rb::renderStateChanged);
}

void Rb::setYfnNoiseFilterFlag(bool flag) {
  forwardFilter([flag](SvSdkRuntime &decoder) { decoder.SetYfnNoiseFilterFlag(flag); });
}

void Rb::setYfnNoiseFilterMode(int mode) {
  forwardFilter([mode](SvSdkRuntime &decoder) { decoder.SetYfnNoiseFilterMode(mode); });
}

void Rb::setYfnNoiseFilterConfig(QVariantList list) {
  if (!longEnough(list, 3, "setYfnNoiseFilterConfig")) return;
  forwardFilter([&list](SvSdkRuntime &decoder) {
    decoder.SetYfnNoiseFilterParams(list[0].toFloat(), list[1].toFloat(), list[2].toInt());
  });
}

}  // namespace tarvo::skarnvisor
