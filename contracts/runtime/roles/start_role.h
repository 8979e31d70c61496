#pragma once

#include <string>

#include "contracts/runtime/driver_param.h"
#include "contracts/runtime/init_finish.h"

namespace tarvo::lidar {

// Starts a runtime; its end is its destruction.
class StartRole {
 public:
  virtual ~StartRole() = default;
  // Starts and returns at once. False: the parameters were refused; GetInitFinish(Failed) then is true.
  virtual bool Init(const DriverParam &param) = 0;
  [[nodiscard]] virtual bool GetInitFinish(SvSdkInitFinish question) const = 0;
  // Why a start failed, one clear sentence for the user; empty while it has not.
  [[nodiscard]] virtual std::string InitError() const { return {}; }
};

// What the source is; valid once the start is ready.
class IdentityRole {
 public:
  virtual ~IdentityRole() = default;
  [[nodiscard]] virtual std::string GetLidarType() const = 0;  // decides the family; compared byte for byte
  [[nodiscard]] virtual int GetLidarNum() const = 0;           // physical lasers
  [[nodiscard]] virtual int GetChannelNum() const = 0;         // displayed channels
  [[nodiscard]] virtual int GetPcapPort() const = 0;           // UDP port of the capture's data; 0 for a live source
};

// The kinds of calibration tables that a runtime holds.
enum class CalibrationTable { Corrections, Firetimes, Dcf, NonlinearMapping, ChannelConfig };

// Which calibration is in use.
class LoadStateRole {
 public:
  virtual ~LoadStateRole() = default;
  [[nodiscard]] virtual bool IsCorrectionLoadSuccess() const = 0;
  [[nodiscard]] virtual bool IsFiretimesLoadSuccess() const = 0;
  [[nodiscard]] virtual bool IsDcfLoadSuccess() const = 0;
  virtual void SetCorrectionLoadFlag(bool loaded) = 0;
  // Whether a table of this kind is held, so that an export would write one; SetCorrectionLoadFlag does not matter. Any
  // thread.
  [[nodiscard]] virtual bool HasCalibration(CalibrationTable) const { return false; }
};

}  // namespace tarvo::lidar
