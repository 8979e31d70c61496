#pragma once

#include <QString>

namespace tarvo::skarnvisor::drive {

/// What the command line asks for; set before the window is there.
struct Options {
  QString pictureFolder;  ///< absolute
  int seconds = 60;       ///< of the walk, or of playing in each measure
  unsigned seed = 0;      ///< of the walk
  int rounds = 200;       ///< of opening and closing
};

/// Those of this process.
inline Options &options() {
  static Options all;
  return all;
}

}  // namespace tarvo::skarnvisor::drive
