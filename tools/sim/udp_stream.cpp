#include "tools/sim/udp_stream.h"

#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <thread>

namespace tarvo::lidar::sim {

UdpStream::UdpStream(const std::string &host, unsigned port) {
  addrinfo wanted{};
  wanted.ai_family = AF_UNSPEC;
  wanted.ai_socktype = SOCK_DGRAM;
  addrinfo *found = nullptr;
  const int error = ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &wanted, &found);
  if (error != 0) throw std::runtime_error("cannot stream to " + host + ": " + ::gai_strerror(error));
  int reason = 0;
  for (const addrinfo *at = found; at != nullptr && socket_ < 0; at = at->ai_next) {
    socket_ = ::socket(at->ai_family, at->ai_socktype, at->ai_protocol);
    if (socket_ >= 0 && ::connect(socket_, at->ai_addr, at->ai_addrlen) != 0) {
      reason = errno;
      ::close(socket_);
      socket_ = -1;
    } else if (socket_ < 0) {
      reason = errno;
    }
  }
  ::freeaddrinfo(found);
  if (socket_ < 0) throw std::runtime_error("cannot stream to " + host + ": " + std::strerror(reason));
  const int bufferBytes = 4 << 20;
  ::setsockopt(socket_, SOL_SOCKET, SO_SNDBUF, &bufferBytes, sizeof bufferBytes);
}

UdpStream::~UdpStream() { ::close(socket_); }

void UdpStream::take(std::span<const std::uint8_t> payload, std::uint64_t stampNs) {
  if (firstStampNs_ == 0) {
    firstStampNs_ = stampNs;
    start_ = std::chrono::steady_clock::now();
  }
  std::this_thread::sleep_until(start_ + std::chrono::nanoseconds(stampNs - firstStampNs_));
  // A refusal reports an earlier datagram that nobody took; the same datagram then has to be sent again.
  for (int attempt = 0; attempt < 2; ++attempt) {
    if (::send(socket_, payload.data(), payload.size(), 0) >= 0) return;
    if (errno != ECONNREFUSED && errno != ENOBUFS && errno != EINTR)
      throw std::runtime_error(std::string("cannot send: ") + std::strerror(errno));
  }
}

}  // namespace tarvo::lidar::sim
