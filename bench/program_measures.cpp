// The program as its user starts it: a process of its own, measured from outside.

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/measure.h"
#include "tools/sim/simulator.h"

namespace tarvo::skarnvisor::bench {

namespace {

constexpr unsigned channels = 128;
constexpr double framesPerSecond = 10.0;

/// A capture in memory where there is room for it, gone with this object.
struct Capture {
  std::string path;
  Capture(unsigned columns, unsigned frames) {
    const std::filesystem::path shared = "/dev/shm";
    const auto folder = std::filesystem::exists(shared) && std::filesystem::space(shared).available > 2'000'000'000
                            ? shared
                            : std::filesystem::temp_directory_path();
    path = (folder / ("skarnvisor-play-" + std::to_string(::getpid()) + ".pcap")).string();
    lidar::sim::Options options;
    options.channels = channels;
    options.columns = columns;
    options.frames = frames;
    options.rateHz = framesPerSecond;
    options.out = path;
    lidar::sim::run(options);
  }
  ~Capture() { std::filesystem::remove(path); }
};

struct Run {
  double seconds = 0;  // of the process, its start and end included
  double memoryMiB = 0;
  double processorSeconds = 0;
  bool good = false;
};

/// `skarnvisor play`, which shows every frame as fast as it can.
Run play(const std::string &capture) {
  const std::string program = (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "skarnvisor").string();
  std::array<char *, 4> arguments{const_cast<char *>(program.c_str()), const_cast<char *>("play"),
                                  const_cast<char *>(capture.c_str()), nullptr};
  posix_spawn_file_actions_t silent;
  ::posix_spawn_file_actions_init(&silent);
  for (const int output : {STDOUT_FILENO, STDERR_FILENO})
    ::posix_spawn_file_actions_addopen(&silent, output, "/dev/null", O_WRONLY, 0);
  Run run;
  const auto start = std::chrono::steady_clock::now();
  pid_t child = 0;
  const bool begun = ::posix_spawn(&child, program.c_str(), &silent, nullptr, arguments.data(), environ) == 0;
  ::posix_spawn_file_actions_destroy(&silent);
  int status = -1;
  rusage usage{};
  if (!begun || ::wait4(child, &status, 0, &usage) != child || status != 0) return run;
  run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  run.memoryMiB = static_cast<double>(usage.ru_maxrss) / 1024;
  run.processorSeconds = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                         static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) * 1e-6;
  run.good = true;
  return run;
}

bool playEndToEnd() {
  constexpr unsigned columns = 1800;
  constexpr unsigned frames = 400;
  constexpr std::size_t runs = 5;
  const Capture capture(columns, frames);
  std::vector<Run> all;
  for (std::size_t i = 0; i < runs; ++i) all.push_back(play(capture.path));
  if (!std::all_of(all.begin(), all.end(), [](const Run &run) { return run.good; })) return false;
  std::sort(all.begin(), all.end(), [](const Run &a, const Run &b) { return a.seconds < b.seconds; });
  const Run &median = all[runs / 2];
  constexpr double captureSeconds = frames / framesPerSecond;
  std::printf(
      "%-26s %10.2f times real time (best %.2f), one process of %.2f processor seconds, %.0f MiB; %u frames of "
      "%u points, program start and index included\n",
      "play_end_to_end", captureSeconds / median.seconds, captureSeconds / all.front().seconds, median.processorSeconds,
      median.memoryMiB, frames, channels * columns);
  return true;
}

/// What a frame adds to the program, over small and large frames.
bool frameMemory() {
  constexpr double bytesPerMiB = 1 << 20;
  constexpr double programMiB = 96;
  for (const unsigned columns : {1800U, 18'000U}) {
    const Capture capture(columns, 6);
    const Run run = play(capture.path);
    if (!run.good) return false;
    const double points = static_cast<double>(channels) * columns;
    std::printf("%-26s %10.0f MiB for a frame of %.0f points: %.0f bytes a point beside %.0f MiB\n", "frame_memory",
                run.memoryMiB, points, (run.memoryMiB - programMiB) * bytesPerMiB / points, programMiB);
  }
  return true;
}

}  // namespace

void addProgramMeasures(std::vector<Measure> &measures) {
  measures.push_back({"play_end_to_end", "", {}, playEndToEnd});
  measures.push_back({"frame_memory", "", {}, frameMemory});
}

}  // namespace tarvo::skarnvisor::bench
