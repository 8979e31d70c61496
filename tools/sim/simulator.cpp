#include "tools/sim/simulator.h"

#include <chrono>
#include <cmath>
#include <future>
#include <stdexcept>
#include <thread>

#include "tools/sim/capture_file.h"
#include "tools/sim/frame_encoder.h"
#include "tools/sim/rough_line.h"
#include "tools/sim/udp_stream.h"

namespace tarvo::lidar::sim {
namespace {

std::unique_ptr<Scene> makeScene(const Options &options) {
  for (const SceneInfo &scene : scenes())
    if (scene.name == options.scene) return scene.make(options.seed);
  throw std::runtime_error("no scene is called " + options.scene);
}

std::uint64_t nowNs() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

}  // namespace

void simulate(const Options &options, PacketSink &sink, std::uint64_t startNs) {
  const auto scene = makeScene(options);
  const Sensor sensor(options);
  RoughLine line(sink, options.loss, options.reorder, options.seed);
  FrameEncoder encoder(options, sensor, line);
  const unsigned threads = options.threads != 0 ? options.threads : std::max(1u, std::thread::hardware_concurrency());
  const unsigned frames = options.frameCount();
  const auto look = [&](std::uint32_t frame) {
    return std::async(std::launch::async, [&, frame] { return lookAround(*scene, sensor, options, frame, threads); });
  };
  auto next = look(0);
  for (std::uint32_t frame = 0; frames == 0 || frame < frames; ++frame) {
    const FrameContent content = next.get();
    if (frames == 0 || frame + 1 < frames)
      next = look(frame + 1);  // the next frame is cast while this one is packed or sent
    encoder.encode(frame, startNs + static_cast<std::uint64_t>(std::llround(frame * 1e9 / options.rateHz)), content);
  }
  line.finish();
}

void run(const Options &options) {
  if (!options.correctionsOut.empty()) writeTextFile(options.correctionsOut, Sensor(options).correctionsCsv());
  if (!options.out.empty()) {
    CaptureFile file(options.out, options.form, static_cast<std::uint16_t>(options.port),
                     static_cast<std::uint16_t>(options.sensorId));
    simulate(options, file, captureStartNs);
  } else if (!options.streamHost.empty()) {
    UdpStream stream(options.streamHost, options.streamPort);
    simulate(options, stream, nowNs());
  }
}

}  // namespace tarvo::lidar::sim
