// The machine's memory as the kernel's files tell it, from a tree of such files.
#include "default/files/system_memory.h"
#include "tests/support/test_environment.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

namespace tarvo::skarnvisor::test {
namespace {

/// A folder in which `files`, by path, hold their text.
std::string treeOf(const std::map<std::string, std::string> &files) {
  static int number = 0;
  const std::string root = processFolder().toStdString() + "/kernel" + std::to_string(++number) + "/";
  std::filesystem::create_directories(root);
  for (const auto &[path, text] : files) {
    std::filesystem::create_directories(std::filesystem::path(root + path).parent_path());
    std::ofstream(root + path) << text;
  }
  return root;
}

TEST(SystemMemory, TheLowestOfMachineAndGroupsCounts) {
  const std::string meminfo = "MemTotal:       1000 kB\nMemFree: 1 kB\nMemAvailable:    600 kB\n";
  struct Case {
    const char *what;
    std::map<std::string, std::string> files;
    std::uint64_t total, available;
  };
  const Case cases[] = {
      {"nothing to read", {}, 8ULL << 30, 2ULL << 30},
      {"no group", {{"proc/meminfo", meminfo}}, 1'024'000, 614'400},
      {"version 2, the group around it is the tighter one",
       {{"proc/meminfo", meminfo},
        {"proc/self/cgroup", "0::/outer/inner\n"},
        {"sys/fs/cgroup/outer/memory.max", "500000\n"},
        {"sys/fs/cgroup/outer/memory.current", "300000\n"},
        {"sys/fs/cgroup/outer/memory.stat", "anon 5\ninactive_file 100000\n"},
        {"sys/fs/cgroup/outer/inner/memory.max", "max\n"},
        {"sys/fs/cgroup/outer/inner/memory.current", "1\n"}},
       500'000,
       300'000},
      {"version 1 beside 2, seen from inside a container",
       {{"proc/meminfo", meminfo},
        {"proc/self/cgroup", "4:cpu,memory:/docker/abc\n0::/\nodd line\n"},
        {"sys/fs/cgroup/memory/memory.limit_in_bytes", "400000\n"},
        {"sys/fs/cgroup/memory/memory.usage_in_bytes", "450000\n"},
        {"sys/fs/cgroup/memory/memory.stat", "inactive_file 7\ntotal_inactive_file 60000\n"}},
       400'000,
       10'000},
      {"version 1 without a limit",
       {{"proc/meminfo", meminfo},
        {"proc/self/cgroup", "4:memory:/\n"},
        {"sys/fs/cgroup/memory/memory.limit_in_bytes", "9223372036854771712\n"},
        {"sys/fs/cgroup/memory/memory.usage_in_bytes", "450000\n"}},
       1'024'000,
       614'400},
  };
  for (const Case &c : cases) {
    const MemoryFigures figures = systemMemory(treeOf(c.files));
    EXPECT_EQ(figures.totalBytes, c.total) << c.what;
    EXPECT_EQ(figures.availableBytes, c.available) << c.what;
  }
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
