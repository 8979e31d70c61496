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
  for (int next = frames_.empty() ? id : end; next <= id; ++next) {
    if (!spare_) {
      spare_ = std::make_unique<Frame>();
      bytes_ += sizeof(Frame);
    }
    frames_.push_back(std::move(spare_));
  }
  trim();
  return frames_.empty() ? nullptr : frames_.back().get();
}

/// The newest frame stays, whatever it takes.
void LiveRing::trim() {
  while (frames_.size() > 1 && (bytes_ > byteLimit_ || frames_.size() > frameLimit_)) {
    if (spare_) bytes_ -= spare_->memoryBytes() + sizeof(Frame);
    spare_ = std::move(frames_.front());
    frames_.pop_front();
    ++firstId_;
    spare_->packets.clear();
    spare_->heads.clear();
    if (bytes_ > byteLimit_) {
      bytes_ -= spare_->memoryBytes() + sizeof(Frame);
      spare_.reset();
    }
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
