#pragma once

#include <QtCore/QSharedPointer>

#include "contracts/runtime/sdk_source.h"

namespace tarvo {

// A source with its runtime and its image-signal engine, not started. Defined by the lidar runtime.
QSharedPointer<SDKSource> createSdkSource();

}  // namespace tarvo
