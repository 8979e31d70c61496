#pragma once

#include <vector>

#include "tools/sim/noise.h"
#include "tools/sim/packet_sink.h"

namespace tarvo::lidar::sim {

/// A line that loses packets and swaps neighbours, the same ones for the same seed.
class RoughLine final : public PacketSink {
 public:
  RoughLine(PacketSink &next, double loss, double reorder, std::uint64_t seed)
      : next_(next), loss_(loss), reorder_(reorder), seed_(seed) {}

  void take(std::span<const std::uint8_t> payload, std::uint64_t stampNs) override {
    Draw draw(seed_, 4242, count_++);
    if (draw.uniform() < loss_) return;
    if (held_.empty() && draw.uniform() < reorder_) {
      held_.assign(payload.begin(), payload.end());
      return;
    }
    next_.take(payload, stampNs);
    release(stampNs);
    lastStampNs_ = stampNs;
  }

  void finish() override {
    release(lastStampNs_);
    next_.finish();
  }

 private:
  void release(std::uint64_t stampNs) {
    if (held_.empty()) return;
    next_.take(held_, stampNs + 500);
    held_.clear();
  }

  PacketSink &next_;
  double loss_, reorder_;
  std::uint64_t seed_;
  std::uint64_t count_ = 0;
  std::uint64_t lastStampNs_ = 0;
  std::vector<std::uint8_t> held_;  ///< waits for its successor; empty: none waits
};

}  // namespace tarvo::lidar::sim
