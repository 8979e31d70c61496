#pragma once

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace tarvo::skarnvisor::app {

/// Adds "--stack", how many frames are shown at once.
CLI::Option *addStackOption(CLI::App &command, int &stack);

}  // namespace tarvo::skarnvisor::app
