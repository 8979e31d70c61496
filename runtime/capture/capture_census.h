#pragma once

#include <map>
#include <memory>
#include <mutex>

#include "contracts/runtime/capture_report.h"
#include "runtime/decode/packet_decoder.h"

namespace tarvo::lidar {

/// What a capture holds beside the frames: its sensors and the gaps between frames. The index thread writes, any thread
/// reads.
class CaptureCensus {
 public:
  static constexpr std::size_t gapLimit = 100;
  static constexpr std::size_t sensorLimit = 64;

  /// The sensor that the frames come from; once.
  void setShown(int port);
  /// Its type, once a packet told.
  void setShownType(const std::string &type);
  void addShown(std::uint64_t packets);
  /// A packet of a known format on another port.
  void addOther(const UdpDatagram &datagram, const PacketDecoder &format);
  void addGap(int afterFrame, double seconds);

  /// Fills the packets, sensors and gaps of `report`.
  void fill(CaptureReport &report) const;

 private:
  struct Other {
    std::uint64_t packets = 0;
    std::string type;
    std::unique_ptr<StreamWalker> walker;  // until the type is known
  };

  mutable std::mutex mutex_;  // guards every member below
  int shownPort_ = 0;
  std::string shownType_;
  std::uint64_t shownPackets_ = 0;
  std::map<int, Other> others_;  // by port
  std::vector<CaptureGap> gaps_;
  std::uint64_t gapCount_ = 0;
};

}  // namespace tarvo::lidar
