#pragma once

#include <cstdint>
#include <span>

namespace tarvo::lidar::sim {

/// Where finished packets go. Errors are `std::runtime_error` with a text for the user.
class PacketSink {
 public:
  virtual ~PacketSink() = default;

  /// `payload` is valid during the call; `stampNs` is Unix time and never goes back.
  virtual void take(std::span<const std::uint8_t> payload, std::uint64_t stampNs) = 0;
  /// Nothing follows: whatever was held back goes out, and a file becomes visible under its name.
  virtual void finish() = 0;
};

}  // namespace tarvo::lidar::sim
