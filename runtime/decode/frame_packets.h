#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tarvo::lidar {

/// The payloads of one frame's packets, in the order of the file. Reused from frame to frame.
class FramePackets {
 public:
  /// A frame with more payload than this is cut.
  static constexpr std::size_t byteLimit = 256u << 20;

  void clear() {
    bytes_.clear();
    packets_.clear();
  }
  /// False when the frame is full.
  bool add(std::span<const std::uint8_t> payload) {
    if (payload.size() > byteLimit - bytes_.size()) return false;
    packets_.push_back({static_cast<std::uint32_t>(bytes_.size()), static_cast<std::uint32_t>(payload.size())});
    bytes_.insert(bytes_.end(), payload.begin(), payload.end());
    return true;
  }
  [[nodiscard]] std::size_t size() const { return packets_.size(); }
  [[nodiscard]] std::size_t memoryBytes() const { return bytes_.capacity() + packets_.capacity() * sizeof(Packet); }
  [[nodiscard]] std::span<const std::uint8_t> payload(std::size_t index) const {
    return {bytes_.data() + packets_[index].offset, packets_[index].length};
  }

 private:
  struct Packet {
    std::uint32_t offset;
    std::uint32_t length;
  };
  std::vector<std::uint8_t> bytes_;
  std::vector<Packet> packets_;
};

}  // namespace tarvo::lidar
