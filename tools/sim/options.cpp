#include "tools/sim/options.h"

#include <CLI/CLI.hpp>
#include <cmath>

#include "tools/sim/scene.h"

namespace tarvo::lidar::sim {
namespace {

void splitEndpoint(const std::string &endpoint, Options &options) {
  const auto colon = endpoint.rfind(':');
  if (colon == std::string::npos || colon == 0)
    throw CLI::ValidationError("--stream", "expects host:port, not \"" + endpoint + "\"");
  std::size_t used = 0;
  unsigned long port = 0;
  try {
    port = std::stoul(endpoint.substr(colon + 1), &used);
  } catch (const std::exception &) {
    used = 0;
  }
  if (used == 0 || used != endpoint.size() - colon - 1 || port == 0 || port > 65535)
    throw CLI::ValidationError("--stream", "has no port from 1 to 65535 in \"" + endpoint + "\"");
  options.streamHost = endpoint.substr(0, colon);
  if (options.streamHost.size() > 2 && options.streamHost.front() == '[' && options.streamHost.back() == ']')
    options.streamHost = options.streamHost.substr(1, options.streamHost.size() - 2);  // IPv6
  options.streamPort = static_cast<unsigned>(port);
}

void checkTogether(const Options &options) {
  if (options.listScenes) return;
  if (options.out.empty() && options.streamHost.empty() && options.correctionsOut.empty())
    throw CLI::RequiredError("one of --out, --stream and --corrections-out");
  if (!options.out.empty() && !options.streamHost.empty())
    throw CLI::ValidationError("--stream", "and --out exclude each other");
  if (options.frameCount() == 0 && options.streamHost.empty())
    throw CLI::ValidationError("--seconds", "must hold at least one frame");
}

/// Answers whose text is turned into a value after the parse.
struct Texts {
  std::string calibration = "inside";
  std::string format = "pcap";
  std::string endpoint;
};

void addSensorOptions(CLI::App &app, Options &options) {
  app.add_option("--type", options.type, "Lidar type string")
      ->capture_default_str()
      ->check([](const std::string &text) {
        return text.empty() || text.size() > 63 ? std::string("a type has 1 to 63 characters") : std::string();
      });
  app.add_option("--channels", options.channels)->capture_default_str()->check(CLI::Range(1u, 2048u));
  app.add_option("--columns", options.columns, "Firing positions a frame")
      ->capture_default_str()
      ->check(CLI::Range(1u, 20000u));
  app.add_option("--rate", options.rateHz, "Frames a second")->capture_default_str()->check(CLI::Range(0.1, 100.0));
  app.add_option("--noise", options.noiseMetres, "Deviation of the distance, m")
      ->capture_default_str()
      ->check(CLI::Range(0.0, 1.0));
  app.add_option("--echoes", options.echoes, "Returns a column")->capture_default_str()->check(CLI::Range(1u, 2u));
  app.add_option("--return-mode", options.returnMode, "Code of the return mode; 0: by the number of echoes")
      ->capture_default_str()
      ->check(CLI::Range(0u, 255u));
  app.add_option("--fov", options.fieldOfViewDeg, "Horizontal field of view, degrees; 0: by the type")
      ->capture_default_str()
      ->check(CLI::Range(0.0, 360.0));
  app.add_option("--sensor", options.sensorId, "Sensor id")->capture_default_str()->check(CLI::Range(0u, 65535u));
}

void addSceneOptions(CLI::App &app, Options &options) {
  std::vector<std::string> names;
  for (const SceneInfo &scene : scenes()) names.emplace_back(scene.name);
  auto *frames = app.add_option("--frames", options.frames, "Number of frames")->check(CLI::Range(1u, 1000000u));
  app.add_option("--seconds", options.seconds, "Length; 0 with --stream: until interrupted")
      ->capture_default_str()
      ->check(CLI::Range(0.0, 100000.0))
      ->excludes(frames);
  app.add_option("--scene", options.scene)->capture_default_str()->check(CLI::IsMember(names));
  app.add_flag("--list-scenes", options.listScenes, "Print the scenes and end");
  app.add_option("--seed", options.seed)->capture_default_str();
  app.add_option("--speed", options.speed, "Speed of the vehicle, m/s")
      ->capture_default_str()
      ->check(CLI::Range(0.0, 60.0));
  app.add_option("--threads", options.threads, "0: one for each processor")
      ->capture_default_str()
      ->check(CLI::Range(0u, 256u));
}

void addContentOptions(CLI::App &app, Options &options, Texts &texts) {
  app.add_flag("--telemetry", options.telemetry, "Add device-status blocks");
  app.add_option_function<unsigned>(
         "--variant", [&options](unsigned variant) { options.variant = static_cast<std::uint8_t>(variant); },
         "Variant of the boards in the status blocks (0)")
      ->check(CLI::Range(0u, 255u));
  app.add_flag("--faults", options.faults, "Add fault packets");
  app.add_flag("--imu", options.imu, "Add IMU samples and vehicle motion");
  app.add_flag("--overlay", options.overlay, "Add a camera picture");
  app.add_option("--calibration", texts.calibration, "Whether the capture carries its corrections")
      ->capture_default_str()
      ->check(CLI::IsMember({"inside", "none"}));
  app.add_option("--loss", options.loss, "Share of packets lost")->capture_default_str()->check(CLI::Range(0.0, 1.0));
  app.add_option("--reorder", options.reorder, "Share of packets out of order")
      ->capture_default_str()
      ->check(CLI::Range(0.0, 1.0));
}

void addTargetOptions(CLI::App &app, Options &options, Texts &texts) {
  app.add_option("--port", options.port, "UDP port in the capture")
      ->capture_default_str()
      ->check(CLI::Range(1u, 65535u));
  app.add_option("--out", options.out, "Capture file to write");
  app.add_option("--format", texts.format, "pcap has nanosecond stamps, pcap-us microseconds")
      ->capture_default_str()
      ->check(CLI::IsMember({"pcap", "pcap-us", "pcapng"}));
  app.add_option("--stream", texts.endpoint, "Send in real time to host:port");
  app.add_option("--corrections-out", options.correctionsOut, "Write the lidar's corrections to this CSV file");
}

}  // namespace

unsigned Options::frameCount() const noexcept {
  return frames != 0 ? frames : static_cast<unsigned>(std::lround(seconds * rateHz));
}

ParseOutcome parseOptions(int argc, const char *const *argv, Options &options) {
  CLI::App app("Writes lidar captures, or streams them over UDP, from scenes that it makes up.", "skarnvisor-sim");
  Texts texts;
  addSensorOptions(app, options);
  addSceneOptions(app, options);
  addContentOptions(app, options, texts);
  addTargetOptions(app, options, texts);
  try {
    app.parse(argc, argv);
    options.calibrationInside = texts.calibration == "inside";
    options.form = texts.format == "pcapng"    ? CaptureForm::PcapNg
                   : texts.format == "pcap-us" ? CaptureForm::PcapMicroseconds
                                               : CaptureForm::Pcap;
    if (!texts.endpoint.empty()) splitEndpoint(texts.endpoint, options);
    checkTogether(options);
  } catch (const CLI::ParseError &error) {
    return {false, app.exit(error)};
  }
  return {true, 0};
}

}  // namespace tarvo::lidar::sim
