#include "runtime/capture/packet_records.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace tarvo::lidar {

namespace {

constexpr std::uint32_t magicNano = 0xA1B23C4D;
constexpr std::uint32_t snapLength = 262'144;
constexpr std::size_t recordHeadSize = 16;
constexpr std::size_t etherHeadSize = 14;
constexpr std::size_t ipHeadSize = 20;
constexpr std::size_t ip6HeadSize = 40;
constexpr std::size_t udpHeadSize = 8;
constexpr std::uint8_t timeToLive = 64;
constexpr std::uint8_t protocolUdp = 17;
constexpr std::int64_t nanoPerSecond = 1'000'000'000;

template <typename Value>
void appendNative(std::vector<std::uint8_t> &to, Value value) {
  std::array<std::uint8_t, sizeof(Value)> bytes;
  std::memcpy(bytes.data(), &value, sizeof value);
  to.insert(to.end(), bytes.begin(), bytes.end());
}

void appendBig(std::vector<std::uint8_t> &to, std::uint32_t value, unsigned size) {
  for (unsigned i = size; i-- > 0;) to.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

void appendRecordHead(std::vector<std::uint8_t> &to, std::int64_t timeNs, std::size_t held, std::uint32_t original) {
  const std::int64_t time = std::max<std::int64_t>(timeNs, 0);
  appendNative(to, static_cast<std::uint32_t>(time / nanoPerSecond));
  appendNative(to, static_cast<std::uint32_t>(time % nanoPerSecond));
  appendNative(to, static_cast<std::uint32_t>(held));
  appendNative(to, original);
}

void append(std::vector<std::uint8_t> &to, std::span<const std::uint8_t> bytes) {
  to.insert(to.end(), bytes.begin(), bytes.end());
}

/// The last four bytes of the address behind two that say what it is.
void appendHardwareAddress(std::vector<std::uint8_t> &to, const IpAddress &address) {
  const std::uint32_t low = address.v4();
  if (address.isMulticast() && address.isV4()) {  // a group has its own form
    appendBig(to, 0x01005E, 3);
    appendBig(to, low & 0x7FFFFFu, 3);
  } else if (address.isV4() && low == 0xFFFFFFFFu) {
    to.insert(to.end(), 6, 0xFF);
  } else {
    appendBig(to, address.isMulticast() ? 0x3333 : 0x0200, 2);
    appendBig(to, low, 4);
  }
}

/// The checksum of `bytes`, with `sum` added before. Source: RFC 1071.
std::uint16_t checkSum(std::span<const std::uint8_t> bytes, std::uint64_t sum = 0) {
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) sum += std::uint32_t{bytes[i]} << 8 | bytes[i + 1];
  if (bytes.size() % 2 != 0) sum += std::uint32_t{bytes.back()} << 8;
  while (sum > 0xFFFF) sum = (sum & 0xFFFF) + (sum >> 16);
  return static_cast<std::uint16_t>(~sum);
}

void storeBig16(std::vector<std::uint8_t> &to, std::size_t at, std::uint16_t value) {
  to[at] = static_cast<std::uint8_t>(value >> 8);
  to[at + 1] = static_cast<std::uint8_t>(value);
}

void appendIpv4Head(std::vector<std::uint8_t> &to, const UdpDatagram &datagram, std::size_t inIp) {
  const std::size_t ip = to.size();
  appendBig(to, 0x4500, 2);
  appendBig(to, static_cast<std::uint32_t>(ipHeadSize + inIp), 2);
  appendBig(to, 0, 4);  // identification, not fragmented
  to.push_back(timeToLive);
  to.push_back(protocolUdp);
  appendBig(to, 0, 2);
  append(to, datagram.sourceAddress.wire());
  append(to, datagram.destinationAddress.wire());
  storeBig16(to, ip + 10, checkSum({to.data() + ip, ipHeadSize}));
}

void appendIpv6Head(std::vector<std::uint8_t> &to, const UdpDatagram &datagram, std::size_t inIp) {
  appendBig(to, 0x60000000, 4);
  appendBig(to, static_cast<std::uint32_t>(inIp), 2);
  to.push_back(protocolUdp);
  to.push_back(timeToLive);
  append(to, datagram.sourceAddress.bytes);
  append(to, datagram.destinationAddress.bytes);
}

}  // namespace

void appendCaptureHead(std::vector<std::uint8_t> &to, std::uint32_t linkType) {
  constexpr std::uint16_t majorVersion = 2;
  constexpr std::uint16_t minorVersion = 4;
  appendNative(to, magicNano);
  appendNative(to, majorVersion);
  appendNative(to, minorVersion);
  appendNative(to, std::uint64_t{0});  // time zone and precision, unused by everyone
  appendNative(to, snapLength);
  appendNative(to, linkType);
}

void appendRecord(std::vector<std::uint8_t> &to, std::int64_t timeNs, std::span<const std::uint8_t> packet,
                  std::uint32_t originalLength) {
  appendRecordHead(to, timeNs, packet.size(), originalLength);
  to.insert(to.end(), packet.begin(), packet.end());
}

void appendDatagram(std::vector<std::uint8_t> &to, const UdpDatagram &datagram) {
  const bool v4 = datagram.sourceAddress.isV4() && datagram.destinationAddress.isV4();
  const std::size_t inIp = udpHeadSize + datagram.payload.size();
  const std::size_t length = etherHeadSize + (v4 ? ipHeadSize : ip6HeadSize) + inIp;
  appendRecordHead(to, datagram.timeNs, length, static_cast<std::uint32_t>(length));
  appendHardwareAddress(to, datagram.destinationAddress);
  appendHardwareAddress(to, datagram.sourceAddress);
  appendBig(to, v4 ? 0x0800 : 0x86DD, 2);
  if (v4)
    appendIpv4Head(to, datagram, inIp);
  else
    appendIpv6Head(to, datagram, inIp);
  const std::size_t udp = to.size();
  appendBig(to, datagram.sourcePort, 2);
  appendBig(to, datagram.destinationPort, 2);
  appendBig(to, static_cast<std::uint32_t>(inIp), 2);
  appendBig(to, 0, 2);  // no checksum, which IPv4 allows
  append(to, datagram.payload);
  if (v4) return;
  // Source: RFC 8200, 8.1: both addresses, the length and the protocol count with the datagram.
  constexpr std::size_t addresses = 32;
  const std::uint16_t head = checkSum({to.data() + udp - addresses, addresses}, inIp + protocolUdp);
  const std::uint16_t sum = checkSum({to.data() + udp, inIp}, static_cast<std::uint16_t>(~head));
  storeBig16(to, udp + 6, sum == 0 ? 0xFFFF : sum);
}

RecordRun wholeRecords(std::span<const std::uint8_t> records, std::size_t limit) {
  RecordRun run;
  const std::size_t end = std::min(limit, records.size());
  while (run.bytes + recordHeadSize <= end) {
    std::uint32_t held;
    std::memcpy(&held, records.data() + run.bytes + 8, sizeof held);
    if (held > end - run.bytes - recordHeadSize) break;
    run.bytes += recordHeadSize + held;
    ++run.records;
  }
  return run;
}

}  // namespace tarvo::lidar
