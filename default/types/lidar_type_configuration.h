#pragma once

#include <QObject>
#include <string>

#include "contracts/runtime/sdk_source.h"
#include "default/types/lidar_type_chains.h"

namespace tarvo::skarnvisor {

class DefaultSDKFrameRenderBuffer;

/// Fills in on the render buffer and the source what the lidar type asks for, once a source, before its first frame.
/// A type without a row keeps every default but for what its chain gives to all types. Ends with `qmlControlChanged()`.
/// Runs on the thread that owns `renderBuffer`; the buffer has its source and its lidar type by then.
/// @param loader the functor that opened the source
/// @param sourceKind the kind of the source's start parameters
void configureLidarType(const LidarTypeChain &chain, QObject *loader, DefaultSDKFrameRenderBuffer &renderBuffer,
                        const std::string &type, int sourceKind, SDKSource &source);

}  // namespace tarvo::skarnvisor
