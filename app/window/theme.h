#pragma once

#include <QPalette>

namespace tarvo::skarnvisor::app {

/// Palette of the window and of the dialogs that the plug-in opens.
QPalette themePalette(bool dark);

}  // namespace tarvo::skarnvisor::app
