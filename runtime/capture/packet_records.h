#pragma once

#include <cstdint>
#include <vector>

#include "runtime/capture/udp_dissector.h"

namespace tarvo::lidar {

inline constexpr std::uint32_t linkTypeEthernet = 1;

/// Appends the head of a pcap file with nanosecond stamps, in this machine's byte order.
void appendCaptureHead(std::vector<std::uint8_t> &to, std::uint32_t linkType);

/// Appends one record of such a file.
void appendRecord(std::vector<std::uint8_t> &to, std::int64_t timeNs, std::span<const std::uint8_t> packet,
                  std::uint32_t originalLength);

/// Appends a received datagram as a record of a nanosecond pcap file with link type Ethernet. The headers in front of
/// the payload are made anew from its addresses and ports; the sender's hardware address is not known and stands for
/// its IP address (02:00 and the last four bytes of that).
void appendDatagram(std::vector<std::uint8_t> &to, const UdpDatagram &datagram);

struct RecordRun {
  std::size_t bytes = 0;
  std::uint64_t records = 0;
};
/// The whole records within the first `limit` bytes of `records`, which begins with a record of such a file.
[[nodiscard]] RecordRun wholeRecords(std::span<const std::uint8_t> records, std::size_t limit);

}  // namespace tarvo::lidar
