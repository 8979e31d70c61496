#include "runtime/capture/index_builder.h"

#include <algorithm>

#include "runtime/decode/decoder_registry.h"

namespace tarvo::lidar {

namespace {

constexpr std::size_t foreignPortLimit = 64;
constexpr std::size_t foreignPortsNamed = 6;

}  // namespace

void IndexBuilder::take(const UdpDatagram &datagram) {
  if (!walker_ && !chooseStream(datagram)) return;
  if (datagram.destinationPort != port_) {
    if (decoder_->recognises(datagram)) counters_.add(InputFault::ForeignSensor, datagram.recordOffset);
    return;
  }
  const PacketPlace where = walker_->place(datagram);
  // Calibration is taken up before the frame is announced that brought it, so that its first decode has it.
  while (const auto blob = walker_->takeCalibration()) listener_.calibrationFound(*blob);
  if (const unsigned refused = walker_->takeRefusals(); refused != 0)
    counters_.add(InputFault::RefusedCalibration, datagram.recordOffset, refused);
  if (where.lost != 0) counters_.add(InputFault::LostPacket, datagram.recordOffset, where.lost);
  place(datagram, where);
}

bool IndexBuilder::chooseStream(const UdpDatagram &datagram) {
  const bool wanted = sensorPort_ == 0 || sensorPort_ == datagram.destinationPort;
  const PacketDecoder *found = findDecoder(datagram);
  if (found == nullptr || !wanted) {
    if (foreignPorts_.size() < foreignPortLimit || foreignPorts_.contains(datagram.destinationPort))
      ++foreignPorts_[datagram.destinationPort];
    return false;
  }
  decoder_ = found;
  port_ = datagram.destinationPort;
  walker_ = found->makeWalker();
  chosen_(*found, port_);
  return true;
}

void IndexBuilder::place(const UdpDatagram &datagram, const PacketPlace &where) {
  switch (where.kind) {
    case PacketPlace::Kind::Foreign:
      counters_.add(InputFault::ForeignSensor, datagram.recordOffset);
      return;
    case PacketPlace::Kind::Damaged:
      counters_.add(InputFault::DamagedPacket, datagram.recordOffset);
      return;
    case PacketPlace::Kind::Late:
      counters_.add(InputFault::LatePacket, datagram.recordOffset);
      return;
    case PacketPlace::Kind::Previous:
      index_.extend(open_ ? index_.count() - 1 : currentId_ - 1, datagram.recordEnd);
      return;
    case PacketPlace::Kind::Next:
      begin(datagram, where);
      break;
    case PacketPlace::Kind::Current:
      if (open_) {
        open_->length = datagram.recordEnd - open_->offset;
        ++open_->packets;
      } else {
        index_.extend(currentId_, datagram.recordEnd);
      }
      break;
  }
  index_.noteTime(where.timeNs);
  if (where.endsFrame) publish();
}

void IndexBuilder::begin(const UdpDatagram &datagram, const PacketPlace &where) {
  publish();
  open_ = IndexedFrame{datagram.recordOffset, datagram.recordEnd - datagram.recordOffset, where.frameStartNs, 1};
  currentId_ = -1;
}

void IndexBuilder::publish() {
  if (!open_) return;
  index_.append(*open_);
  currentId_ = index_.count() - 1;
  open_.reset();
  announce();
}

/// Frames in front of the first description wait for it: without one nobody can show them.
void IndexBuilder::announce() {
  if (!described_) {
    const StreamDescription *known = walker_ ? walker_->description() : nullptr;
    if (known == nullptr) return;
    described_ = true;
    listener_.described(*known, *decoder_, port_);
  }
  listener_.framesGrew();
}

void IndexBuilder::finish() {
  if (walker_)
    if (const std::uint32_t lost = walker_->takeOutstanding(); lost != 0)
      counters_.add(InputFault::LostPacket, 0, lost);
  publish();
}

std::string IndexBuilder::foreignSummary(std::uint64_t packets) const {
  std::string text = std::to_string(packets) + (packets == 1 ? " packet was seen" : " packets were seen");
  if (foreignPorts_.empty()) return text + ", none of them UDP";
  std::vector<std::pair<std::uint16_t, std::uint64_t>> ports(foreignPorts_.begin(), foreignPorts_.end());
  std::stable_sort(ports.begin(), ports.end(), [](const auto &a, const auto &b) { return a.second > b.second; });
  text += ports.size() == 1 ? ", UDP port " : ", UDP ports ";
  for (std::size_t i = 0; i < std::min(ports.size(), foreignPortsNamed); ++i)
    text += (i == 0 ? "" : ", ") + std::to_string(ports[i].first);
  if (ports.size() > foreignPortsNamed) text += " and others";
  return text;
}

}  // namespace tarvo::lidar
