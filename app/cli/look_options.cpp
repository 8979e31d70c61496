#include "app/cli/look_options.h"

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "app/cli/command_line.h"

namespace tarvo::skarnvisor::app {
namespace {

std::vector<std::string> toStrings(const QStringList &names) {
  std::vector<std::string> strings;
  for (const QString &name : names) strings.push_back(name.toStdString());
  return strings;
}

/// "1280x720" to a size; an error text for anything else.
std::string parseSize(const std::string &text, QSize &size) {
  const QStringList sides = fromArgument(text).split('x');
  constexpr int least = 16;
  constexpr int most = 8192;
  if (sides.size() == 2) size = QSize(sides[0].toInt(), sides[1].toInt());
  const bool good = sides.size() == 2 && size.width() >= least && size.height() >= least && size.width() <= most &&
                    size.height() <= most;
  return good ? std::string() : "a size is WIDTHxHEIGHT, each from 16 to 8192, not \"" + text + "\"";
}

}  // namespace

void addLook(CLI::App &command, LookOptions &look) {
  addText(command, "--color", look.color, "Attribute that the points show, such as intensity, distance or z")
      ->capture_default_str();
  addText(command, "--view", look.view, "Where the eye stands")
      ->check(CLI::IsMember(toStrings(OrbitCamera::viewNames())));
  command
      .add_option_function<std::string>(
          "--ramp",
          [&look](const std::string &name) { look.ramp = ColorRamp::find(fromArgument(name)).value_or(look.ramp); },
          "Colour ramp")
      ->check(CLI::IsMember(toStrings(ColorRamp::names())));
  command.add_option_function<std::string>(
      "--size",
      [&look](const std::string &text) {
        const std::string fault = parseSize(text, look.size);
        if (!fault.empty()) throw CLI::ValidationError("--size", fault);
      },
      "Size of a picture, WIDTHxHEIGHT (1280x720)");
  command.add_option("--point-size", look.pointPixels, "Least side of a point in pixels, 0.5 to 32 (2)")
      ->check(numberFrom(0.5, 32.0));
  command.add_flag("--split", look.splitHalf, "Colour as the right one of the window's two views does");
  command.add_flag_callback(
      "--no-grid", [&look] { look.grid = false; }, "Leave the range rings out");
}

}  // namespace tarvo::skarnvisor::app
