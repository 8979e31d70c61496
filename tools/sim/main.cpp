#include <cstdio>
#include <exception>

#include "tools/sim/scene.h"
#include "tools/sim/simulator.h"

int main(int argc, char **argv) {
  using namespace tarvo::lidar::sim;
  Options options;
  const ParseOutcome outcome = parseOptions(argc, argv, options);
  if (!outcome.proceed) return outcome.exitCode;
  if (options.listScenes) {
    for (const SceneInfo &scene : scenes())
      std::printf("%-8.*s %.*s\n", static_cast<int>(scene.name.size()), scene.name.data(),
                  static_cast<int>(scene.summary.size()), scene.summary.data());
    return 0;
  }
  try {
    run(options);
  } catch (const std::exception &error) {
    std::fprintf(stderr, "skarnvisor-sim: %s\n", error.what());
    return 1;
  }
  return 0;
}
