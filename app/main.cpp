#include "app/cli/program.h"

int main(int argc, char **argv) { return tarvo::skarnvisor::app::runProgram(argc, argv); }
