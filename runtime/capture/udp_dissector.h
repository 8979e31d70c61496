#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "runtime/capture/ip_address.h"

namespace tarvo::lidar {

/// One UDP datagram of a capture or a socket. The payload lies in the reader's memory until its next datagram.
struct UdpDatagram {
  std::span<const std::uint8_t> payload;
  std::uint16_t sourcePort = 0;
  std::uint16_t destinationPort = 0;
  IpAddress sourceAddress;         ///< of a live source; all 0 from a capture
  IpAddress destinationAddress;    ///< likewise
  std::int64_t timeNs = 0;         ///< Unix time of the capture or of the reception
  std::uint64_t recordOffset = 0;  ///< of the (first) record that it came in; 0 for a live source
  std::uint64_t recordEnd = 0;     ///< behind the (last) record that it came in
};

/// An IPv4 or IPv6 fragment, for reassembly.
struct IpFragment {
  IpAddress sourceAddress;
  IpAddress destinationAddress;
  std::uint32_t identification = 0;
  std::uint32_t offset = 0;  ///< of the bytes in the IP payload
  bool more = false;
  std::span<const std::uint8_t> bytes;
};

enum class Dissection {
  Udp,
  Fragment,  ///< part of a UDP datagram
  Other,     ///< some other protocol
  UnknownLinkType,
  Cut,  ///< a header or its lengths run past the bytes
};

/// Looks through the link layer (Ethernet with VLAN tags, Linux cooked 1 and 2, loopback, raw IP) and IPv4 or IPv6 to
/// the UDP payload. Fills `datagram`'s payload and ports for `Udp`, `fragment` for `Fragment`; reads no byte outside
/// `bytes`.
[[nodiscard]] Dissection dissect(std::uint32_t linkType, std::span<const std::uint8_t> bytes, UdpDatagram &datagram,
                                 IpFragment &fragment);

/// The UDP header at the start of an IP payload; false when it does not hold together.
[[nodiscard]] bool readUdp(std::span<const std::uint8_t> ipPayload, UdpDatagram &datagram);

}  // namespace tarvo::lidar
