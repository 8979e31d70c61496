#include <CLI/CLI.hpp>
#include <memory>

#include "app/cli/source_command.h"
#include "app/window/window.h"

namespace tarvo::skarnvisor::app {

void addViewCommand(CommandLine &line) {
  const auto options = std::make_shared<WindowOptions>();
  CLI::App &command = line.addWindow("view", "Open the window (as does no command)", [&line, options] {
    options->pluginPath = line.pluginPath();
    return runWindow(*options);
  });
  addFile(command, options->capture, Sources::Any);
  addText(command, "--shot", options->shotFile, "Save a picture of the window with the first frame on it, and end");
}

}  // namespace tarvo::skarnvisor::app
