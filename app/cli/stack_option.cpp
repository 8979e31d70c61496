#include "app/cli/stack_option.h"

#include <CLI/CLI.hpp>

#include "app/cli/options.h"

namespace tarvo::skarnvisor::app {

CLI::Option *addStackOption(CLI::App &command, Options &options) {
  return command
      .add_option("--stack", options.stack, "Show so many frames at once, up to 3000, in whole groups of frames (1)")
      ->check(CLI::Range(1, 1'000'000'000));
}

}  // namespace tarvo::skarnvisor::app
