#include "runtime/capture/udp_socket.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <optional>
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

/// Index of the interface that has `address`; 0, which leaves the choice to the system, for none.
unsigned interfaceOf(const IpAddress &address) {
  ifaddrs *list = nullptr;
  if (::getifaddrs(&list) != 0) return 0;
  unsigned index = 0;
  for (const ifaddrs *entry = list; entry != nullptr && index == 0; entry = entry->ifa_next) {
    if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET6) continue;
    const auto &own = *reinterpret_cast<const sockaddr_in6 *>(entry->ifa_addr);
    if (std::memcmp(own.sin6_addr.s6_addr, address.bytes.data(), address.bytes.size()) == 0)
      index = ::if_nametoindex(entry->ifa_name);
  }
  ::freeifaddrs(list);
  return index;
}

IpAddress addressOf(const sockaddr_in6 &sender) {
  if (sender.sin6_family == AF_INET6) return IpAddress::of(sender.sin6_addr.s6_addr);
  sockaddr_in v4;
  std::memcpy(&v4, &sender, sizeof v4);
  return IpAddress::of({reinterpret_cast<const std::uint8_t *>(&v4.sin_addr), sizeof v4.sin_addr});
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
  std::array<sockaddr_in6, batchSize> senders{};  // or sockaddr_in, by the family in both
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

/// Where the user wants to listen.
struct UdpSocket::Place {
  std::optional<IpAddress> interface;
  std::optional<IpAddress> group;

  [[nodiscard]] const std::optional<IpAddress> &told() const { return group ? group : interface; }

  static bool parse(const Settings &settings, Place &place, std::string &error) {
    const auto read = [&error](const std::string &text, std::optional<IpAddress> &to) {
      if (text.empty()) return true;
      to = IpAddress::parse(text);
      if (!to) error = "\"" + text + "\" is not an IP address.";
      return to.has_value();
    };
    if (!read(settings.bindAddress, place.interface) || !read(settings.multicastGroup, place.group)) return false;
    if (place.group && !place.group->isMulticast())
      error = "\"" + settings.multicastGroup +
              "\" is no multicast group; those go from 224.0.0.0 to 239.255.255.255, and begin with ff in IPv6.";
    else if (place.group && place.interface && place.group->isV4() != place.interface->isV4())
      error = "The group " + settings.multicastGroup + " and the interface " + settings.bindAddress +
              " are of two different IP versions.";
    return error.empty();
  }
};

bool UdpSocket::open(const Settings &settings, std::string &error) {
  port_ = settings.port;
  if (port_ == 0) {
    error = "A UDP port lies between 1 and 65535.";
    return false;
  }
  Place place;
  if (!Place::parse(settings, place, error)) return false;
  wakeUp_ = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (wakeUp_ < 0 || !openSocket(place)) {
    error = std::string("No socket can be had: ") + std::strerror(errno) + ".";
    return false;
  }
  applyOptions(settings);
  if (!bind(settings, place, error) || !join(settings, place, error)) return false;
  batch_ = std::make_unique<Batch>();
  return true;
}

/// Of the version of the address; without one for both, or for IPv4 on a machine without IPv6.
bool UdpSocket::openSocket(const Place &place) {
  const bool any = !place.told();
  v6_ = any || !place.told()->isV4();
  if (v6_) socket_ = ::socket(AF_INET6, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (socket_ >= 0) {
    const int onlyV6 = any ? 0 : 1;
    ::setsockopt(socket_, IPPROTO_IPV6, IPV6_V6ONLY, &onlyV6, sizeof onlyV6);
  } else if (any || !v6_) {
    v6_ = false;
    socket_ = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  }
  return socket_ >= 0;
}

void UdpSocket::applyOptions(const Settings &settings) const {
  const int on = 1;
  for (const auto &[level, option] :
       {std::pair{SOL_SOCKET, SO_TIMESTAMPNS},
        {SOL_SOCKET, SO_RXQ_OVFL},
        {SOL_SOCKET, SO_BROADCAST},
        v6_ ? std::pair{int{IPPROTO_IPV6}, IPV6_RECVPKTINFO} : std::pair{int{IPPROTO_IP}, IP_PKTINFO}})
    ::setsockopt(socket_, level, option, &on, sizeof on);
  enlargeBuffer(settings.receiveBufferBytes != 0 ? settings.receiveBufferBytes : defaultBufferBytes);
}

bool UdpSocket::bind(const Settings &settings, const Place &place, std::string &error) const {
  sockaddr_in6 own{};
  socklen_t size = sizeof own;
  const bool toInterface = place.interface && !place.group;
  if (v6_) {
    own.sin6_family = AF_INET6;
    own.sin6_port = htons(settings.port);
    if (toInterface) {
      std::copy(place.interface->bytes.begin(), place.interface->bytes.end(), own.sin6_addr.s6_addr);
      own.sin6_scope_id = interfaceOf(*place.interface);
    }
  } else {
    sockaddr_in v4{};
    size = sizeof v4;
    v4.sin_family = AF_INET;
    v4.sin_port = htons(settings.port);
    if (toInterface) v4.sin_addr.s_addr = htonl(place.interface->v4());
    std::memcpy(&own, &v4, sizeof v4);
  }
  if (::bind(socket_, reinterpret_cast<const sockaddr *>(&own), size) == 0) return true;
  const std::string port = "UDP port " + std::to_string(settings.port);
  if (errno == EADDRINUSE)
    error = port + " is in use by another program.";
  else if (errno == EADDRNOTAVAIL)
    error = "No network interface of this machine has the address " + settings.bindAddress + ".";
  else
    error = port + " cannot be opened: " + std::strerror(errno) + ".";
  return false;
}

bool UdpSocket::join(const Settings &settings, const Place &place, std::string &error) const {
  if (!place.group) return true;
  const int off = 0;
  bool joined = false;
  if (v6_) {
    ipv6_mreq membership{};
    std::copy(place.group->bytes.begin(), place.group->bytes.end(), membership.ipv6mr_multiaddr.s6_addr);
    membership.ipv6mr_interface = place.interface ? interfaceOf(*place.interface) : 0;
    ::setsockopt(socket_, IPPROTO_IPV6, IPV6_MULTICAST_ALL, &off, sizeof off);
    joined = ::setsockopt(socket_, IPPROTO_IPV6, IPV6_ADD_MEMBERSHIP, &membership, sizeof membership) == 0;
  } else {
    ip_mreq membership{};
    membership.imr_multiaddr.s_addr = htonl(place.group->v4());
    membership.imr_interface.s_addr = htonl(place.interface ? place.interface->v4() : INADDR_ANY);
    ::setsockopt(socket_, IPPROTO_IP, IP_MULTICAST_ALL, &off, sizeof off);
    joined = ::setsockopt(socket_, IPPROTO_IP, IP_ADD_MEMBERSHIP, &membership, sizeof membership) == 0;
  }
  if (!joined)
    error = "The multicast group " + settings.multicastGroup + " cannot be joined: " + std::strerror(errno) + ".";
  return joined;
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
      const auto told = controlValue<in_pktinfo>(part);
      datagram.destinationAddress =
          IpAddress::of({reinterpret_cast<const std::uint8_t *>(&told.ipi_addr), sizeof told.ipi_addr});
    } else if (part->cmsg_level == IPPROTO_IPV6 && part->cmsg_type == IPV6_PKTINFO) {
      datagram.destinationAddress = IpAddress::of(controlValue<in6_pktinfo>(part).ipi6_addr.s6_addr);
    }
  }
  if (datagram.timeNs == 0) datagram.timeNs = nowNs();
  datagram.sourceAddress = addressOf(batch_->senders[index]);
  datagram.sourcePort = ntohs(batch_->senders[index].sin6_port);  // at the same place in both versions
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
