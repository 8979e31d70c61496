#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "app/session/lidar_tools.h"

namespace CLI {
class App;
}

namespace tarvo::skarnvisor::app {

class CaptureSession;

/// How one tool of the lidar is to stand.
struct ToolChoice {
  QString name;
  const LidarTool *tool = nullptr;  ///< null: no lidar has one of that name
  bool on = true;
  std::vector<std::optional<double>> numbers{};  ///< the first ones of the tool; what is left out stays
};

/// Adds "--tools" to a command that decodes frames.
void addToolOption(CLI::App &command, std::vector<ToolChoice> &choices);

/// Sets them at the open source; frames decoded from then on follow. An empty string, or one sentence.
QString applyTools(CaptureSession &session, const std::vector<ToolChoice> &choices);

}  // namespace tarvo::skarnvisor::app
