#include "runtime/capture/live_ring.h"

namespace tarvo::lidar {

bool LiveRing::add(const UdpDatagram &datagram, int id) {
  const std::lock_guard lock(mutex_);
  Frame *frame = findOrBegin(id);
  if (frame == nullptr) return true;  // a straggler of a frame that has gone
  const std::size_t before = frame->memoryBytes();
  if (before + datagram.payload.size() > byteLimit_ / 2 || !frame->packets.add(datagram.payload)) return false;
  frame->heads.push_back(datagram);
  frame->heads.back().payload = {};
  bytes_ += frame->memoryBytes() - before;
  trim();
  return true;
}

LiveRing::Frame *LiveRing::findOrBegin(int id) {
  const int end = firstId_ + static_cast<int>(frames_.size());
  if (id < firstId_) return nullptr;
  if (id < end) return frames_[static_cast<std::size_t>(id - firstId_)].get();
  if (frames_.empty()) firstId_ = id;
  for (int next = frames_.empty() ? id : end; next <= id; ++next) frames_.push_back(emptyFrame());
  trim();
  return frames_.back().get();
}

/// Takes the memory of the oldest frame when there is no room for another one like the newest.
std::unique_ptr<LiveRing::Frame> LiveRing::emptyFrame() {
  const std::size_t likely = frames_.empty() ? 0 : frames_.back()->memoryBytes();
  if (frames_.size() > 1 && (bytes_ + likely > byteLimit_ || frames_.size() >= frameLimit_)) {
    auto frame = std::move(frames_.front());
    frames_.pop_front();
    ++firstId_;
    frame->packets.clear();
    frame->heads.clear();
    return frame;
  }
  bytes_ += sizeof(Frame);
  return std::make_unique<Frame>();
}

/// The newest frame stays, whatever it takes.
void LiveRing::trim() {
  while (frames_.size() > 1 && (bytes_ > byteLimit_ || frames_.size() > frameLimit_)) {
    bytes_ -= frames_.front()->memoryBytes() + sizeof(Frame);
    frames_.pop_front();
    ++firstId_;
  }
}

const LiveRing::Frame *LiveRing::find(int id) const {
  const bool held = id >= firstId_ && id < firstId_ + static_cast<int>(frames_.size());
  return held ? frames_[static_cast<std::size_t>(id - firstId_)].get() : nullptr;
}

bool LiveRing::copy(int id, FramePackets &packets) const {
  const std::lock_guard lock(mutex_);
  const Frame *frame = find(id);
  if (frame == nullptr) return false;
  packets = frame->packets;
  return true;
}

bool LiveRing::visit(int id, const std::function<void(const UdpDatagram &)> &visit) const {
  const std::lock_guard lock(mutex_);
  const Frame *frame = find(id);
  if (frame == nullptr) return false;
  for (std::size_t i = 0; i < frame->heads.size(); ++i) {
    UdpDatagram datagram = frame->heads[i];
    datagram.payload = frame->packets.payload(i);
    visit(datagram);
  }
  return true;
}

int LiveRing::oldest() const {
  const std::lock_guard lock(mutex_);
  return firstId_;
}

std::size_t LiveRing::memoryBytes() const {
  const std::lock_guard lock(mutex_);
  return bytes_;
}

}  // namespace tarvo::lidar
