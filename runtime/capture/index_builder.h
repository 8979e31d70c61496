#pragma once

#include <map>

#include "runtime/capture/capture_counters.h"
#include "runtime/capture/frame_source.h"

namespace tarvo::lidar {

/// Turns the datagrams of a capture, one after the other, into an index and into calls of the listener. One thread.
class IndexBuilder {
 public:
  /// Called once with the format and the UDP port of the stream, before any frame is announced.
  using StreamChosen = std::function<void(const PacketDecoder &, int)>;

  IndexBuilder(int sensorPort, FrameIndex &index, CaptureCounters &counters, FrameSourceListener &listener,
               StreamChosen chosen)
      : sensorPort_(sensorPort), index_(index), counters_(counters), listener_(listener), chosen_(std::move(chosen)) {}

  void take(const UdpDatagram &datagram);
  /// Closes the last frame. Call once.
  void finish();

  /// Whether the capture has a stream of ours.
  [[nodiscard]] bool streamFound() const { return decoder_ != nullptr; }
  /// Whether the listener knows the lidar.
  [[nodiscard]] bool described() const { return described_; }
  /// What was seen of a capture without a stream of ours, for the user: "120 packets, UDP ports 53, 443".
  [[nodiscard]] std::string foreignSummary(std::uint64_t packets) const;

 private:
  [[nodiscard]] bool chooseStream(const UdpDatagram &datagram);
  void place(const UdpDatagram &datagram, const PacketPlace &where);
  void begin(const UdpDatagram &datagram, const PacketPlace &where);
  void publish();
  void announce();

  const int sensorPort_;
  FrameIndex &index_;
  CaptureCounters &counters_;
  FrameSourceListener &listener_;
  const StreamChosen chosen_;
  const PacketDecoder *decoder_ = nullptr;
  std::unique_ptr<StreamWalker> walker_;
  int port_ = 0;
  bool described_ = false;
  std::map<std::uint16_t, std::uint64_t> foreignPorts_;  // packets by port, a few ports
  std::optional<IndexedFrame> open_;                     // the frame in hand, while it is not in the index
  int currentId_ = -1;                                   // its id once it is
};

}  // namespace tarvo::lidar
