#include "app/cli/options.h"

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "app/cli/stack_option.h"
#include "app/cli/types_command.h"

namespace tarvo::skarnvisor::app {
namespace {

QString fromArgument(const std::string &text) { return QString::fromLocal8Bit(text.c_str()); }

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

class Parser {
 public:
  Parser();
  ParsedOptions parse(int argc, const char *const *argv);

 private:
  void addFile(CLI::App &command);
  void addLook(CLI::App &command);
  void addRender();
  void addPlay();
  void addSourceCommands();
  void addConvert();
  void addTelemetry();
  void addCalibration();
  CLI::Option *addText(CLI::App &command, const char *name, QString &target, const char *help);

  CLI::App m_app{"Skarnvisor shows lidar captures as point clouds.", "skarnvisor"};
  Options m_options;
};

CLI::Option *Parser::addText(CLI::App &command, const char *name, QString &target, const char *help) {
  return command.add_option_function<std::string>(
      name, [&target](const std::string &text) { target = fromArgument(text); }, help);
}

void Parser::addFile(CLI::App &command) {
  addText(command, "file", m_options.file,
          "Capture (pcap, pcapng), folder of point files (pcd, ply, bin), one of them, or udp://[address]:port")
      ->required();
}

void Parser::addLook(CLI::App &command) {
  LookOptions &look = m_options.look;
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
  command.add_option("--point-size", look.pointPixels, "Least side of a point in pixels (2)")
      ->check(CLI::Range(0.5, 32.0));
  command.add_flag("--split", look.splitHalf, "Take the value of the split-window view");
  command.add_flag_callback(
      "--no-grid", [&look] { look.grid = false; }, "Leave the range rings out");
}

void Parser::addRender() {
  CLI::App *render = m_app.add_subcommand("render", "Draw one frame into a picture file; needs no window and no GPU");
  addFile(*render);
  addSensorPort(*render, m_options.capture);
  render->add_option("--frame", m_options.frame, "Frame, counted from 0 (0)")->check(CLI::NonNegativeNumber);
  addStackOption(*render, m_options);
  addText(*render, "--out", m_options.out, "Picture file, .png or .jpg")->required();
  addLook(*render);
  addPointOptions(*render, m_options.points);
  render->callback([this] { m_options.command = Command::Render; });
}

void Parser::addPlay() {
  CLI::App *play =
      m_app.add_subcommand("play", "Play a capture without a window and print what it held and how fast it went");
  addFile(*play);
  addSensorPort(*play, m_options.capture);
  addSeconds(*play, m_options.capture);
  play->add_flag("--soak", m_options.capture.soak,
                 "With a live source: change settings ten times a second and print a line every ten seconds");
  CLI::Option *const byTime = play->add_flag(
      "--by-time", m_options.byTime, "Follow the clock, showing what lies before the cursor, instead of every frame");
  addStackOption(*play, m_options)->excludes(byTime);
  play->add_option("--speed", m_options.speed,
                   "Times real time, 0.1 to 10; without it frames follow as fast as they come")
      ->check(CLI::Range(0.1, 10.0));
  play->add_option("--frames-limit", m_options.frameLimit, "Stop after so many frames")
      ->check(CLI::Range(1, 1'000'000'000));
  addText(*play, "--pictures", m_options.pictureFolder, "Write pictures frame-NNNN.png into this folder");
  play->add_option("--count", m_options.pictureCount, "How many pictures, spread over the capture (5)")
      ->check(CLI::Range(1, 10000));
  addText(*play, "--summary", m_options.summaryFile, "Write what was found to this file");
  addLook(*play);
  addPointOptions(*play, m_options.points);
  play->callback([this] { m_options.command = Command::Play; });
}

void Parser::addConvert() {
  CLI::App *convert =
      m_app.add_subcommand("convert", "Write the point files of a folder in another format, on all cores");
  addText(*convert, "file", m_options.file, "Folder of point files (pcd, ply, bin), or one of them")->required();
  addText(*convert, "--to", m_options.targetFormat, "Format to write")
      ->required()
      ->check(CLI::IsMember({"bin", "pcd", "csv"}));
  addText(*convert, "--out", m_options.out, "Folder to write to")->required();
  convert->callback([this] { m_options.command = Command::Convert; });
}

void Parser::addTelemetry() {
  CLI::App *telemetry = m_app.add_subcommand("telemetry", "Print what the lidar says of itself at one frame");
  addFile(*telemetry);
  addSensorPort(*telemetry, m_options.capture);
  telemetry->add_option("--frame", m_options.frame, "Frame, counted from 0 (0)")->check(CLI::NonNegativeNumber);
  addText(*telemetry, "--csv", m_options.csvFile, "Write the monitor table to this file too");
  telemetry->callback([this] { m_options.command = Command::Telemetry; });
}

void Parser::addCalibration() {
  CLI::App *calibration = m_app.add_subcommand(
      "calibration", "List, write out or take in the calibration files of a capture and its lidar type");
  addFile(*calibration);
  addSensorPort(*calibration, m_options.capture);
  addCalibrationOptions(*calibration, m_options.calibration);
  calibration->callback([this] { m_options.command = Command::Calibration; });
}

void Parser::addSourceCommands() {
  CLI::App *cut = m_app.add_subcommand("cut", "Write a part of a capture to a capture of its own");
  addText(*cut, "file", m_options.file, "Capture (pcap, pcapng)")->required();
  addText(*cut, "--out", m_options.out, "Capture to write")->required();
  addCutOptions(*cut, m_options.capture);
  cut->callback([this] { m_options.command = Command::Cut; });
  CLI::App *record = m_app.add_subcommand("record", "Write what a lidar sends to a capture");
  addText(*record, "--out", m_options.out, "Capture to write")->required();
  addRecordOptions(*record, m_options.capture);
  record->callback([this] { m_options.command = Command::Record; });
}

Parser::Parser() {
  m_app.require_subcommand(0, 1);
  m_app.fallthrough();
  addText(m_app, "--plugin", m_options.plugin, "Plug-in library (the one beside the program)");
  m_app.add_flag("-v,--verbose", m_options.verbose, "Print the log to standard error");

  CLI::App *info = m_app.add_subcommand("info", "Print lidar type, port, channels, frames, points, times and size");
  addFile(*info);
  addSensorPort(*info, m_options.capture);
  info->callback([this] { m_options.command = Command::Info; });
  addRender();
  addPlay();
  addSourceCommands();
  addConvert();
  addTelemetry();
  addTypesCommand(m_app, m_options);
  addCalibration();
  addExportCommand(m_app, m_options);
  CLI::App *view = m_app.add_subcommand("view", "Open the window (as does no command)");
  addText(*view, "file", m_options.file, "Capture (pcap, pcapng)");
  addText(*view, "--shot", m_options.shotFile, "Save a picture of the window with the first frame on it, and end");
}

ParsedOptions Parser::parse(int argc, const char *const *argv) {
  ParsedOptions result;
  try {
    m_app.parse(argc, argv);
    result.proceed = true;
    result.options = m_options;
  } catch (const CLI::ParseError &error) {
    result.exitCode = m_app.exit(error);
  }
  return result;
}

}  // namespace

ParsedOptions parseOptions(int argc, const char *const *argv) { return Parser().parse(argc, argv); }

}  // namespace tarvo::skarnvisor::app
