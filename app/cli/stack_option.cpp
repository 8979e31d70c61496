#include "app/cli/stack_option.h"

#include <CLI/CLI.hpp>

#include "app/cli/command_line.h"

namespace tarvo::skarnvisor::app {

CLI::Option *addStackOption(CLI::App &command, int &stack) {
  return command.add_option("--stack", stack, "Show so many frames at once, up to 3000, in whole groups of frames (1)")
      ->check(wholeFrom(1));
}

}  // namespace tarvo::skarnvisor::app
