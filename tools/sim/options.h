#pragma once

#include <string>

#include "runtime/wire/format.h"

namespace tarvo::lidar::sim {

enum class CaptureForm : std::uint8_t { Pcap, PcapMicroseconds, PcapNg };

/// What the user asks for.
struct Options {
  std::string type = "KR2";
  unsigned channels = 64;
  unsigned columns = 900;
  double rateHz = 10.0;
  unsigned frames = 0;    ///< 0: as many as `seconds` hold
  double seconds = 10.0;  ///< 0 with a stream: until interrupted
  std::string scene = "street";
  double noiseMetres = 0.012;
  std::uint64_t seed = 1;
  unsigned returnMode = 0;  ///< 0: strongest for one echo, last and strongest for two
  unsigned echoes = 1;
  double fieldOfViewDeg = 0;  ///< horizontal; 0: as the type has it
  double speed = 0;           ///< of the vehicle, m/s
  bool telemetry = false;
  std::uint8_t variant = 0;  ///< of the boards, as the status block tells it
  bool faults = false;
  bool imu = false;
  bool overlay = false;
  bool calibrationInside = true;
  double loss = 0;     ///< share of packets left out, 0 to 1
  double reorder = 0;  ///< share of packets that arrive after their successor
  unsigned port = wire::defaultPort;
  unsigned sensorId = 1;
  unsigned threads = 0;  ///< 0: one for each processor
  std::string out;       ///< capture file
  CaptureForm form = CaptureForm::Pcap;
  std::string streamHost;  ///< empty: no stream
  unsigned streamPort = 0;
  std::string correctionsOut;  ///< where to write the lidar's corrections as a file of their own
  bool listScenes = false;

  /// Frames to make; 0: without end.
  [[nodiscard]] unsigned frameCount() const noexcept;
};

/// What `parseOptions` found: go on, or end at once with this code (help was printed, or one message of what is wrong).
struct ParseOutcome {
  bool proceed = false;
  int exitCode = 0;
};

[[nodiscard]] ParseOutcome parseOptions(int argc, const char *const *argv, Options &options);

}  // namespace tarvo::lidar::sim
