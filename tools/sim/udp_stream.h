#pragma once

#include <chrono>
#include <string>

#include "tools/sim/packet_sink.h"

namespace tarvo::lidar::sim {

/// Sends payloads as UDP datagrams, each when its stamp says, counted from the first one.
class UdpStream final : public PacketSink {
 public:
  /// Throws `std::runtime_error` when the host has no address or no socket can be had.
  UdpStream(const std::string &host, unsigned port);
  ~UdpStream() override;
  UdpStream(const UdpStream &) = delete;
  UdpStream &operator=(const UdpStream &) = delete;

  /// Sleeps until the packet is due. A receiver that is not there is no error.
  void take(std::span<const std::uint8_t> payload, std::uint64_t stampNs) override;
  void finish() override {}

 private:
  int socket_ = -1;
  std::chrono::steady_clock::time_point start_;
  std::uint64_t firstStampNs_ = 0;
};

}  // namespace tarvo::lidar::sim
