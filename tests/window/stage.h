#pragma once

#include <QTemporaryDir>

#include "tests/window/display.h"

namespace tarvo::skarnvisor::test {

/// What a process that drives the window needs before its application object: a display, a home and a working folder of
/// its own, and an ear for complaints.
class Stage {
 public:
  /// Sets the environment and the working folder of the process.
  Stage();

  /// False where there is no display, which it has told on standard error.
  bool isReady() const { return !m_display.name().isEmpty(); }

 private:
  Display m_display;
  QTemporaryDir m_folder;
};

}  // namespace tarvo::skarnvisor::test
