#pragma once

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace tarvo::skarnvisor::app {

struct Options;

/// Adds "--stack", how many frames are shown at once.
CLI::Option *addStackOption(CLI::App &command, Options &options);

}  // namespace tarvo::skarnvisor::app
