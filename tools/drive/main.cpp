// Drives the real window, on a display of its own, for what is no test: the manual's pictures, soaks and measures. Each
// is a fixture of the window's tests, which a command chooses by its name.
#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <QApplication>
#include <QDir>
#include <cstdio>
#include <string>

#include "tests/window/stage.h"
#include "tools/drive/options.h"

int main(int argc, char **argv) {
  using namespace tarvo::skarnvisor;
  drive::Options &options = drive::options();
  std::string folder;
  std::string filter;

  CLI::App line("Drives Skarnvisor's window for pictures, soaks and measures", "skarnvisor-drive");
  line.require_subcommand(1);
  CLI::App &pictures = *line.add_subcommand("pictures", "Take the manual's pictures");
  pictures.add_option("FOLDER", folder, "Where they go")->required()->check(CLI::ExistingDirectory);
  pictures.callback([&filter] { filter = "ManualPictures.*"; });

  CLI::App &walk = *line.add_subcommand("walk", "Press and click at random; fail on a hang or a complaint");
  walk.add_option("--seconds", options.seconds, "How long")->capture_default_str()->check(CLI::PositiveNumber);
  walk.add_option("--seed", options.seed, "Another one is another walk")->capture_default_str();
  walk.callback([&filter] { filter = "RandomWalk.*"; });

  CLI::App &reopen =
      *line.add_subcommand("reopen", "Open and close a capture; fail on threads and handles left behind");
  reopen.add_option("--rounds", options.rounds, "How often")->capture_default_str()->check(CLI::PositiveNumber);
  reopen.callback([&filter] { filter = "Reopening.*"; });

  std::string only;
  CLI::App &measure = *line.add_subcommand("measure", "Print how long the window is held at a time, and its memory");
  measure.add_option("--seconds", options.seconds, "Of play, each time")
      ->capture_default_str()
      ->check(CLI::PositiveNumber);
  measure.add_option("--only", only, "Only the measures whose name holds this: Frames, Table, Stack");
  measure.callback([&filter, &only] { filter = "Responsiveness.*" + only + "*"; });
  CLI11_PARSE(line, argc, argv);

  options.pictureFolder = QDir(QString::fromLocal8Bit(folder.c_str())).absolutePath();
  testing::GTEST_FLAG(filter) = filter;
  testing::GTEST_FLAG(brief) = true;
  testing::InitGoogleTest();
  const test::Stage stage;
  if (!stage.isReady()) return 1;
  QApplication application(argc, argv);
  const int failed = RUN_ALL_TESTS();
  if (testing::UnitTest::GetInstance()->test_to_run_count() > 0) return failed;
  std::fprintf(stderr, "no measure's name holds \"%s\"\n", only.c_str());
  return 1;
}
