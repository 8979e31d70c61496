#pragma once

#include <QString>
#include <optional>

#include "host/core/host_core.h"

namespace CLI {
class App;
}

namespace tarvo::skarnvisor::app {

/// First and last, both included.
template <typename Value>
struct Span {
  Value first{};
  Value last{};
};

/// What the commands ask that work on captures and sockets themselves.
struct CaptureOptions {
  int sensorPort = 0;  ///< of a capture with several sensors; 0: the first found
  // cut, export
  std::optional<Span<int>> frames;
  std::optional<Span<double>> secondSpan;  ///< from the begin of the capture
  // record
  LiveOptions live;
  // record, play of a live source
  double seconds = 0;  ///< 0: until interrupted
  bool soak = false;   ///< play: change settings all the time and report every ten seconds
};

/// Adds "--port" to a command on a capture.
void addSensorPort(CLI::App &command, CaptureOptions &options);
/// Adds "--frames", a span of frames.
void addFrames(CLI::App &command, CaptureOptions &options);
/// Add what "cut" and "record" take beside their files.
void addCutOptions(CLI::App &command, CaptureOptions &options);
void addRecordOptions(CLI::App &command, CaptureOptions &options);
/// Adds "--seconds", how long a live source is listened to.
void addSeconds(CLI::App &command, CaptureOptions &options);

}  // namespace tarvo::skarnvisor::app
