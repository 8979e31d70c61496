#include "app/cli/stack_option.h"

#include <CLI/CLI.hpp>

namespace tarvo::skarnvisor::app {

CLI::Option *addStackOption(CLI::App &command, int &stack) {
  return command.add_option("--stack", stack, "Show so many frames at once, up to 3000, in whole groups of frames (1)")
      ->check(CLI::Range(1, 1'000'000'000));
}

}  // namespace tarvo::skarnvisor::app
