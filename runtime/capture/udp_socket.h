#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "runtime/capture/udp_dissector.h"

namespace tarvo::lidar {

/// A UDP port that receives in batches, with the kernel's time of each datagram. Without an address it takes IPv4 and
/// IPv6, else what the address is.
class UdpSocket {
 public:
  static constexpr std::uint32_t defaultBufferBytes = 32u << 20;

  struct Settings {
    std::uint16_t port = 0;
    std::string bindAddress;               ///< empty: every interface. With a group: the interface that joins
    std::string multicastGroup;            ///< empty: none
    std::uint32_t receiveBufferBytes = 0;  ///< 0: `defaultBufferBytes`; the system may grant less
  };
  using Take = std::function<void(const UdpDatagram &)>;

  UdpSocket();
  ~UdpSocket();
  UdpSocket(const UdpSocket &) = delete;
  UdpSocket &operator=(const UdpSocket &) = delete;

  /// False, with one sentence for the user in `error`, when the port cannot be had.
  bool open(const Settings &settings, std::string &error);
  /// Waits for datagrams, at most `timeoutMs`, and hands on those that are there; their payload is valid during the
  /// call. One thread.
  void receive(int timeoutMs, const Take &take);
  /// Ends a `receive` that waits. Any thread.
  void wake();
  /// Datagrams that the kernel threw away since the last call because its buffer was full.
  [[nodiscard]] std::uint32_t takeKernelDrops();

 private:
  struct Batch;

  struct Place;

  bool openSocket(const Place &place);
  void applyOptions(const Settings &settings) const;
  bool bind(const Settings &settings, const Place &place, std::string &error) const;
  bool join(const Settings &settings, const Place &place, std::string &error) const;
  void enlargeBuffer(std::uint32_t bytes) const;
  void handOn(unsigned index, const Take &take);

  int socket_ = -1;
  bool v6_ = false;
  int wakeUp_ = -1;
  std::uint16_t port_ = 0;
  std::uint32_t dropsTold_ = 0;
  std::uint32_t dropsSeen_ = 0;
  std::unique_ptr<Batch> batch_;
};

}  // namespace tarvo::lidar
