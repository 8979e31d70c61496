#pragma once

#include "contracts/runtime/roles/calibration_role.h"
#include "contracts/runtime/roles/cut_watch_role.h"
#include "contracts/runtime/roles/device_role.h"
#include "contracts/runtime/roles/family_roles.h"
#include "contracts/runtime/roles/filter_role.h"
#include "contracts/runtime/roles/frame_role.h"
#include "contracts/runtime/roles/start_role.h"

namespace tarvo::lidar {

// One lidar runtime: start, frames, calibration and device of one source. Every operation may be called from any thread
// once the object is built; none of them throws.
class SvSdkRuntime : public StartRole,
                     public IdentityRole,
                     public LoadStateRole,
                     public FrameRole,
                     public CaptureRole,
                     public CutWatchRole,
                     public CalibrationFileRole,
                     public CorrectionViewRole,
                     public DeviceRole,
                     public FilterRole,
                     public IspRole,
                     public FmcwRole,
                     public QsRole {
 public:
  ~SvSdkRuntime() override = default;
};

}  // namespace tarvo::lidar

namespace tarvo {
using lidar::SvSdkRuntime;
}
