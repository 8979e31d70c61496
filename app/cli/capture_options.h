#pragma once

#include <optional>

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

/// Adds "--frames", a span of frames counted from 0.
void addFrames(CLI::App &command, std::optional<Span<int>> &frames);
/// Adds "--seconds" as a span from the begin of the capture.
void addSecondSpan(CLI::App &command, std::optional<Span<double>> &seconds);
/// Adds "--seconds", how long a live source is listened to; 0: until interrupted.
void addSeconds(CLI::App &command, double &seconds);

}  // namespace tarvo::skarnvisor::app
