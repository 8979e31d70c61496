#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

#include "tests/runtime/session_fixture.h"

namespace tarvo::lidar::test {

/// Sends datagrams to a port of this machine, as fast as the receiver is told to have taken them.
class Sender {
 public:
  explicit Sender(std::uint16_t port, const char *address = "127.0.0.1")
      : socket_(::socket(std::strchr(address, ':') != nullptr ? AF_INET6 : AF_INET, SOCK_DGRAM, 0)) {
    if (::inet_pton(AF_INET6, address, &to6_.sin6_addr) == 1) {
      to6_.sin6_family = AF_INET6;
      to6_.sin6_port = htons(port);
      return;
    }
    const int on = 1;
    ::setsockopt(socket_, SOL_SOCKET, SO_BROADCAST, &on, sizeof on);
    in_addr loopback{htonl(INADDR_LOOPBACK)};
    ::setsockopt(socket_, IPPROTO_IP, IP_MULTICAST_IF, &loopback, sizeof loopback);
    to_.sin_family = AF_INET;
    to_.sin_port = htons(port);
    ::inet_pton(AF_INET, address, &to_.sin_addr);
  }
  ~Sender() { ::close(socket_); }
  Sender(const Sender &) = delete;
  Sender &operator=(const Sender &) = delete;
  void send(const Bytes &payload) const {
    const bool v6 = to6_.sin6_family == AF_INET6;
    const auto *to = v6 ? reinterpret_cast<const sockaddr *>(&to6_) : reinterpret_cast<const sockaddr *>(&to_);
    ::sendto(socket_, payload.data(), payload.size(), 0, to, v6 ? sizeof to6_ : sizeof to_);
  }
  void send(const std::vector<PacketLog::Packet> &packets) const {
    for (const auto &packet : packets) send(packet.payload);
  }

 private:
  int socket_;
  sockaddr_in to_{};
  sockaddr_in6 to6_{};
};

/// A port that nobody uses at this moment.
inline std::uint16_t freePort() {
  const int probe = ::socket(AF_INET, SOCK_DGRAM, 0);
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_addr.s_addr = htonl(INADDR_ANY);
  socklen_t size = sizeof place;
  ::bind(probe, reinterpret_cast<sockaddr *>(&place), size);
  ::getsockname(probe, reinterpret_cast<sockaddr *>(&place), &size);
  ::close(probe);
  return ntohs(place.sin_port);
}

/// A source on a UDP port of this machine, begun and not yet ready.
class LiveSession {
 public:
  explicit LiveSession(std::uint16_t udpPort = freePort(), const char *group = "", std::uint32_t ringFrames = 0)
      : port(udpPort), source(createSdkSource()) {
    DriverParam &param = source->driverParam;
    param.sourceKind = 0;
    param.liveUdpPort = port;
    param.liveRingFrames = ringFrames;
    std::strncpy(param.multicastGroup.data(), group, param.multicastGroup.size() - 1);
    const char *const interface = std::strchr(group, ':') != nullptr ? "::1" : "127.0.0.1";
    if (*group != 0) std::strncpy(param.bindAddress.data(), interface, param.bindAddress.size() - 1);
    begun = source->runtime->Init(param);
  }
  [[nodiscard]] bool is(SvSdkInitFinish question) const { return source->runtime->GetInitFinish(question); }
  bool ready() {
    return Session::poll([this] { return is(SvSdkInitFinish::Ready); });
  }
  bool hasFrames(int frames) {
    return Session::poll([&] { return source->runtime->GetFrameCount() >= frames; });
  }
  bool decode(int first, int count = 1) {
    source->frameReady = false;
    return source->runtime->Iterate(first, count) && Session::poll([this] { return source->frameReady.load(); });
  }
  SvSdkRuntime &runtime() { return *source->runtime; }

  std::uint16_t port;
  QSharedPointer<SDKSource> source;
  bool begun = false;
};

/// The packets of frames [first, end).
inline std::vector<PacketLog::Packet> framesOf(const std::vector<PacketLog::Packet> &packets, std::uint32_t first,
                                               std::uint32_t end) {
  std::vector<PacketLog::Packet> some;
  for (const auto &packet : packets) {
    const std::uint32_t frame = wire::parseHeader(packet.payload)->frame;
    if (frame >= first && frame < end) some.push_back(packet);
  }
  return some;
}

/// What the views would show of each frame: the bytes of its points.
inline std::vector<Bytes> pointsOf(SDKSource &source, int frames) {
  std::vector<Bytes> all;
  for (int frame = 0; frame < frames; ++frame) {
    source.frameReady = false;
    if (!source.runtime->Iterate(frame, 1) || !Session::poll([&] { return source.frameReady.load(); })) break;
    const std::lock_guard lock(source.frameLock);
    const auto *bytes = reinterpret_cast<const std::uint8_t *>(source.points.data());
    all.emplace_back(bytes, bytes + source.points.size() * sizeof(SDKPointInfo));
  }
  return all;
}

}  // namespace tarvo::lidar::test
