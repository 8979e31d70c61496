#pragma once

namespace tarvo::skarnvisor::app {

class CommandLine;

/// Adds every command, in the order in which the help lists them.
void addCommands(CommandLine &line);

}  // namespace tarvo::skarnvisor::app
