#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <mutex>

#include "runtime/capture/udp_dissector.h"
#include "runtime/decode/frame_packets.h"

namespace tarvo::lidar {

/// The packets of the newest frames of a live source, within a bound of memory: when a packet does not fit, the oldest
/// frames go. Any thread; each operation is done at one moment.
class LiveRing {
 public:
  static constexpr std::size_t defaultBytes = 256u << 20;
  static constexpr std::size_t defaultFrames = 3000;

  /// `bytes` bounds the memory of all frames together, the open one included.
  LiveRing(std::size_t bytes, std::size_t frames) : byteLimit_(bytes), frameLimit_(frames) {}

  /// A packet of frame `id`: of one that is held, or of a new one behind all others. False when that frame alone would
  /// pass half of the bound, and the packet is left out.
  bool add(const UdpDatagram &datagram, int id);
  /// Replaces `packets` by those of a frame; false when it has gone or never was.
  bool copy(int id, FramePackets &packets) const;
  /// Calls `visit` for each packet of a frame, in the order of their arrival; false as above. The payload is valid
  /// during the call. Reception waits meanwhile.
  bool visit(int id, const std::function<void(const UdpDatagram &)> &visit) const;

  /// Id of the oldest frame that is held; 0 while there is none.
  [[nodiscard]] int oldest() const;
  [[nodiscard]] std::size_t memoryBytes() const;

 private:
  struct Frame {
    FramePackets packets;
    std::vector<UdpDatagram> heads;  // of the packets, without their payloads
    [[nodiscard]] std::size_t memoryBytes() const {
      return packets.memoryBytes() + heads.capacity() * sizeof(UdpDatagram);
    }
  };

  [[nodiscard]] const Frame *find(int id) const;
  Frame *findOrBegin(int id);
  std::unique_ptr<Frame> emptyFrame();
  void trim();

  const std::size_t byteLimit_;
  const std::size_t frameLimit_;
  mutable std::mutex mutex_;  // guards every member below
  std::deque<std::unique_ptr<Frame>> frames_;
  int firstId_ = 0;
  std::size_t bytes_ = 0;  // memory of frames_
};

}  // namespace tarvo::lidar
