#pragma once

#include <QString>

namespace CLI {
class App;
}

namespace tarvo::skarnvisor::app {

struct Options;

void addTypesCommand(CLI::App &program, Options &options);

/// "types": prints the plug-in's lidar types, or one of them in full. Needs the plug-in loaded, and no capture. Returns
/// an empty string, or one sentence saying why it failed.
QString runTypes(const Options &options);

}  // namespace tarvo::skarnvisor::app
