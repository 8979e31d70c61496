#include "app/cli/capture_options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <string>

namespace tarvo::skarnvisor::app {
namespace {

/// "A:B" with A <= B, both 0 or more.
template <typename Value>
std::optional<Span<Value>> parseSpan(const std::string &text) {
  Span<Value> span;
  const char *const end = text.data() + text.size();
  const auto first = std::from_chars(text.data(), end, span.first);
  if (first.ec != std::errc() || first.ptr == end || *first.ptr != ':') return std::nullopt;
  const auto last = std::from_chars(first.ptr + 1, end, span.last);
  const bool whole = last.ec == std::errc() && last.ptr == end;
  return whole && span.first >= Value{} && span.first <= span.last ? std::optional(span) : std::nullopt;
}

template <typename Value>
CLI::Option *addSpan(CLI::App &command, const char *name, std::optional<Span<Value>> &target, const char *help) {
  return command.add_option_function<std::string>(
      name,
      [name, &target](const std::string &text) {
        target = parseSpan<Value>(text);
        if (!target) throw CLI::ValidationError(name, "a span is A:B, A not above B, not \"" + text + "\"");
      },
      help);
}

}  // namespace

void addSensorPort(CLI::App &command, CaptureOptions &options) {
  command
      .add_option("--port", options.sensorPort, "UDP port of the sensor, for a capture with several (the first found)")
      ->check(CLI::Range(1, 65535));
}

void addFrames(CLI::App &command, CaptureOptions &options) {
  addSpan(command, "--frames", options.frames, "Frames A:B, counted from 0, both included");
}

void addCutOptions(CLI::App &command, CaptureOptions &options) {
  CLI::Option_group *const what = command.add_option_group("what");
  addFrames(*what, options);
  addSpan(*what, "--seconds", options.secondSpan, "Frames that begin from second A to second B of the capture");
  what->require_option(1);
  addSensorPort(command, options);
}

void addRecordOptions(CLI::App &command, CaptureOptions &options) {
  LiveOptions &live = options.live;
  command.add_option("--port", live.udpPort, "UDP port that the lidar sends to")
      ->required()
      ->check(CLI::Range(1, 65535));
  const auto addAddress = [&command](const char *name, QString &target, const char *help) {
    command.add_option_function<std::string>(
        name, [&target](const std::string &text) { target = QString::fromStdString(text); }, help);
  };
  addAddress("--group", live.multicastGroup, "Multicast group to join");
  addAddress("--bind", live.bindAddress, "Address of the interface to listen on (all)");
  addSeconds(command, options);
}

void addSeconds(CLI::App &command, CaptureOptions &options) {
  command.add_option("--seconds", options.seconds, "How long to listen to a live source (until interrupted)")
      ->check([](const std::string &text) {
        double seconds = 0;
        const char *const end = text.data() + text.size();
        const bool number = std::from_chars(text.data(), end, seconds).ptr == end;
        // "nan" is not above 0 either.
        return number && seconds > 0 ? std::string() : "a number above 0 was expected, not \"" + text + "\"";
      });
}

}  // namespace tarvo::skarnvisor::app
