#include <gtest/gtest.h>

#include "runtime/capture/datagram_reader.h"
#include "tests/runtime/capture_maker.h"

namespace tarvo::lidar::test {
namespace {

constexpr std::uint64_t startNs = 1'700'000'000'123'456'789;
constexpr std::uint64_t noLimit = ~std::uint64_t{0};
const Bytes payload{'l', 'i', 'd', 'a', 'r'};

Bytes asBytes(std::span<const std::uint8_t> s) { return {s.begin(), s.end()}; }

TEST(Dissector, FindsTheUdpPayloadBehindEveryLinkLayer) {
  const Bytes ip = ipv4(udp(payload));
  const Bytes ip6 = Bytes{0x60, 0, 0, 0} + big16(8 + udp(payload).size()) + Bytes{0, 64} + Bytes(32, 1) +
                    Bytes{17, 0, 1, 4, 0, 0, 0, 0} + udp(payload);
  struct Case {
    const char *name;
    std::uint32_t linkType;
    Bytes bytes;
  };
  const std::vector<Case> cases{
      {"ethernet", 1, ethernet(ip)},
      {"ethernet with trailer", 1, ethernet(ip) + Bytes(9, 0)},
      {"vlan", 1, ethernet(big16(5) + big16(0x0800) + ip, 0x8100)},
      {"two vlan tags", 1, ethernet(big16(5) + big16(0x8100) + big16(6) + big16(0x0800) + ip, 0x88A8)},
      {"ipv6 with a hop-by-hop header", 1, ethernet(ip6, 0x86DD)},
      {"cooked", 113, Bytes(14, 0) + big16(0x0800) + ip},
      {"cooked 2", 276, big16(0x0800) + Bytes(18, 0) + ip},
      {"raw ipv4", 101, ip},
      {"raw ipv6", 101, ip6},
      {"loopback", 0, Bytes{2, 0, 0, 0} + ip},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.name);
    UdpDatagram datagram;
    IpFragment fragment;
    ASSERT_EQ(dissect(c.linkType, c.bytes, datagram, fragment), Dissection::Udp);
    EXPECT_EQ(asBytes(datagram.payload), payload);
    EXPECT_EQ(datagram.destinationPort, 2368);
    EXPECT_EQ(datagram.sourcePort, 10000);
    // A packet cut anywhere in front of its payload's end is never taken for whole.
    const std::size_t needed = c.bytes.size() - (c.name == std::string("ethernet with trailer") ? 9 : 0);
    for (std::size_t size = 0; size < needed; ++size) {
      const Bytes cut(c.bytes.begin(), c.bytes.begin() + static_cast<std::ptrdiff_t>(size));
      EXPECT_NE(dissect(c.linkType, cut, datagram, fragment), Dissection::Udp) << size;
    }
  }
}

TEST(Dissector, PassesOverWhatIsNotUdp) {
  UdpDatagram datagram;
  IpFragment fragment;
  EXPECT_EQ(dissect(1, ethernet(ipv4(udp(payload), 0, 7, 6)), datagram, fragment), Dissection::Other);
  EXPECT_EQ(dissect(1, ethernet(payload + Bytes(40, 0), 0x0806), datagram, fragment), Dissection::Other);
  EXPECT_EQ(dissect(147, ethernet(ipv4(udp(payload))), datagram, fragment), Dissection::UnknownLinkType);
  Bytes lying = ethernet(ipv4(udp(payload)));
  lying[14 + 20 + 5] = 200;  // UDP length beyond the packet
  EXPECT_EQ(dissect(1, lying, datagram, fragment), Dissection::Cut);
}

struct FormCase {
  const char *name;
  CaptureMaker::Form form;
  bool swapped;
  std::uint64_t unitNs;
};
const FormCase forms[]{
    {"micro", CaptureMaker::Form::Micro, false, 1000}, {"micro swapped", CaptureMaker::Form::Micro, true, 1000},
    {"nano", CaptureMaker::Form::Nano, false, 1},      {"nano swapped", CaptureMaker::Form::Nano, true, 1},
    {"pcapng", CaptureMaker::Form::Ng, false, 1},      {"pcapng swapped", CaptureMaker::Form::Ng, true, 1}};

TEST(CaptureReading, ReadsEveryFileFormAndStartsAnywhere) {
  for (const FormCase &c : forms) {
    SCOPED_TRACE(c.name);
    CaptureMaker maker(c.form, c.swapped);
    for (std::uint8_t i = 0; i < 5; ++i)
      maker.add(ethernet(ipv4(udp(payload + Bytes(i, i)))), startNs + i * 1'000'001U);
    CaptureFile file;
    std::string error;
    ASSERT_TRUE(file.open(writeFile("form.pcap", maker.bytes), error)) << error;
    CaptureCounters counters;
    std::vector<UdpDatagram> seen;
    std::vector<Bytes> payloads;
    UdpDatagram d;
    for (DatagramReader reader(file, counters, file.firstRecord(), noLimit, 4096); reader.next(d);) {
      seen.push_back(d);
      payloads.push_back(asBytes(d.payload));
    }
    ASSERT_EQ(seen.size(), 5U);
    for (std::size_t i = 0; i < seen.size(); ++i) {
      EXPECT_EQ(payloads[i], payload + Bytes(i, static_cast<std::uint8_t>(i)));
      const std::uint64_t ns = startNs + i * 1'000'001U;
      EXPECT_EQ(static_cast<std::uint64_t>(seen[i].timeNs), ns - ns % c.unitNs);
      DatagramReader again(file, counters, seen[i].recordOffset, seen[i].recordEnd);
      ASSERT_TRUE(again.next(d));
      EXPECT_EQ(d.timeNs, seen[i].timeNs);
      EXPECT_EQ(asBytes(d.payload), payloads[i]);
      EXPECT_FALSE(again.next(d)) << "the limit is the end of the record";
    }
  }
}

TEST(CaptureReading, AFileCutAnywhereGivesTheRecordsInFrontOfTheCut) {
  for (const FormCase &c : forms) {
    SCOPED_TRACE(c.name);
    CaptureMaker maker(c.form, c.swapped);
    std::vector<std::size_t> ends;
    for (int i = 0; i < 3; ++i) {
      maker.add(ethernet(ipv4(udp(payload))), startNs);
      ends.push_back(maker.bytes.size());
    }
    for (std::size_t size = ends[1]; size < maker.bytes.size(); ++size) {
      const std::string path =
          writeFile("cut.pcap", {maker.bytes.begin(), maker.bytes.begin() + static_cast<std::ptrdiff_t>(size)});
      CaptureFile file;
      std::string error;
      ASSERT_TRUE(file.open(path, error)) << error;
      CaptureCounters counters;
      DatagramReader reader(file, counters, file.firstRecord(), noLimit);
      UdpDatagram d;
      std::size_t count = 0;
      while (reader.next(d)) ++count;
      EXPECT_EQ(count, static_cast<std::size_t>(
                           std::count_if(ends.begin(), ends.end(), [&](std::size_t e) { return e <= size; })));
      EXPECT_EQ(counters.get(InputFault::TruncatedFile), std::count(ends.begin(), ends.end(), size) ? 0U : 1U);
    }
  }
}

TEST(CaptureReading, DamagedRecordHeadersEndTheReading) {
  CaptureMaker pcap;
  pcap.add(ethernet(ipv4(udp(payload))), startNs);
  const std::size_t good = pcap.bytes.size();
  pcap.add(ethernet(ipv4(udp(payload))), startNs);
  pcap.bytes[good + 11] = 0x7F;  // a captured length of two thousand million
  CaptureMaker ng(CaptureMaker::Form::Ng);
  ng.add(ethernet(ipv4(udp(payload))), startNs);
  ng.bytes = std::move(ng.bytes) + ng.w32(6) + ng.w32(2) + Bytes(40, 0);  // a block shorter than its own head
  for (const Bytes &bytes : {pcap.bytes, ng.bytes}) {
    CaptureFile file;
    std::string error;
    ASSERT_TRUE(file.open(writeFile("damaged.pcap", bytes), error));
    CaptureCounters counters;
    DatagramReader reader(file, counters, file.firstRecord(), noLimit);
    UdpDatagram d;
    EXPECT_TRUE(reader.next(d));
    EXPECT_FALSE(reader.next(d));
    EXPECT_EQ(counters.get(InputFault::DamagedRecord), 1U);
  }
}

TEST(CaptureReading, SectionsBringTheirOwnInterfacesAndByteOrder) {
  CaptureMaker first(CaptureMaker::Form::Ng, false, 101);
  first.add(ipv4(udp(payload)), startNs);
  CaptureMaker second(CaptureMaker::Form::Ng, true, 1);
  second.block(0x0BAD, Bytes(16, 1));  // of a kind that nobody knows
  second.add(ethernet(ipv4(udp(payload))), startNs + 1);
  second.block(6, second.w32(9) + Bytes(16, 0));  // of an interface that was not described
  CaptureFile file;
  std::string error;
  ASSERT_TRUE(file.open(writeFile("sections.pcapng", first.bytes + second.bytes), error)) << error;
  CaptureCounters counters;
  DatagramReader reader(file, counters, 0, noLimit);
  UdpDatagram d;
  std::uint64_t offset = 0;
  for (std::uint64_t i = 0; i < 2; ++i) {
    ASSERT_TRUE(reader.next(d));
    EXPECT_EQ(static_cast<std::uint64_t>(d.timeNs), startNs + i);
    offset = d.recordOffset;
  }
  EXPECT_FALSE(reader.next(d));
  EXPECT_EQ(counters.get(InputFault::UnknownInterface), 1U);
  DatagramReader again(file, counters, offset, noLimit);
  EXPECT_TRUE(again.next(d));
  EXPECT_EQ(asBytes(d.payload), payload);
}

TEST(Fragments, AreJoinedInAnyOrderAndGivenUpWhenTheyDisagree) {
  Bytes whole(3000);
  for (std::size_t i = 0; i < whole.size(); ++i) whole[i] = static_cast<std::uint8_t>(i * 7);
  const Bytes datagram = udp(whole);
  const auto part = [&](std::size_t from, std::size_t to, std::uint16_t id) {
    const bool more = to < datagram.size();
    const Bytes body(datagram.begin() + static_cast<std::ptrdiff_t>(from),
                     datagram.begin() + static_cast<std::ptrdiff_t>(to));
    return ethernet(ipv4(body, static_cast<std::uint16_t>((more ? 0x2000 : 0) | from / 8), id));
  };
  const std::size_t end = datagram.size();
  // The same in IPv6, where the place stands in a header of its own.
  const auto part6 = [&](std::size_t from, std::size_t to, std::uint8_t id) {
    const Bytes body(datagram.begin() + static_cast<std::ptrdiff_t>(from),
                     datagram.begin() + static_cast<std::ptrdiff_t>(to));
    return ethernet(Bytes{0x60, 0, 0, 0} + big16(8 + body.size()) + Bytes{44, 64} + Bytes(32, 1) + Bytes{17, 0} +
                        big16(from | (to < datagram.size() ? 1 : 0)) + Bytes{0, 0, 9, id} + body,
                    0x86DD);
  };
  CaptureMaker maker;
  for (const auto &packet :
       {part6(1448, 2896, 5), part6(0, 1448, 5), part6(0, 1448, 6), part6(2896, end, 5),  // 5 whole
        part(1480, 2960, 1), part(0, 1480, 2), part(2960, end, 1), part(0, 1480, 1),      // 1 whole, out of order
        part(8, 1488, 2),                                                                 // overlaps: 2 is given up
        part(0, 1480, 3), part(0, 1480, 3), part(1480, 2960, 3), part(2960, end, 3)})     // 3 with a repeat
    maker.add(packet, startNs);
  for (std::uint16_t id = 100; id < 120; ++id) maker.add(part(0, 1480, id), startNs);  // more than are kept
  CaptureFile file;
  std::string error;
  ASSERT_TRUE(file.open(writeFile("fragments.pcap", maker.bytes), error));
  CaptureCounters counters;
  DatagramReader reader(file, counters, file.firstRecord(), noLimit);
  UdpDatagram d;
  ASSERT_TRUE(reader.next(d));
  EXPECT_EQ(asBytes(d.payload), whole);
  EXPECT_EQ(d.recordOffset, file.firstRecord());
  ASSERT_TRUE(reader.next(d));
  EXPECT_EQ(asBytes(d.payload), whole);
  ASSERT_TRUE(reader.next(d));
  EXPECT_EQ(asBytes(d.payload), whole);
  EXPECT_FALSE(reader.next(d));
  EXPECT_EQ(counters.get(InputFault::LostFragment), 1U + 1U + 20U - FragmentJoiner::openLimit);
}

}  // namespace
}  // namespace tarvo::lidar::test
