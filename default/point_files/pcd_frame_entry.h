#pragma once

#include <QString>
#include <cstdint>
#include <vector>

namespace tarvo::skarnvisor {

/// One frame of a folder track: one file.
struct PcdFrameEntry {
  QString path;            ///< absolute
  int number = 0;          ///< from 1: position among the files that its scan accepted, before sorting by time
  std::int64_t ticks = 0;  ///< time of the frame, 100 ns
};

using PcdFrameList = std::vector<PcdFrameEntry>;

}  // namespace tarvo::skarnvisor
