#pragma once

#include <functional>
#include <string>

#include "contracts/runtime/decoded_frame_layout.h"

namespace tarvo::lidar {

// Image-signal processing.
class IspRole {
 public:
  virtual ~IspRole() = default;
  // Runs `work` on the calling thread while no image-signal work is in progress. Not to be nested.
  virtual void ExecuteWithIspLock(const std::function<void()> &work) = 0;
  // Repeats the image-signal work on a decoded frame, in place; 0: done. Takes frame->mutex.
  virtual int ReapplyIsp(DecodedFrame * /*frame*/) { return -1; }
};

// FMCW lidars.
class FmcwRole {
 public:
  virtual ~FmcwRole() = default;
  virtual void SetFmcwSubLidarParas(int /*subLidar*/, const float * /*six values*/) {}
  virtual bool LoadFmcwMirrorSmoothFile(const std::string & /*path*/) { return false; }
  virtual bool SetFmcwOneLineNum(int /*points*/) { return false; }
  virtual void SetFmcwAzimuthScale(float /*scale*/) {}
  // Repeats the motion compensation on the raw points of a decoded frame; 0: done. Takes frame->mutex.
  virtual int ReapplyFmcwPostProcess(DecodedFrame * /*frame*/) { return -1; }
};

// QS lidars.
class QsRole {
 public:
  virtual ~QsRole() = default;
  [[nodiscard]] virtual bool GetQs43CalibAvailable() const { return false; }
  virtual int LoadQsRetroConfigFile(const std::string & /*path*/) { return -1; }  // 0: in force
  // Number of sensors that the pre-parser found in the capture; 0: it does not tell them apart.
  [[nodiscard]] virtual int GetPreParserVecSize() const { return 0; }
  virtual bool SelectPreParserByIndex(int /*index*/) { return false; }
};

}  // namespace tarvo::lidar
