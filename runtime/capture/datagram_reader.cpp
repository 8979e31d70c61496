#include "runtime/capture/datagram_reader.h"

namespace tarvo::lidar {

void DatagramReader::count(InputFault fault, std::uint64_t where, std::uint64_t times) {
  if (counting_) counters_.add(fault, where, times);
}

bool DatagramReader::next(UdpDatagram &datagram) {
  CaptureRecord record;
  IpFragment fragment;
  while (cursor_.next(record)) {
    ++records_;
    datagram.timeNs = record.timeNs;
    datagram.recordOffset = record.offset;
    datagram.recordEnd = record.end;
    switch (dissect(record.linkType, record.bytes, datagram, fragment)) {
      case Dissection::Udp:
        return true;
      case Dissection::Fragment: {
        const auto result = joiner_.add(fragment, record.offset, record.end, datagram);
        if (const auto abandoned = joiner_.takeAbandoned(); abandoned != 0)
          count(InputFault::LostFragment, record.offset, abandoned);
        if (result == FragmentJoiner::Result::Complete) return true;
        if (result == FragmentJoiner::Result::Refused) count(InputFault::LostFragment, record.offset);
        break;
      }
      case Dissection::UnknownLinkType:
        count(InputFault::UnknownLinkType, record.offset);
        break;
      case Dissection::Cut:
        count(InputFault::CutPacket, record.offset);
        break;
      case Dissection::Other:
        break;
    }
  }
  return false;
}

}  // namespace tarvo::lidar
