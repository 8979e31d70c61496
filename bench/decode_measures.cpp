// The runtime on a capture of the simulator: one frame from file to source, and the index pass over the whole file.

#include <fcntl.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

#include "bench/measure.h"
#include "contracts/runtime/parallel_isp_engine.h"
#include "contracts/runtime/runtime_factory.h"
#include "contracts/runtime/sv_sdk_runtime.h"
#include "runtime/capture/capture_source.h"
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

template <class Condition>
void waitUntil(const Condition &done) {
  while (!done()) std::this_thread::yield();
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
  /// What no decode can do without: each record written once in the frame and once in the source.
  void writeTwice() {
    workers.run([this](unsigned part) {
      const std::size_t begin = first.size() * part / workers.parts();
      const std::size_t count = first.size() * (part + 1) / workers.parts() - begin;
      std::memset(static_cast<void *>(first.data() + begin), next, count * sizeof(SDKPointInfo));
      std::memcpy(static_cast<void *>(second.data() + begin), first.data() + begin, count * sizeof(SDKPointInfo));
    });
    ++next;
  }
};

struct EndOfIndex : lidar::FrameSourceListener {
  std::atomic<bool> over{false};
  void described(const lidar::StreamDescription &, const lidar::PacketDecoder &, int) override {}
  void calibrationFound(const lidar::CalibrationBlob &) override {}
  void framesGrew() override {}
  void failed(const std::string &) override { over = true; }
  void finished() override { over = true; }
};

void indexOnce(const std::string &path) {
  EndOfIndex end;
  lidar::CaptureSource source(path, 0, end);
  source.start();
  waitUntil([&] { return end.over.load(); });
}

void readOnce(const std::string &path) {
  std::vector<char> window(1u << 20);
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  while (::read(file, window.data(), window.size()) > 0) {
  }
  ::close(file);
}

}  // namespace

void addDecodeMeasures(std::vector<Measure> &measures) {
  measures.push_back({"decode_frame", "230,400 points from file to source; floor: each record written twice", [] {
                        auto player = std::make_shared<Player>();
                        return Bodies{[player] { player->decode(); }, [player] { player->writeTwice(); }};
                      }});
  measures.push_back({"index_capture", "40 frames of 230,400 points; floor: reading the file", [] {
                        auto capture = std::make_shared<Capture>();
                        return Bodies{[capture] { indexOnce(capture->path); }, [capture] { readOnce(capture->path); }};
                      }});
}

}  // namespace tarvo::skarnvisor::bench
