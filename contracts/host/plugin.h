#pragma once

/// The one symbol that a plug-in library exports. The host calls it once, on the GUI thread, after loading the library;
/// it hands every class of the plug-in to `Registration::regist`.
extern "C" void regist_classes();

namespace tarvo::skarnvisor {

inline constexpr const char *registClassesSymbol = "regist_classes";

}  // namespace tarvo::skarnvisor
