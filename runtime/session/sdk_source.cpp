#include "contracts/runtime/sdk_source.h"

#include "contracts/runtime/parallel_isp_engine.h"
#include "contracts/runtime/sv_sdk_runtime.h"

namespace tarvo::lidar {

SDKSource::SDKSource(QObject *parent) : QObject(parent), playState(std::make_shared<PlayState>()) {}

SDKSource::~SDKSource() {
  // The runtime's threads may use the engine to their end.
  delete runtime;
  delete ispEngine;
}

void SDKSource::CopyRgbOverlayFromFrame(const LidarDecodedFrame<SDKPointInfo> *frame) {
  if (frame == nullptr) {
    overlayPoints.clear();
    overlayColumns = overlayRows = 0;
    return;
  }
  const std::lock_guard lock(frame->mutex);
  overlayPoints = frame->overlayPoints;
  overlayColumns = frame->overlayColumns;
  overlayRows = frame->overlayRows;
}

}  // namespace tarvo::lidar
