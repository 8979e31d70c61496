#pragma once

#include <QString>

namespace tarvo::skarnvisor {

/// The user's settings, in INI format.
[[nodiscard]] QString settingsFile();

/// Asks the user for a PCD file to write, with `preselected` filled in; empty when cancelled. GUI thread.
[[nodiscard]] QString askForPcdFile(const QString &preselected);

}  // namespace tarvo::skarnvisor
