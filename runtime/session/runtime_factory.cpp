#include "contracts/runtime/runtime_factory.h"

#include "runtime/isp/frame_queue_engine.h"
#include "runtime/session/runtime_session.h"

namespace tarvo {

QSharedPointer<SDKSource> createSdkSource() {
  auto source = QSharedPointer<SDKSource>::create();
  source->ispEngine = new lidar::FrameQueueEngine;
  source->runtime = new lidar::RuntimeSession(*source);
  return source;
}

}  // namespace tarvo
