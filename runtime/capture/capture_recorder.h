#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "contracts/runtime/capture_report.h"
#include "runtime/capture/udp_dissector.h"

namespace tarvo::lidar {

/// Writes datagrams, as they come, to a nanosecond pcap file. The file can be opened at any moment, also after a kill:
/// its head is there from the start and what is waiting reaches it within `flushMs`. A thread of its own writes; the
/// giver never waits for the disk.
class CaptureRecorder {
 public:
  static constexpr std::size_t queueBytes = 32u << 20;  ///< what may wait for the disk; more is left out and counted
  static constexpr int flushMs = 200;

  CaptureRecorder() = default;
  ~CaptureRecorder();
  CaptureRecorder(const CaptureRecorder &) = delete;
  CaptureRecorder &operator=(const CaptureRecorder &) = delete;

  /// Replaces the file at `path` (local 8-bit). A recording in progress is ended first. False, with one sentence in
  /// `error`, when it cannot be written.
  bool start(const std::string &path, std::string &error);
  /// Writes what is waiting and closes the file. Without a recording: nothing.
  void stop();
  /// Nothing while no recording runs. Any thread.
  void add(const UdpDatagram &datagram);
  [[nodiscard]] RecordingReport report() const;

 private:
  void serve();
  bool write(const std::vector<std::uint8_t> &records);
  void fail(int reason, const std::vector<std::uint8_t> &records, std::size_t written);

  std::mutex control_;  // held by start and stop
  std::thread thread_;
  int descriptor_ = -1;
  std::string path_;
  std::atomic<bool> running_{false};
  mutable std::mutex mutex_;  // guards every member below
  std::condition_variable filled_;
  std::vector<std::uint8_t> waiting_;
  std::uint64_t waitingPackets_ = 0;
  bool ending_ = false;
  RecordingReport report_;
};

}  // namespace tarvo::lidar
