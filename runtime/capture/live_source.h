#pragma once

#include <atomic>
#include <thread>

#include "runtime/capture/capture_recorder.h"
#include "runtime/capture/frame_source.h"
#include "runtime/capture/index_builder.h"
#include "runtime/capture/live_ring.h"
#include "runtime/capture/udp_socket.h"

namespace tarvo::lidar {

/// The frames of the lidar that sends to a UDP port, from the moment of the opening on. A thread of its own receives;
/// the packets of the newest frames stay in a ring, and every frame keeps its id when it has left.
class LiveSource final : public FrameSource, private PacketKeeper {
 public:
  static constexpr std::size_t setupBytes = 64u << 20;  ///< kept of the packets that frames of any time need

  /// `ringFrames` 0: the ring's default. `listener` outlives the source.
  LiveSource(std::uint32_t ringFrames, FrameSourceListener &listener);
  ~LiveSource() override;

  /// Opens the port and begins to receive, and to call the listener. False, with one sentence in `error`. Once.
  bool start(const UdpSocket::Settings &settings, std::string &error);
  void stop() override;

  [[nodiscard]] const FrameIndex &index() const override { return index_; }
  [[nodiscard]] int oldest() const override { return ring_.oldest(); }
  bool readFrame(int id, FramePackets &packets, const std::function<bool()> &stop) override;
  void reportDamage(int id, unsigned packets) override;
  bool cut(const std::string &path, int first, int last, CutWatch &watch, std::string &error) override;
  bool startRecord(const std::string &path, std::string &error) override;
  void stopRecord() override { recorder_.stop(); }
  void setReceiving(bool on) override { receiving_ = on; }
  void report(CaptureReport &report) const override;

 private:
  void keep(const UdpDatagram &datagram, int id) override;
  void keepSetup(const UdpDatagram &datagram, int id) override;
  void run();
  void take(const UdpDatagram &datagram);
  void lookAround();

  struct Setup {
    UdpDatagram head;  // without its payload
    std::vector<std::uint8_t> payload;
    int id;
  };

  FrameSourceListener &listener_;
  CaptureCounters counters_;
  CaptureCensus census_;
  FrameIndex index_;
  LiveRing ring_;
  IndexBuilder builder_;
  UdpSocket socket_;
  CaptureRecorder recorder_;
  mutable std::mutex setupMutex_;  // guards setup_ and setupHeld_
  std::vector<Setup> setup_;
  std::size_t setupHeld_ = 0;
  std::atomic<bool> receiving_{true};
  bool skipped_ = false;  // the receiving thread's
  std::atomic<bool> stop_{false};
  std::thread thread_;
};

}  // namespace tarvo::lidar
