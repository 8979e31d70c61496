#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

namespace tarvo::lidar {

/// The command connection to one lidar. It can be reached or not; the command set over it comes with the devices that
/// speak it, and until one does every command answers that it is not connected. Any thread.
class DeviceSession {
 public:
  DeviceSession() = default;
  ~DeviceSession();
  DeviceSession(const DeviceSession &) = delete;
  DeviceSession &operator=(const DeviceSession &) = delete;

  /// Starts connecting by TCP to a numeric address, on a thread of its own, and returns; an attempt ends after 3
  /// seconds. A call while one is under way, or while the connection stands, does nothing. A failure is logged at level
  /// 4 with host, port and reason.
  void open(const std::string &host, std::uint16_t port);
  void close();
  /// The connection for commands: true while a device answers them.
  [[nodiscard]] bool isCommandOpen() const { return false; }
  /// The connection itself stands.
  [[nodiscard]] bool isConnected() const { return socket_.load() >= 0; }

 private:
  void connectTo(std::string host, std::uint16_t port);

  std::mutex mutex_;  // guards worker_
  std::thread worker_;
  std::atomic<bool> stop_{false};
  std::atomic<bool> connecting_{false};
  std::atomic<int> socket_{-1};
};

}  // namespace tarvo::lidar
