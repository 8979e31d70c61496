#pragma once

namespace tarvo::skarnvisor::app {

/// The whole program: reads the arguments, runs the command or the window, and returns the exit code (0 only on
/// success).
int runProgram(int argc, char **argv);

}  // namespace tarvo::skarnvisor::app
