#include "runtime/capture/index_builder.h"

#include <algorithm>
#include <utility>

#include "runtime/decode/decoder_registry.h"

namespace tarvo::lidar {

namespace {

constexpr std::size_t foreignPortLimit = 64;
constexpr std::size_t foreignPortsNamed = 6;

}  // namespace

IndexBuilder::IndexBuilder(int sensorPort, const Targets &targets, StreamChosen chosen)
    : sensorPort_(sensorPort),
      index_(targets.index),
      counters_(targets.counters),
      census_(targets.census),
      listener_(targets.listener),
      keeper_(targets.keeper),
      chosen_(std::move(chosen)) {}

void IndexBuilder::take(const UdpDatagram &datagram) {
  if (!walker_ && !chooseStream(datagram)) return;
  if (datagram.destinationPort != port_) {
    if (const PacketDecoder *format = findDecoder(datagram)) {
      counters_.add(InputFault::ForeignSensor, datagram.recordOffset);
      census_.addOther(datagram, *format);
    }
    return;
  }
  const PacketPlace where = walker_->place(datagram);
  // Calibration is taken up before the frame is announced that brought it, so that its first decode has it.
  while (const auto blob = walker_->takeCalibration()) listener_.calibrationFound(*blob);
  if (const unsigned refused = walker_->takeRefusals(); refused != 0)
    counters_.add(InputFault::RefusedCalibration, datagram.recordOffset, refused);
  count(datagram, where);
  place(datagram, where);
}

void IndexBuilder::count(const UdpDatagram &datagram, const PacketPlace &where) {
  if (where.kind != PacketPlace::Kind::Foreign) ++taken_;
  const std::uint64_t at = datagram.recordOffset;
  if (where.lost != 0) counters_.add(InputFault::LostPacket, at, where.lost);
  if (where.disordered) counters_.add(InputFault::DisorderedPacket, at);
  if (where.repeated) counters_.add(InputFault::RepeatedPacket, at);
  if (where.shapeChanged) counters_.add(InputFault::ShapeChange, at);
}

bool IndexBuilder::chooseStream(const UdpDatagram &datagram) {
  const bool wanted = sensorPort_ == 0 || sensorPort_ == datagram.destinationPort;
  const PacketDecoder *found = findDecoder(datagram);
  if (found == nullptr || !wanted) {
    if (foreignPorts_.size() < foreignPortLimit || foreignPorts_.contains(datagram.destinationPort))
      ++foreignPorts_[datagram.destinationPort];
    if (found != nullptr) census_.addOther(datagram, *found);
    return false;
  }
  decoder_ = found;
  port_ = datagram.destinationPort;
  walker_ = found->makeWalker();
  census_.setShown(port_);
  chosen_(*found, port_);
  return true;
}

void IndexBuilder::place(const UdpDatagram &datagram, const PacketPlace &where) {
  int id = open_ ? published_ : currentId_;
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
    case PacketPlace::Kind::Setup:
      keeper_.keepSetup(datagram, -1);
      return;
    case PacketPlace::Kind::Previous:
      if (--id < 0) return;
      index_.extend(id, datagram.recordEnd);
      keeper_.keep(datagram, id);
      return;
    case PacketPlace::Kind::Next:
      begin(datagram, where);
      id = published_;
      break;
    case PacketPlace::Kind::Current:
      if (open_) {
        open_->length = datagram.recordEnd - open_->offset;
        ++open_->packets;
      } else {
        index_.extend(id, datagram.recordEnd);
      }
      break;
  }
  keeper_.keep(datagram, id);
  if (where.setup) keeper_.keepSetup(datagram, id);
  newestNs_ = std::max(newestNs_, clock_.time(where.timeNs));
  if (where.endsFrame) publish();
}

void IndexBuilder::begin(const UdpDatagram &datagram, const PacketPlace &where) {
  publish();
  const ClockWatch::Step step = clock_.frame(where.frameStartNs, datagram.timeNs);
  if (step.jumped) counters_.add(InputFault::ClockJump, datagram.recordOffset);
  if (step.gapNs != 0) {
    constexpr double nsPerSecond = 1e9;
    counters_.add(InputFault::FrameGap, datagram.recordOffset);
    census_.addGap(published_ - 1, static_cast<double>(step.gapNs) / nsPerSecond);
  }
  open_ = IndexedFrame{datagram.recordOffset, datagram.recordEnd - datagram.recordOffset, step.startNs, 1};
  currentId_ = -1;
}

void IndexBuilder::publish() {
  if (!open_) return;
  index_.append(*open_);
  currentId_ = published_++;
  open_.reset();
  flush();
  announce();
}

void IndexBuilder::flush() {
  census_.addShown(std::exchange(taken_, 0));
  if (newestNs_ != std::numeric_limits<std::int64_t>::min()) index_.noteTime(newestNs_);
}

void IndexBuilder::skip() {
  publish();
  if (walker_) walker_->skip();
}

/// Frames in front of the first description wait for it: without one nobody can show them.
void IndexBuilder::announce() {
  if (!described_) {
    const StreamDescription *known = walker_ ? walker_->description() : nullptr;
    if (known == nullptr) return;
    described_ = true;
    census_.setShownType(known->type);
    listener_.described(*known, *decoder_, port_);
  }
  listener_.framesGrew();
}

void IndexBuilder::finish() {
  if (walker_)
    if (const std::uint32_t lost = walker_->takeOutstanding(); lost != 0)
      counters_.add(InputFault::LostPacket, 0, lost);
  publish();
  flush();
  if (!described_ && published_ > 0) announce();  // the description came behind the last frame
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
