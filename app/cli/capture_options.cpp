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
void addSpan(CLI::App &command, const char *name, std::optional<Span<Value>> &target, const char *help) {
  command.add_option_function<std::string>(
      name,
      [name, &target](const std::string &text) {
        target = parseSpan<Value>(text);
        if (!target)
          throw CLI::ValidationError(name, "a span is A:B, from 0 on and A not above B, not \"" + text + "\"");
      },
      help);
}

}  // namespace

void addFrames(CLI::App &command, std::optional<Span<int>> &frames) {
  addSpan(command, "--frames", frames, "Frames A:B, counted from 0, both included");
}

void addSecondSpan(CLI::App &command, std::optional<Span<double>> &seconds) {
  addSpan(command, "--seconds", seconds, "Frames that begin from second A to second B of the capture");
}

void addSeconds(CLI::App &command, double &seconds) {
  command.add_option("--seconds", seconds, "How long to listen to a live source (until interrupted)")
      ->check([](const std::string &text) {
        double number = 0;
        const char *const end = text.data() + text.size();
        const bool whole = std::from_chars(text.data(), end, number).ptr == end;
        // "nan" is not above 0 either.
        return whole && number > 0 ? std::string() : "a number above 0 was expected, not \"" + text + "\"";
      });
}

}  // namespace tarvo::skarnvisor::app
