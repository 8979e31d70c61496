// skarnvisor-bench [filter]: measures whose name holds `filter`, each beside its floor.
//
// A line reads: name, our time, its unit, the floor's time, floor / ours (1 is at the floor), working set.
// Times are medians of repetitions that alternate between the two, so that a slow moment of the machine
// meets both.

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/measure.h"

namespace {

using tarvo::skarnvisor::bench::Measure;

constexpr int repetitions = 11;
constexpr const char *oursSuffix = "/ours";
constexpr const char *floorSuffix = "/floor";

/// Keeps the time of each repetition, in milliseconds, by benchmark name.
class MedianReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context &) override { return true; }

  void ReportRuns(const std::vector<Run> &runs) override {
    for (const Run &run : runs) {
      if (run.run_type == Run::RT_Iteration) {
        m_times[run.run_name.function_name].push_back(run.GetAdjustedRealTime());
      }
    }
  }

  [[nodiscard]] double median(const std::string &name) {
    auto &times = m_times[name];
    if (times.empty()) {
      return 0.0;
    }
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
  }

 private:
  std::map<std::string, std::vector<double>> m_times;
};

void registerBody(const std::string &name, std::function<void()> body) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [body = std::move(body)](benchmark::State &state) {
                                 for (auto _ : state) {
                                   body();
                                   benchmark::ClobberMemory();
                                 }
                               })
      ->UseRealTime()
      ->Unit(benchmark::kMillisecond)
      ->Repetitions(repetitions)
      ->MinTime(0.05);
}

/// Runs one measure and prints its line. False when it gave no times.
bool runMeasure(const Measure &measure) {
  if (measure.run) {
    return measure.run();
  }
  auto bodies = measure.prepare();
  registerBody(measure.name + oursSuffix, std::move(bodies.ours));
  registerBody(measure.name + floorSuffix, std::move(bodies.floor));
  MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter, "^" + measure.name + "/");
  const double ours = reporter.median(measure.name + oursSuffix);
  const double floor = reporter.median(measure.name + floorSuffix);
  benchmark::ClearRegisteredBenchmarks();  // frees the data of this measure
  if (!(ours > 0.0 && floor > 0.0)) {
    std::fprintf(stderr, "%s: no times\n", measure.name.c_str());
    return false;
  }
  std::printf("%-26s %10.3f ms %10.3f %6.2f  %s\n", measure.name.c_str(), ours, floor, floor / ours,
              measure.workingSet.c_str());
  std::fflush(stdout);
  return true;
}

}  // namespace

int main(int argc, char **argv) {
  std::vector<char *> arguments{argv[0], const_cast<char *>("--benchmark_enable_random_interleaving=true")};
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());

  std::vector<Measure> measures;
  tarvo::skarnvisor::bench::addFrameMeasures(measures);
  tarvo::skarnvisor::bench::addPointMeasures(measures);
  tarvo::skarnvisor::bench::addDecodeMeasures(measures);
  tarvo::skarnvisor::bench::addFilterMeasures(measures);
  tarvo::skarnvisor::bench::addCaptureMeasures(measures);
  tarvo::skarnvisor::bench::addStackMeasures(measures);
  tarvo::skarnvisor::bench::addProgramMeasures(measures);
  tarvo::skarnvisor::bench::addPointFileMeasures(measures);
  tarvo::skarnvisor::bench::addExportMeasures(measures);
  tarvo::skarnvisor::bench::addTelemetryMeasures(measures);
  tarvo::skarnvisor::bench::addUploadMeasures(measures);

  const std::string filter = argc > 1 ? argv[1] : "";
  std::erase_if(measures, [&filter](const Measure &measure) { return measure.name.find(filter) == std::string::npos; });
  if (measures.empty()) {
    std::fprintf(stderr, "no measure's name holds \"%s\"\n", filter.c_str());
    return 1;
  }
  return std::ranges::all_of(measures, runMeasure) ? 0 : 1;
}
