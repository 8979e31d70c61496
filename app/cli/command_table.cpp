#include "app/cli/command_table.h"

#include <initializer_list>

namespace tarvo::skarnvisor::app {

/// Each command stands in a file of its own, <name>_command.cpp, with its options and what it does.
using AddCommand = void(CommandLine &line);
AddCommand addInfoCommand, addRenderCommand, addPlayCommand, addCutCommand, addRecordCommand, addConvertCommand,
    addTelemetryCommand, addTypesCommand, addCalibrationCommand, addExportCommand, addViewCommand;

void addCommands(CommandLine &line) {
  for (AddCommand *const add :
       {addInfoCommand, addRenderCommand, addPlayCommand, addCutCommand, addRecordCommand, addConvertCommand,
        addTelemetryCommand, addTypesCommand, addCalibrationCommand, addExportCommand, addViewCommand})
    add(line);
}

}  // namespace tarvo::skarnvisor::app
