#pragma once

#include <cstdint>
#include <iterator>
#include <map>

namespace tarvo::lidar {

/// Which parts of a whole have come, as runs of bytes in any order.
class RunSet {
 public:
  void clear() { runs_.clear(); }
  void add(std::uint32_t begin, std::uint32_t end) {
    if (begin >= end) return;
    auto next = runs_.lower_bound(begin);
    if (next != runs_.begin() && std::prev(next)->second >= begin) {
      --next;
      begin = next->first;
    }
    while (next != runs_.end() && next->first <= end) {
      end = next->second > end ? next->second : end;
      next = runs_.erase(next);
    }
    runs_.emplace(begin, end);
  }
  [[nodiscard]] bool covers(std::uint32_t total) const {
    return runs_.size() == 1 && runs_.begin()->first == 0 && runs_.begin()->second >= total;
  }

 private:
  std::map<std::uint32_t, std::uint32_t> runs_;  // begin to end, neither touching nor overlapping
};

}  // namespace tarvo::lidar
