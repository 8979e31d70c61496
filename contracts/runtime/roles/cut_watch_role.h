#pragma once

#include <functional>

namespace tarvo::lidar {

// Told now and then what share of a cut is done, 0 to 1, on the thread that cuts. False gives the cut up.
using CutTell = std::function<bool(double share)>;

// Watching a cut while it is written.
class CutWatchRole {
 public:
  virtual ~CutWatchRole() = default;
  // `tell` is asked by every cut that begins from now on; an empty one: nobody watches. A cut that is given up returns
  // false and leaves its file as it was.
  virtual void WatchCuts(CutTell /*tell*/) {}
};

}  // namespace tarvo::lidar
