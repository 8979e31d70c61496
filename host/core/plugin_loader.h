#pragma once

#include <QString>

namespace tarvo::skarnvisor {

/// Loads a plug-in library, for the life of the process, and has it register its classes.
/// @return an empty string, or one sentence: the library cannot be loaded, lacks the entry, or registered nothing
[[nodiscard]] QString loadPluginLibrary(const QString &libraryPath);

}  // namespace tarvo::skarnvisor
