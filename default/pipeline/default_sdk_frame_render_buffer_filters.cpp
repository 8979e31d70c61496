// Filters that the decoder applies: each setting goes to the runtime and has the current frame decoded again.
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include "contracts/host/log.h"
#include "contracts/runtime/decoder_filter_settings.h"
#include "contracts/runtime/sdk_source.h"
#include "contracts/runtime/sv_sdk_runtime.h"

#include <functional>
#include <type_traits>

SKARN_LOG_SOURCE("default/default_sdk_parser");

namespace tarvo::skarnvisor {

using tarvo::lidar::FrameDecodeParam;
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

/// A float as it is written: 0.3, not the double that lies nearest to it.
double asWritten(float value) { return QString::number(value).toDouble(); }

/// What a runtime starts with, by setter.
QVariantMap filtersAtStart() {
  const tarvo::lidar::PopoutSettings popout;
  const tarvo::lidar::NoiseSettings noise;
  const tarvo::lidar::SmoothingSettings smoothing;
  QVariantMap start;
  for (const char *flag : {"setVd8PopoutFilterFlag", "setVd2OfflineFilterFlag", "setVd8OffineFilterFlag",
                           "setPointCloudSmoothingFlag", "setYfnNoiseFilterFlag"})
    start.insert(QLatin1String(flag), false);
  start.insert(QStringLiteral("setYfnNoiseFilterMode"), noise.mode);
  start.insert(QStringLiteral("setPopoutFilterConfig"),
               QVariantList{popout.window, asWritten(popout.toleranceMetres), asWritten(popout.toleranceOfRange),
                            asWritten(popout.greatestRangeMetres)});
  start.insert(QStringLiteral("setYfnNoiseFilterConfig"),
               QVariantList{asWritten(noise.radiusMetres), asWritten(noise.radiusOfRange), noise.leastNeighbours});
  start.insert(
      QStringLiteral("setPointCloutSmoothingConfig"),
      QVariantList{asWritten(smoothing.leastRangeMetres), asWritten(smoothing.greatestRangeMetres),
                   asWritten(smoothing.toleranceMetres), asWritten(smoothing.toleranceOfRange),
                   asWritten(smoothing.leastIntensity), asWritten(smoothing.greatestIntensity),
                   asWritten(smoothing.centreWeight), smoothing.columnReach, asWritten(smoothing.leastElevationDeg),
                   asWritten(smoothing.greatestElevationDeg), asWritten(smoothing.strength), smoothing.channelReach,
                   smoothing.passes, asWritten(smoothing.greatestShiftMetres)});
  return start;
}

QVariantList levelsHidden(const DirtyMask &shown) {
  QVariantList levels;
  for (std::size_t level = 0; level < shown.size(); ++level)
    if (!shown[level]) levels << static_cast<int>(level);
  return levels;
}

}  // namespace

QVariantMap Rb::toolSettings() const {
  QVariantMap settings = filtersAtStart();
  const auto allGiven = m_filtersGiven.take();
  for (auto given = allGiven->cbegin(); given != allGiven->cend(); ++given)
    settings.insert(given.key(), given.value());
  const auto tell = [&settings](const FrameDecodeParam &params) {
    settings.insert(QStringLiteral("setElevationFovFilterFlag"), params.elevationFovFilter);
    settings.insert(QStringLiteral("setVd2DistanceFilterThreshold"), asWritten(params.vd2DistanceThreshold));
    settings.insert(QStringLiteral("setDirtyMappingReflectanceFlag"), params.dirtyMappingReflectance);
    settings.insert(QStringLiteral("setFiretimeCorrectionState"), params.firetimeCorrection);
    settings.insert(QStringLiteral("setDcfCorrectionState"), params.dcfCorrection);
  };
  if (auto *const decoder = runtime())
    tarvo::lidar::DecodeParams::read(*decoder, tell);
  else
    tell({});
  settings.insert(QStringLiteral("setVd8PopoutFilterHighlight"), m_settings.vd8PopoutHighlight.load());
  settings.insert(QStringLiteral("setBlindChannelsCheck"), m_settings.blindChannelCheck.load());
  settings.insert(QStringLiteral("intensityMapping"), m_settings.intensityMapFlag.load());
  settings.insert(QStringLiteral("toggleDirtry"), levelsHidden(*m_settings.dirtyMask.take()));
  return settings;
}

void Rb::forwardFilter(const char *setter, const QVariant &value, const std::function<void(SvSdkRuntime &)> &setting) {
  if (auto *const decoder = runtime()) {
    setting(*decoder);
    m_filtersGiven.update([&](QVariantMap &given) { given.insert(QLatin1String(setter), value); });
  }
  announce(&Rb::renderStateChanged);
}

void Rb::setVd8PopoutFilterFlag(bool flag) {
  forwardFilter("setVd8PopoutFilterFlag", flag, [flag](SvSdkRuntime &decoder) {
    decoder.SetPopoutFilterFlag(flag);
    if (flag) askForFilteredDecode(decoder);
  });
}

void Rb::setVd8PopoutFilterHighlight(bool flag) {
  m_settings.vd8PopoutHighlight = flag;
  forwardFilter("setVd8PopoutFilterHighlight", flag,
                [flag](SvSdkRuntime &decoder) { decoder.SetPopoutFilterHighlight(flag); });
}

void Rb::setPopoutFilterConfig(QVariantList list) {
  if (!longEnough(list, 4, "setPopoutFilterConfig")) return;
  forwardFilter("setPopoutFilterConfig", list, [&list](SvSdkRuntime &decoder) {
    decoder.SetPopoutFilterConfig(list[0].toInt(), list[1].toFloat(), list[2].toFloat(), list[3].toFloat());
  });
}

void Rb::setVd2OfflineFilterFlag(bool flag) {
  forwardFilter("setVd2OfflineFilterFlag", flag, [flag](SvSdkRuntime &decoder) {
    decoder.SetOfflineFilterFlag(flag);
    if (flag) askForFilteredDecode(decoder);
  });
}

void Rb::setVd8OffineFilterFlag(bool flag) {
  forwardFilter("setVd8OffineFilterFlag", flag,
                [flag](SvSdkRuntime &decoder) { decoder.SetVd8OfflineFilterFlag(flag); });
}

void Rb::setPointCloudSmoothingFlag(bool flag) {
  forwardFilter("setPointCloudSmoothingFlag", flag,
                [flag](SvSdkRuntime &decoder) { decoder.SetPointCloudSmoothingFlag(flag); });
}

void Rb::setPointCloutSmoothingConfig(QVariantList list) {
  constexpr int lastElement = 13;
  if (!longEnough(list, lastElement + 1, "setPointCloutSmoothingConfig")) return;
  forwardFilter("setPointCloutSmoothingConfig", list, [&list](SvSdkRuntime &decoder) {
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
  forwardFilter("setYfnNoiseFilterFlag", flag, [flag](SvSdkRuntime &decoder) { decoder.SetYfnNoiseFilterFlag(flag); });
}

void Rb::setYfnNoiseFilterMode(int mode) {
  forwardFilter("setYfnNoiseFilterMode", mode, [mode](SvSdkRuntime &decoder) { decoder.SetYfnNoiseFilterMode(mode); });
}

void Rb::setYfnNoiseFilterConfig(QVariantList list) {
  if (!longEnough(list, 3, "setYfnNoiseFilterConfig")) return;
  forwardFilter("setYfnNoiseFilterConfig", list, [&list](SvSdkRuntime &decoder) {
    decoder.SetYfnNoiseFilterParams(list[0].toFloat(), list[1].toFloat(), list[2].toInt());
  });
}

}  // namespace tarvo::skarnvisor
