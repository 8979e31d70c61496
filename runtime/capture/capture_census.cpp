#include "runtime/capture/capture_census.h"

#include <algorithm>

namespace tarvo::lidar {

namespace {

constexpr std::uint64_t packetsUntilUnknown = 100'000;  // a sensor that has not told its type by then stays without

}  // namespace

void CaptureCensus::setShown(int port) {
  const std::lock_guard lock(mutex_);
  shownPort_ = port;
}

void CaptureCensus::setShownType(const std::string &type) {
  const std::lock_guard lock(mutex_);
  shownType_ = type;
}

void CaptureCensus::addShown(std::uint64_t packets) {
  const std::lock_guard lock(mutex_);
  shownPackets_ += packets;
}

void CaptureCensus::addOther(const UdpDatagram &datagram, const PacketDecoder &format) {
  const std::lock_guard lock(mutex_);
  const auto known = others_.find(datagram.destinationPort);
  if (known == others_.end() && others_.size() >= sensorLimit) return;
  Other &other = known == others_.end() ? others_[datagram.destinationPort] : known->second;
  if (other.packets == 0) other.walker = format.makeWalker();
  ++other.packets;
  if (!other.walker) return;
  (void)other.walker->place(datagram);
  if (const StreamDescription *told = other.walker->description()) other.type = told->type;
  if (!other.type.empty() || other.packets > packetsUntilUnknown) other.walker.reset();
}

void CaptureCensus::addGap(int afterFrame, double seconds) {
  const std::lock_guard lock(mutex_);
  ++gapCount_;
  if (gaps_.size() < gapLimit) gaps_.push_back({afterFrame, seconds});
}

void CaptureCensus::fill(CaptureReport &report) const {
  const std::lock_guard lock(mutex_);
  report.packets = shownPackets_;
  report.gapCount = gapCount_;
  report.gaps = gaps_;
  report.sensors.clear();
  if (shownPort_ != 0) report.sensors.push_back({shownPort_, shownType_, shownPackets_, true});
  for (const auto &[port, other] : others_) report.sensors.push_back({port, other.type, other.packets, false});
  std::sort(report.sensors.begin(), report.sensors.end(),
            [](const CaptureSensor &a, const CaptureSensor &b) { return a.port < b.port; });
}

}  // namespace tarvo::lidar
