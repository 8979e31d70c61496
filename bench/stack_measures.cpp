// A stack of frames: one group into a full ring, the sizing of a ring, and the memory of one.

#include <unistd.h>

#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "bench/measure.h"
#include "contracts/runtime/runtime_factory.h"
#include "contracts/runtime/sv_sdk_runtime.h"
#include "default/pipeline/default_sdk_parser.h"
#include "tools/sim/simulator.h"

namespace tarvo::skarnvisor::bench {

namespace {

constexpr unsigned channels = 128;
constexpr unsigned columns = 600;
constexpr int framePoints = static_cast<int>(channels * columns);
constexpr int deepest = 150;
constexpr int group = StackLimits::groupFrames;

template <class Condition>
void waitUntil(const Condition &done) {
  while (!done()) {
    QCoreApplication::processEvents();
    std::this_thread::yield();
  }
}

/// What the queued results of an allocation need.
void makeEventLoop() {
  static int count = 1;
  static char name[] = "skarnvisor-bench";
  static char *arguments[] = {name, nullptr};
  if (QCoreApplication::instance() == nullptr) static QCoreApplication application(count, arguments);
}

/// A parser before a source that holds one group of frames, from a capture of the simulator.
struct Pipeline {
  QSharedPointer<lidar::SDKSource> source = createSdkSource();
  DefaultSDKParser parser;
  DefaultSDKFrameRenderBuffer &buffer = *parser.defaultSDKFrameBuffer();

  Pipeline() {
    makeEventLoop();
    lidar::sim::Options options;
    options.channels = channels;
    options.columns = columns;
    options.frames = group;
    options.out =
        (std::filesystem::temp_directory_path() / ("skarnvisor-stack-" + std::to_string(::getpid()) + ".pcap"))
            .string();
    lidar::sim::run(options);
    source->driverParam.sourceKind = static_cast<std::int32_t>(lidar::SourceKind::CaptureFile);
    source->driverParam.capturePath = options.out;
    if (!source->runtime->Init(source->driverParam)) throw std::runtime_error(source->runtime->InitError());
    waitUntil([this] { return source->runtime->GetFrameCount() == group; });
    std::filesystem::remove(options.out);
    buffer.setSource(source.data());
    buffer.setLidarType(source->runtime->GetLidarType());
  }
  void decodeGroup() {
    source->runtime->Iterate(0, group);
    waitUntil([this] { return source->frameReady.load(); });
  }
  void stack(int frames) {
    if (!buffer.setFrameNumber(frames)) throw std::runtime_error("no memory for the stack of the measure");
    waitUntil([this] { return !buffer.flow().frameAllocationBusy; });
  }
  void fill(int frames) {
    for (int entered = 0; entered <= frames; entered += group) parser();
  }
};

double milliseconds(std::chrono::steady_clock::time_point since) {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - since).count();
}

double median(std::vector<double> times) {
  std::ranges::nth_element(times, times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2));
  return times[times.size() / 2];
}

/// The same bytes are zeroed in memory that is at hand, without a page to fetch: the least that sizing could cost
/// if it touched them.
bool measureSizing() {
  constexpr int repetitions = 11;
  Pipeline pipeline;
  pipeline.decodeGroup();
  pipeline.parser();
  const std::size_t bytes = std::size_t{deepest} * framePoints * StackLimits::pointBytes;
  std::vector<char> floorBytes(bytes, 1);
  std::vector<double> accepted, published, floor, firstLap, laterLap;
  for (int i = 0; i < repetitions; ++i) {
    pipeline.stack(1);
    auto begin = std::chrono::steady_clock::now();
    std::memset(floorBytes.data(), i, bytes);
    floor.push_back(milliseconds(begin));
    begin = std::chrono::steady_clock::now();
    const bool taken = pipeline.buffer.setFrameNumber(deepest);
    accepted.push_back(milliseconds(begin));
    waitUntil([&] { return !pipeline.buffer.flow().frameAllocationBusy; });
    published.push_back(milliseconds(begin));
    if (!taken || pipeline.buffer.frameNumber() != deepest) return false;
    for (auto *laps : {&firstLap, &laterLap}) {
      begin = std::chrono::steady_clock::now();
      pipeline.fill(deepest - 1);
      laps->push_back(milliseconds(begin) / (deepest / group));
    }
  }
  std::printf(
      "%-26s %10.3f ms %10.3f %6.2f  %d frames of %d points, %.0f MB; the caller waits %.3f ms (at most %.3f); "
      "a group of the first lap, into pages not yet there, %.2f ms, of a later one %.2f ms\n",
      "set_frame_number_150", median(published), median(floor), median(floor) / median(published), deepest, framePoints,
      static_cast<double>(bytes) / 1e6, median(accepted), *std::ranges::max_element(accepted), median(firstLap),
      median(laterLap));
  return true;
}

double residentBytes() {
  std::ifstream file("/proc/self/statm");
  double total = 0.0, resident = 0.0;
  file >> total >> resident;
  return resident * static_cast<double>(::sysconf(_SC_PAGESIZE));
}

/// What the process grows by from a group of frames in one picture to a full ring of such groups.
bool measureMemory() {
  for (const int frames : {20, 150, 300}) {
    Pipeline pipeline;
    pipeline.buffer.setInternalCacheFlag(false);
    pipeline.stack(group);
    pipeline.decodeGroup();
    pipeline.fill(group);
    pipeline.buffer.setInternalCacheFlag(true);
    const double before = residentBytes();
    pipeline.stack(frames);
    // Groups of ten frames hold the five that the source has: what they would write more is reckoned, not measured.
    pipeline.fill(frames);
    const double points = static_cast<double>(frames / pipeline.buffer.ring().framesPerCanvas) * group * framePoints;
    const double sized = static_cast<double>(frames) * framePoints;
    const double held = static_cast<double>(pipeline.buffer.picture().held().bytes);
    std::printf("%-26s %10.2f bytes a point sized, %.2f resident: %d frames, %.2f million points written; reach %.1f\n",
                ("stack_memory_" + std::to_string(frames)).c_str(), held / sized, (residentBytes() - before) / points,
                frames, points / 1e6, 1.05 * StackLimits::pointBytes);
  }
  return true;
}

}  // namespace

void addStackMeasures(std::vector<Measure> &measures) {
  measures.push_back({"stack_step", "384,000 points into a full ring of 150 frames; floor: their parse alone", [] {
                        const auto ringed = std::make_shared<Pipeline>();
                        ringed->stack(deepest);
                        ringed->decodeGroup();
                        ringed->fill(2 * deepest);
                        const auto alone = std::make_shared<Pipeline>();
                        alone->buffer.setInternalCacheFlag(false);
                        alone->stack(group);
                        alone->decodeGroup();
                        alone->fill(group);
                        return Bodies{[ringed] { ringed->parser(); }, [alone] { alone->parser(); }};
                      }});
  measures.push_back({"set_frame_number_150", "", {}, measureSizing});
  measures.push_back({"stack_memory", "", {}, measureMemory});
}

}  // namespace tarvo::skarnvisor::bench
