#pragma once

#include <QString>

namespace tarvo::skarnvisor::app {

/// Shows the window until the user closes it; needs a QApplication. Opens `capture` unless it is empty.
/// @return exit code of the program: 1, with a message on standard error, if the window cannot be made
int runWindow(const QString &pluginPath, const QString &capture);

}  // namespace tarvo::skarnvisor::app
