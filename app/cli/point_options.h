#pragma once

#include <QMatrix4x4>
#include <QString>
#include <cstddef>
#include <optional>
#include <vector>

#include "app/cli/tool_options.h"

namespace CLI {
class App;
}

namespace tarvo::skarnvisor::app {

class CaptureSession;

/// Limits of one slot of the point filter. A low limit above the high one is a range that wraps around.
struct SlotRange {
  std::size_t slot = 0;  ///< in the order of the filter's slots
  double low = 0;
  double high = 0;
};

/// Which points of a frame a picture is to show or mark.
struct PointOptions {
  std::vector<SlotRange> filter;
  bool anySlotMayMatch = false;
  bool highlight = false;  ///< what the filter takes out is marked instead
  std::optional<int> echo;
  std::vector<int> hiddenChannels;  ///< counted from 1
  std::optional<QMatrix4x4> selection;
  std::vector<ToolChoice> tools;

  bool any() const { return !filter.empty() || echo || !hiddenChannels.empty() || selection || !tools.empty(); }
  /// Whether some points may be marked.
  bool marks() const { return highlight || selection; }
};

/// Adds the options to a command that shows frames.
void addPointOptions(CLI::App &command, PointOptions &options);

/// Sets all of them at the source that is open and has shown a frame; what they change is on the canvas after
/// `CaptureSession::waitForPicture`. An empty string, or one sentence.
QString applyPointOptions(CaptureSession &session, const PointOptions &options);

}  // namespace tarvo::skarnvisor::app
