// Settings of the decoder's filters; the next decode takes them up.
#include "runtime/session/runtime_session.h"

namespace tarvo::lidar {

void RuntimeSession::SetPopoutFilterFlag(bool on) {
  filters_.change([on](FilterSettings &settings) { settings.popout = on; });
}

void RuntimeSession::SetPopoutFilterHighlight(bool on) {
  filters_.change([on](FilterSettings &settings) { settings.popoutHighlight = on; });
}

void RuntimeSession::SetPopoutFilterConfig(int window, float tolerance, float toleranceOfRange, float greatestRange) {
  filters_.change([&](FilterSettings &settings) {
    settings.popoutSettings = {window, tolerance, toleranceOfRange, greatestRange};
  });
}

void RuntimeSession::SetOfflineFilterFlag(bool on) {
  filters_.change([on](FilterSettings &settings) { settings.offline = on; });
}

void RuntimeSession::SetVd8OfflineFilterFlag(bool on) {
  filters_.change([on](FilterSettings &settings) { settings.vd8Offline = on; });
}

void RuntimeSession::SetPointCloudSmoothingFlag(bool on) {
  filters_.change([on](FilterSettings &settings) { settings.smoothing = on; });
}

bool RuntimeSession::GetPointCloudSmoothingFlag() const { return filters_.snapshot().smoothing; }

// The flag in the configuration is the one that this runtime gave out: it has a setter of its own.
void RuntimeSession::SetPointCloudSmoothingConfig(const SmoothingConfig &config, float last) {
  filters_.change([&](FilterSettings &settings) { settings.smoothingSettings = smoothingSettings(config, last); });
}

void RuntimeSession::SetYfnNoiseFilterFlag(bool on) {
  filters_.change([on](FilterSettings &settings) { settings.noise = on; });
}

void RuntimeSession::SetYfnNoiseFilterMode(int mode) {
  filters_.change([mode](FilterSettings &settings) { settings.noiseSettings.mode = mode; });
}

void RuntimeSession::SetYfnNoiseFilterParams(float radius, float radiusOfRange, int leastNeighbours) {
  filters_.change([&](FilterSettings &settings) {
    settings.noiseSettings.radiusMetres = radius;
    settings.noiseSettings.radiusOfRange = radiusOfRange;
    settings.noiseSettings.leastNeighbours = leastNeighbours;
  });
}

}  // namespace tarvo::lidar
