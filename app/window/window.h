#pragma once

#include <QString>

namespace tarvo::skarnvisor::app {

struct WindowOptions {
  QString pluginPath;
  QString capture;   ///< empty: nothing is opened
  QString shotFile;  ///< not empty: save the window with the first frame on it, and end
};

/// Shows the window until the user closes it; needs a QApplication.
/// @return exit code of the program: 1, with a message on standard error, if the window cannot be made
int runWindow(const WindowOptions &options);

}  // namespace tarvo::skarnvisor::app
