#include "runtime/capture/udp_dissector.h"

#include <algorithm>

namespace tarvo::lidar {

namespace {

using Bytes = std::span<const std::uint8_t>;

// LINKTYPE numbers of capture files.
enum LinkType : std::uint32_t {
  LinkNull = 0,
  LinkEthernet = 1,
  LinkRawOld = 12,
  LinkRawOpenBsd = 14,
  LinkRaw = 101,
  LinkLoop = 108,
  LinkLinuxCooked = 113,
  LinkIpv4 = 228,
  LinkIpv6 = 229,
  LinkLinuxCooked2 = 276,
};

enum EtherType : std::uint16_t {
  EtherIpv4 = 0x0800,
  EtherIpv6 = 0x86DD,
  EtherVlan = 0x8100,
  EtherQinQ = 0x88A8,
  EtherVlanOld = 0x9100
};

constexpr std::uint8_t protocolUdp = 17;
constexpr std::size_t udpHeadSize = 8;
constexpr std::size_t ipv6HeadSize = 40;
constexpr int vlanTagLimit = 4;
constexpr int ipv6ExtensionLimit = 8;

std::uint16_t big16(Bytes bytes, std::size_t at) { return static_cast<std::uint16_t>(bytes[at] << 8 | bytes[at + 1]); }
std::uint32_t big32(Bytes bytes, std::size_t at) {
  return std::uint32_t{big16(bytes, at)} << 16 | big16(bytes, at + 2);
}

Dissection readIpv4(Bytes bytes, UdpDatagram &datagram, IpFragment &fragment) {
  if (bytes.size() < 20 || bytes[0] >> 4 != 4) return Dissection::Cut;
  const std::size_t head = std::size_t{bytes[0] & 0x0Fu} * 4;
  // A length of 0 is what segmentation offload leaves in a capture of the sending machine.
  const std::size_t total = big16(bytes, 2) == 0 ? bytes.size() : big16(bytes, 2);
  if (head < 20 || total < head || bytes.size() < head) return Dissection::Cut;
  if (bytes[9] != protocolUdp) return Dissection::Other;
  if (total > bytes.size()) return Dissection::Cut;
  const Bytes payload = bytes.subspan(head, total - head);
  const std::uint16_t place = big16(bytes, 6);
  const bool more = (place & 0x2000u) != 0;
  const std::uint32_t offset = (place & 0x1FFFu) * 8u;
  if (more || offset != 0) {
    fragment = {IpAddress::of(bytes.subspan(12, 4)),
                IpAddress::of(bytes.subspan(16, 4)),
                big16(bytes, 4),
                offset,
                more,
                payload};
    return Dissection::Fragment;
  }
  return readUdp(payload, datagram) ? Dissection::Udp : Dissection::Cut;
}

Dissection readIpv6(Bytes bytes, UdpDatagram &datagram, IpFragment &fragment) {
  if (bytes.size() < ipv6HeadSize || bytes[0] >> 4 != 6) return Dissection::Cut;
  const std::size_t length = big16(bytes, 4) == 0 ? bytes.size() - ipv6HeadSize : big16(bytes, 4);
  if (length > bytes.size() - ipv6HeadSize) return Dissection::Cut;
  Bytes rest = bytes.subspan(ipv6HeadSize, length);
  std::uint8_t protocol = bytes[6];
  for (int extension = 0; extension < ipv6ExtensionLimit; ++extension) {
    if (protocol == protocolUdp) return readUdp(rest, datagram) ? Dissection::Udp : Dissection::Cut;
    const bool fragmentHead = protocol == 44;
    if (protocol != 0 && protocol != 43 && protocol != 60 && !fragmentHead) return Dissection::Other;
    if (rest.size() < 8) return Dissection::Cut;
    if (const unsigned place = fragmentHead ? big16(rest, 2) & 0xFFF9u : 0; place != 0) {
      // Headers inside the parts of a datagram are not looked for: lidars send none.
      if (rest[0] != protocolUdp) return Dissection::Other;
      fragment = {IpAddress::of(bytes.subspan(8, 16)),
                  IpAddress::of(bytes.subspan(24, 16)),
                  big32(rest, 4),
                  place & 0xFFF8u,
                  (place & 1u) != 0,
                  rest.subspan(8)};
      return Dissection::Fragment;
    }
    const std::size_t size = fragmentHead ? 8 : (std::size_t{rest[1]} + 1) * 8;
    if (size > rest.size()) return Dissection::Cut;
    protocol = rest[0];
    rest = rest.subspan(size);
  }
  return Dissection::Other;
}

Dissection readIp(Bytes bytes, UdpDatagram &datagram, IpFragment &fragment) {
  if (bytes.empty()) return Dissection::Cut;
  if (bytes[0] >> 4 == 4) return readIpv4(bytes, datagram, fragment);
  return bytes[0] >> 4 == 6 ? readIpv6(bytes, datagram, fragment) : Dissection::Other;
}

/// `bytes` begins behind the field that held `type`.
Dissection readEtherPayload(std::uint16_t type, Bytes bytes, UdpDatagram &datagram, IpFragment &fragment) {
  for (int tag = 0; tag < vlanTagLimit && (type == EtherVlan || type == EtherQinQ || type == EtherVlanOld); ++tag) {
    if (bytes.size() < 4) return Dissection::Cut;
    type = big16(bytes, 2);
    bytes = bytes.subspan(4);
  }
  if (type == EtherIpv4) return readIpv4(bytes, datagram, fragment);
  return type == EtherIpv6 ? readIpv6(bytes, datagram, fragment) : Dissection::Other;
}

}  // namespace

bool readUdp(Bytes ipPayload, UdpDatagram &datagram) {
  if (ipPayload.size() < udpHeadSize) return false;
  const std::size_t length = big16(ipPayload, 4) == 0 ? ipPayload.size() : big16(ipPayload, 4);
  if (length < udpHeadSize || length > ipPayload.size()) return false;
  datagram.sourcePort = big16(ipPayload, 0);
  datagram.destinationPort = big16(ipPayload, 2);
  datagram.payload = ipPayload.subspan(udpHeadSize, length - udpHeadSize);
  return true;
}

Dissection dissect(std::uint32_t linkType, Bytes bytes, UdpDatagram &datagram, IpFragment &fragment) {
  struct EtherPlace {
    std::size_t typeAt;
    std::size_t payloadAt;
  };
  const auto ether = [&](EtherPlace place) {
    if (bytes.size() < place.payloadAt) return Dissection::Cut;
    return readEtherPayload(big16(bytes, place.typeAt), bytes.subspan(place.payloadAt), datagram, fragment);
  };
  switch (linkType) {
    case LinkEthernet:
      return ether({12, 14});
    case LinkLinuxCooked:
      return ether({14, 16});
    case LinkLinuxCooked2:
      return ether({0, 20});
    case LinkRaw:
    case LinkRawOld:
    case LinkRawOpenBsd:
    case LinkIpv4:
    case LinkIpv6:
      return readIp(bytes, datagram, fragment);
    case LinkNull:
    case LinkLoop:
      // The family word's byte order depends on the machine that captured; the IP version says the same.
      return bytes.size() < 4 ? Dissection::Cut : readIp(bytes.subspan(4), datagram, fragment);
    default:
      return Dissection::UnknownLinkType;
  }
}

}  // namespace tarvo::lidar
