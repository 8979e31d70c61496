#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <thread>

#include "runtime/capture/capture_cutter.h"
#include "runtime/capture/datagram_reader.h"
#include "runtime/capture/frame_source.h"
#include "runtime/capture/index_builder.h"

namespace tarvo::lidar {

/// The frames of one sensor in a capture file. Its index grows on a thread of its own, in one pass over the file, while
/// the frames that are found already can be read.
class CaptureSource final : public FrameSource, private PacketKeeper {
 public:
  /// `sensorPort` picks the sensor of a capture that holds several; 0: the first found. `listener` outlives the source.
  CaptureSource(std::string path, int sensorPort, FrameSourceListener &listener);
  ~CaptureSource() override;
  /// Begins to read, and to call the listener. Once.
  void start();
  void stop() override;

  [[nodiscard]] const FrameIndex &index() const override { return index_; }
  bool readFrame(int id, FramePackets &packets, const std::function<bool()> &stop) override;
  void reportDamage(int id, unsigned packets) override {
    counters_.add(InputFault::DamagedPacket, static_cast<std::uint64_t>(id), packets);
  }
  bool cut(const std::string &path, int first, int last, CutWatch &watch, std::string &error) override;
  bool startRecord(const std::string &path, std::string &error) override;
  void setReceiving(bool on) override;
  void report(CaptureReport &report) const override;
  [[nodiscard]] const CaptureCounters &counters() const { return counters_; }

 private:
  void keepSetup(const UdpDatagram &datagram, int id) override;
  void run();
  void walkFile();

  const std::string path_;
  const int sensorPort_;
  FrameSourceListener &listener_;
  CaptureCounters counters_;
  CaptureCensus census_;
  CaptureFile file_;
  FrameIndex index_;
  std::atomic<const PacketDecoder *> decoder_{nullptr};
  std::atomic<int> port_{0};
  mutable std::mutex setupMutex_;  // guards setup_
  std::vector<RecordPlace> setup_;
  std::atomic<bool> stop_{false};
  std::atomic<bool> enough_{false};  // no more of the file is wanted
  std::atomic<bool> stoppedShort_{false};
  std::atomic<std::uint64_t> lookedThrough_{0};  // bytes of the file
  std::thread thread_;
};

}  // namespace tarvo::lidar
