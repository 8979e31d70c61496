#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <string>

#include "contracts/runtime/capture_report.h"

namespace tarvo::lidar {

/// What can be wrong with bytes that come from outside. Each kind is counted, and logged the first time only.
enum class InputFault : unsigned {
  TruncatedFile,     ///< the last record runs past the end of the file
  DamagedRecord,     ///< a record header that cannot be true; nothing after it can be read
  UnknownInterface,  ///< pcapng packet of an interface that was not described
  UnknownLinkType,
  CutPacket,           ///< headers or payload run past the captured bytes
  LostFragment,        ///< an IP datagram of which a fragment never came, or whose fragments disagree
  DamagedPacket,       ///< a lidar packet that contradicts itself
  LatePacket,          ///< a lidar packet of a frame that is over
  LostPacket,          ///< lidar packets missing by their sequence numbers
  ForeignSensor,       ///< lidar packets of another sensor or port than the one shown
  RefusedCalibration,  ///< calibration data in the capture that cannot be used
  OversizedFrame,      ///< a frame with more data than the decoder takes
  DisorderedPacket,    ///< came behind a later one
  RepeatedPacket,      ///< came twice
  ClockJump,           ///< the sensor's clock went back, or further on than the reception's did
  ShapeChange,         ///< a frame of another size than the one in front of it
  KernelDrop,          ///< thrown away by this machine in front of a live source
  FrameGap,            ///< longer than two periods without a frame
  count_
};

/// Counts of one source. Any thread.
class CaptureCounters {
 public:
  /// `name` begins the log lines: the file or socket that the bytes come from. Set before the first count.
  void setName(std::string name) { name_ = std::move(name); }

  /// Adds `times` and logs the first one, with `where`: a file offset, or a frame number for what concerns a frame.
  void add(InputFault fault, std::uint64_t where, std::uint64_t times = 1);
  [[nodiscard]] std::uint64_t get(InputFault fault) const {
    return counts_[static_cast<unsigned>(fault)].load(std::memory_order_relaxed);
  }
  /// Writes the counts to their members of `report`.
  void fill(CaptureReport &report) const;

 private:
  std::string name_;
  std::array<std::atomic<std::uint64_t>, static_cast<unsigned>(InputFault::count_)> counts_{};
};

}  // namespace tarvo::lidar
