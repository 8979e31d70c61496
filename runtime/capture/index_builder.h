#pragma once

#include <map>

#include "runtime/capture/capture_census.h"
#include "runtime/capture/capture_counters.h"
#include "runtime/capture/clock_watch.h"
#include "runtime/capture/frame_source.h"

namespace tarvo::lidar {

/// Takes the packets that the index builder has put in their place, on its thread.
class PacketKeeper {
 public:
  virtual ~PacketKeeper() = default;
  /// A packet of frame `id`, which the index may not have yet.
  virtual void keep(const UdpDatagram & /*datagram*/, int /*id*/) {}
  /// A packet that frames of any time need; comes in addition to `keep` when it belongs to a frame, `id`, else -1.
  virtual void keepSetup(const UdpDatagram & /*datagram*/, int /*id*/) {}
};

/// Turns the datagrams of a capture, one after the other, into an index and into calls of the listener. One thread.
class IndexBuilder {
 public:
  /// Called once with the format and the UDP port of the stream, before any frame is announced.
  using StreamChosen = std::function<void(const PacketDecoder &, int)>;

  /// Where the builder's findings go; all outlive it.
  struct Targets {
    FrameIndex &index;
    CaptureCounters &counters;
    CaptureCensus &census;
    FrameSourceListener &listener;
    PacketKeeper &keeper;
  };
  IndexBuilder(int sensorPort, const Targets &targets, StreamChosen chosen);

  void take(const UdpDatagram &datagram);
  /// Datagrams are left out on purpose in front of the next one. Closes the open frame.
  void skip();
  /// Passes on the counts and times of what was taken; the end of each frame does the same.
  void flush();
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
  void count(const UdpDatagram &datagram, const PacketPlace &where);
  void place(const UdpDatagram &datagram, const PacketPlace &where);
  void begin(const UdpDatagram &datagram, const PacketPlace &where);
  void publish();
  void announce();

  const int sensorPort_;
  FrameIndex &index_;
  CaptureCounters &counters_;
  CaptureCensus &census_;
  FrameSourceListener &listener_;
  PacketKeeper &keeper_;
  const StreamChosen chosen_;
  const PacketDecoder *decoder_ = nullptr;
  std::unique_ptr<StreamWalker> walker_;
  int port_ = 0;
  bool described_ = false;
  std::map<std::uint16_t, std::uint64_t> foreignPorts_;  // packets by port, a few ports
  std::optional<IndexedFrame> open_;                     // the frame in hand, while it is not in the index
  int currentId_ = -1;                                   // its id once it is
  int published_ = 0;                                    // frames in the index
  ClockWatch clock_;
  std::uint64_t taken_ = 0;                                           // packets since the last flush
  std::int64_t newestNs_ = std::numeric_limits<std::int64_t>::min();  // since the last flush, on the timeline
};

}  // namespace tarvo::lidar
