// The runtime on a capture of the simulator: one frame from file to source.

#include <unistd.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <thread>
#include <vector>

#include "bench/measure.h"
#include "contracts/runtime/parallel_isp_engine.h"
#include "contracts/runtime/runtime_factory.h"
#include "contracts/runtime/sv_sdk_runtime.h"
#include "runtime/decode/decode_workers.h"
#include "tools/sim/simulator.h"

namespace tarvo::skarnvisor::bench {

using lidar::SDKPointInfo;

namespace {

constexpr unsigned channels = 128;
constexpr unsigned columns = 1800;
constexpr unsigned frames = 40;

/// A capture in the folder for temporary files, gone with this object.
struct Capture {
  std::string path =
      (std::filesystem::temp_directory_path() / ("skarnvisor-bench-" + std::to_string(::getpid()) + ".pcap")).string();
  Capture() {
    lidar::sim::Options options;
    options.channels = channels;
    options.columns = columns;
    options.frames = frames;
    options.out = path;
    lidar::sim::run(options);
  }
  ~Capture() { std::filesystem::remove(path); }
};

/// Asks often, and leaves the processors to those who are asked about.
template <class Condition>
void waitUntil(const Condition &done) {
  while (!done()) std::this_thread::sleep_for(std::chrono::microseconds(20));
}

struct Player {
  Capture capture;
  QSharedPointer<lidar::SDKSource> source = createSdkSource();
  lidar::DecodeWorkers workers{lidar::DecodeWorkers::usefulParts()};
  std::vector<SDKPointInfo> first{std::size_t{channels} * columns};
  std::vector<SDKPointInfo> second = first;
  int next = 0;

  Player() {
    source->driverParam.sourceKind = static_cast<std::int32_t>(lidar::SourceKind::CaptureFile);
    source->driverParam.capturePath = capture.path;
    if (!source->runtime->Init(source->driverParam)) throw std::runtime_error(source->runtime->InitError());
    waitUntil([this] { return source->runtime->GetFrameCount() == static_cast<int>(frames); });
  }
  void decode() {
    source->runtime->Iterate(next++ % static_cast<int>(frames), 1);
    waitUntil([this] { return source->frameReady.load(); });
  }
  /// The same points copied once, by as many threads as decode.
  void copy() {
    workers.run([this](unsigned part) {
      const std::size_t begin = first.size() * part / workers.parts();
      const std::size_t count = first.size() * (part + 1) / workers.parts() - begin;
      std::memcpy(static_cast<void *>(second.data() + begin), first.data() + begin, count * sizeof(SDKPointInfo));
    });
  }
};

}  // namespace

void addDecodeMeasures(std::vector<Measure> &measures) {
  measures.push_back({"decode_frames", "230,400 points from file to source; floor: copying the decoded points", [] {
                        auto player = std::make_shared<Player>();
                        return Bodies{[player] { player->decode(); }, [player] { player->copy(); }};
                      }});
}

}  // namespace tarvo::skarnvisor::bench
