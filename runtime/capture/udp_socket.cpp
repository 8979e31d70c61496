#include "runtime/capture/udp_socket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <vector>

#include "contracts/host/log.h"

SKARN_LOG_SOURCE("runtime/capture");

namespace tarvo::lidar {

namespace {

constexpr unsigned batchSize = 64;
constexpr unsigned roundsPerCall = 16;  // so that a flood does not keep the caller from its other duties
constexpr std::size_t datagramLimit = 65'536;
constexpr std::size_t controlBytes = 256;
constexpr std::int64_t nanoPerSecond = 1'000'000'000;

bool parseAddress(const std::string &text, in_addr &address, std::string &error) {
  if (::inet_pton(AF_INET, text.c_str(), &address) == 1) return true;
  error = "\"" + text + "\" is not an IPv4 address.";
  return false;
}

std::int64_t nowNs() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now().time_since_epoch())
      .count();
}

template <typename Value>
Value controlValue(const cmsghdr *part) {
  Value value;
  std::memcpy(&value, CMSG_DATA(part), sizeof value);
  return value;
}

}  // namespace

struct UdpSocket::Batch {
  std::vector<std::uint8_t> bytes = std::vector<std::uint8_t>(batchSize * datagramLimit);
  std::array<mmsghdr, batchSize> messages{};
  std::array<iovec, batchSize> places{};
  std::array<sockaddr_in, batchSize> senders{};
  alignas(cmsghdr) std::array<std::array<char, controlBytes>, batchSize> controls{};

  void prepare() {
    for (unsigned i = 0; i < batchSize; ++i) {
      places[i] = {bytes.data() + i * datagramLimit, datagramLimit};
      msghdr &head = messages[i].msg_hdr;
      head = {};
      head.msg_name = &senders[i];
      head.msg_namelen = sizeof senders[i];
      head.msg_iov = &places[i];
      head.msg_iovlen = 1;
      head.msg_control = controls[i].data();
      head.msg_controllen = controlBytes;
    }
  }
};

UdpSocket::UdpSocket() = default;

UdpSocket::~UdpSocket() {
  if (socket_ >= 0) ::close(socket_);
  if (wakeUp_ >= 0) ::close(wakeUp_);
}

bool UdpSocket::open(const Settings &settings, std::string &error) {
  port_ = settings.port;
  if (port_ == 0) {
    error = "A UDP port lies between 1 and 65535.";
    return false;
  }
  socket_ = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  wakeUp_ = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (socket_ < 0 || wakeUp_ < 0) {
    error = std::string("No socket can be had: ") + std::strerror(errno) + ".";
    return false;
  }
  if (!apply(settings, error)) return false;
  batch_ = std::make_unique<Batch>();
  return true;
}

bool UdpSocket::apply(const Settings &settings, std::string &error) {
  const int on = 1;
  for (const auto &[level, option] : {std::pair{SOL_SOCKET, SO_TIMESTAMPNS},
                                      {SOL_SOCKET, SO_RXQ_OVFL},
                                      {SOL_SOCKET, SO_BROADCAST},
                                      {IPPROTO_IP, IP_PKTINFO}})
    ::setsockopt(socket_, level, option, &on, sizeof on);
  enlargeBuffer(settings.receiveBufferBytes != 0 ? settings.receiveBufferBytes : defaultBufferBytes);
  in_addr interface { htonl(INADDR_ANY) };
  if (!settings.bindAddress.empty() && !parseAddress(settings.bindAddress, interface, error)) return false;
  const bool group = !settings.multicastGroup.empty();
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_port = htons(settings.port);
  if (!group) place.sin_addr = interface;
  const std::string port = "UDP port " + std::to_string(settings.port);
  if (::bind(socket_, reinterpret_cast<const sockaddr *>(&place), sizeof place) != 0) {
    if (errno == EADDRINUSE)
      error = port + " is in use by another program.";
    else if (errno == EADDRNOTAVAIL)
      error = "No network interface of this machine has the address " + settings.bindAddress + ".";
    else
      error = port + " cannot be opened: " + std::strerror(errno) + ".";
    return false;
  }
  if (!group) return true;
  ip_mreq membership{};
  membership.imr_interface = interface;
  if (!parseAddress(settings.multicastGroup, membership.imr_multiaddr, error)) return false;
  if (!IN_MULTICAST(ntohl(membership.imr_multiaddr.s_addr))) {
    error = "\"" + settings.multicastGroup + "\" is no multicast group; those go from 224.0.0.0 to 239.255.255.255.";
    return false;
  }
  const int off = 0;
  ::setsockopt(socket_, IPPROTO_IP, IP_MULTICAST_ALL, &off, sizeof off);
  if (::setsockopt(socket_, IPPROTO_IP, IP_ADD_MEMBERSHIP, &membership, sizeof membership) == 0) return true;
  error = "The multicast group " + settings.multicastGroup + " cannot be joined: " + std::strerror(errno) + ".";
  return false;
}

void UdpSocket::enlargeBuffer(std::uint32_t bytes) const {
  const int wanted = static_cast<int>(std::min<std::uint32_t>(bytes, 1u << 30));
  // Only a privileged process may pass the system's limit.
  if (::setsockopt(socket_, SOL_SOCKET, SO_RCVBUFFORCE, &wanted, sizeof wanted) != 0)
    ::setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, &wanted, sizeof wanted);
  int granted = 0;
  socklen_t size = sizeof granted;
  ::getsockopt(socket_, SOL_SOCKET, SO_RCVBUF, &granted, &size);
  // The kernel tells twice what it was asked for: the second half is for its own records.
  if (granted / 2 < wanted)
    SKARN_LOG(skarnvisor::LogLevel::Information,
              "the receive buffer of UDP port %u has %d KiB; net.core.rmem_max of this machine allows no more", port_,
              granted / 2 / 1024);
}

void UdpSocket::receive(int timeoutMs, const Take &take) {
  std::array<pollfd, 2> waits{{{socket_, POLLIN, 0}, {wakeUp_, POLLIN, 0}}};
  if (::poll(waits.data(), waits.size(), timeoutMs) <= 0) return;
  if (waits[1].revents != 0) {
    std::uint64_t times = 0;
    [[maybe_unused]] const auto got = ::read(wakeUp_, &times, sizeof times);
  }
  for (unsigned round = 0; round < roundsPerCall; ++round) {
    batch_->prepare();
    const int count = ::recvmmsg(socket_, batch_->messages.data(), batchSize, MSG_DONTWAIT, nullptr);
    if (count <= 0) return;
    for (int i = 0; i < count; ++i) handOn(static_cast<unsigned>(i), take);
    if (static_cast<unsigned>(count) < batchSize) return;
  }
}

void UdpSocket::handOn(unsigned index, const Take &take) {
  mmsghdr &message = batch_->messages[index];
  UdpDatagram datagram;
  for (cmsghdr *part = CMSG_FIRSTHDR(&message.msg_hdr); part != nullptr; part = CMSG_NXTHDR(&message.msg_hdr, part)) {
    if (part->cmsg_level == SOL_SOCKET && part->cmsg_type == SCM_TIMESTAMPNS) {
      const auto stamp = controlValue<timespec>(part);
      datagram.timeNs = stamp.tv_sec * nanoPerSecond + stamp.tv_nsec;
    } else if (part->cmsg_level == SOL_SOCKET && part->cmsg_type == SO_RXQ_OVFL) {
      dropsSeen_ = controlValue<std::uint32_t>(part);
    } else if (part->cmsg_level == IPPROTO_IP && part->cmsg_type == IP_PKTINFO) {
      datagram.destinationAddress = ntohl(controlValue<in_pktinfo>(part).ipi_addr.s_addr);
    }
  }
  if (datagram.timeNs == 0) datagram.timeNs = nowNs();
  datagram.sourceAddress = ntohl(batch_->senders[index].sin_addr.s_addr);
  datagram.sourcePort = ntohs(batch_->senders[index].sin_port);
  datagram.destinationPort = port_;
  datagram.payload = {batch_->bytes.data() + index * datagramLimit, message.msg_len};
  take(datagram);
}

void UdpSocket::wake() {
  const std::uint64_t once = 1;
  [[maybe_unused]] const auto done = ::write(wakeUp_, &once, sizeof once);
}

std::uint32_t UdpSocket::takeKernelDrops() {
  // The kernel's count wraps.
  const std::uint32_t fresh = dropsSeen_ - dropsTold_;
  dropsTold_ = dropsSeen_;
  return fresh;
}

}  // namespace tarvo::lidar
