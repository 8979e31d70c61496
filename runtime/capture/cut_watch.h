#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>

#include "contracts/runtime/roles/cut_watch_role.h"

namespace tarvo::lidar {

/// How far one cut has come, and whether anybody still wants it. One thread.
class CutWatch {
 public:
  explicit CutWatch(CutTell tell = {}) : tell_(std::move(tell)) {}

  /// `total`: what the whole cut comes to, in any unit; `stride`: what may pass between two questions.
  void begin(std::uint64_t total, std::uint64_t stride) {
    total_ = std::max<std::uint64_t>(total, 1);
    stride_ = stride;
    done_ = asked_ = 0;
    ask();
  }
  /// `amount` more is done. False from the moment that the cut was given up.
  bool advance(std::uint64_t amount) {
    done_ += amount;
    if (done_ - asked_ >= stride_) ask();
    return !givenUp_;
  }
  /// The question before the file takes its place.
  bool finish() {
    done_ = total_;
    ask();
    return !givenUp_;
  }
  [[nodiscard]] bool givenUp() const { return givenUp_; }

 private:
  void ask() {
    asked_ = done_;
    const double share = std::min(1.0, static_cast<double>(done_) / static_cast<double>(total_));
    if (tell_ && !givenUp_) givenUp_ = !tell_(share);
  }

  CutTell tell_;
  std::uint64_t total_ = 1;
  std::uint64_t stride_ = 1;
  std::uint64_t done_ = 0;
  std::uint64_t asked_ = 0;
  bool givenUp_ = false;
};

}  // namespace tarvo::lidar
