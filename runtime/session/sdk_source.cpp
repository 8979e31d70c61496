#include "contracts/runtime/sdk_source.h"

#include "contracts/runtime/parallel_isp_engine.h"
#include "contracts/runtime/sv_sdk_runtime.h"

namespace tarvo::lidar {

SDKSource::SDKSource(QObject *parent) : QObject(parent), playState(std::make_shared<PlayState>()) {}

SDKSource::~SDKSource() {
  // The runtime's threads push into the engine and fill this source: they end with the runtime's destructor.
  delete runtime;
  delete ispEngine;
}

void SDKSource::CopyRgbOverlayFromFrame(const LidarDecodedFrame<SDKPointInfo> *frame) {
  overlayPoints.clear();
  overlayColumns = overlayRows = 0;
  if (!frame) return;
  const std::lock_guard lock(frame->mutex);
  overlayPoints = frame->overlayPoints;
  overlayColumns = frame->overlayColumns;
  overlayRows = frame->overlayRows;
}

}  // namespace tarvo::lidar
