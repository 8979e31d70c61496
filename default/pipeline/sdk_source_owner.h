#pragma once

#include <QSharedPointer>

#include "contracts/runtime/sdk_source.h"

namespace tarvo::skarnvisor {

/// Who holds the source of a pipeline. A clip reaches its source through its parent, which is one of these.
class SdkSourceOwner {
 public:
  virtual ~SdkSourceOwner() = default;
  /// Null until the pipeline is wired. Any thread after that.
  [[nodiscard]] virtual lidar::SDKSource *ownedSource() const = 0;
};

}  // namespace tarvo::skarnvisor
