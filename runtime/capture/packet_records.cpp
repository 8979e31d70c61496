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

void appendHardwareAddress(std::vector<std::uint8_t> &to, std::uint32_t address) {
  if (address >> 28 == 0xE) {  // a group has its own form
    appendBig(to, 0x01005E, 3);
    appendBig(to, address & 0x7FFFFFu, 3);
  } else if (address == 0xFFFFFFFFu) {
    to.insert(to.end(), 6, 0xFF);
  } else {
    appendBig(to, 0x0200, 2);
    appendBig(to, address, 4);
  }
}

/// Source: RFC 1071.
std::uint16_t headerSum(std::span<const std::uint8_t> header) {
  std::uint32_t sum = 0;
  for (std::size_t i = 0; i + 1 < header.size(); i += 2) sum += std::uint32_t{header[i]} << 8 | header[i + 1];
  while (sum > 0xFFFF) sum = (sum & 0xFFFF) + (sum >> 16);
  return static_cast<std::uint16_t>(~sum);
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
  const std::size_t inIp = ipHeadSize + udpHeadSize + datagram.payload.size();
  const std::size_t length = etherHeadSize + inIp;
  appendRecordHead(to, datagram.timeNs, length, static_cast<std::uint32_t>(length));
  appendHardwareAddress(to, datagram.destinationAddress);
  appendHardwareAddress(to, datagram.sourceAddress);
  appendBig(to, 0x0800, 2);
  const std::size_t ip = to.size();
  appendBig(to, 0x4500, 2);
  appendBig(to, static_cast<std::uint32_t>(inIp), 2);
  appendBig(to, 0, 4);  // identification, not fragmented
  to.push_back(timeToLive);
  to.push_back(protocolUdp);
  appendBig(to, 0, 2);
  appendBig(to, datagram.sourceAddress, 4);
  appendBig(to, datagram.destinationAddress, 4);
  const std::uint16_t sum = headerSum({to.data() + ip, ipHeadSize});
  to[ip + 10] = static_cast<std::uint8_t>(sum >> 8);
  to[ip + 11] = static_cast<std::uint8_t>(sum);
  appendBig(to, datagram.sourcePort, 2);
  appendBig(to, datagram.destinationPort, 2);
  appendBig(to, static_cast<std::uint32_t>(udpHeadSize + datagram.payload.size()), 2);
  appendBig(to, 0, 2);  // no checksum
  to.insert(to.end(), datagram.payload.begin(), datagram.payload.end());
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
