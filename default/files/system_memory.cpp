#include "default/files/system_memory.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <optional>
#include <sstream>
#include <string_view>
#include <vector>

namespace tarvo::skarnvisor {

namespace {

constexpr std::uint64_t gib = std::uint64_t{1} << 30;
constexpr std::uint64_t assumedTotal = 8 * gib;
constexpr std::uint64_t assumedAvailable = 2 * gib;

std::string readText(const std::string &path) {
  std::ifstream file(path);
  std::ostringstream text;
  if (file) text << file.rdbuf();
  return std::move(text).str();
}

/// The number that `text` begins with; none for "max" and for an empty file.
std::optional<std::uint64_t> leadingNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t:"), text.size()));
  std::uint64_t number = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
  return fault == std::errc() ? std::optional(number) : std::nullopt;
}

std::optional<std::uint64_t> numberIn(const std::string &path) { return leadingNumber(readText(path)); }

/// The number behind `name` at the begin of a line.
std::optional<std::uint64_t> numberAfter(std::string_view text, std::string_view name) {
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    if (line.substr(0, name.size()) == name) return leadingNumber(line.substr(name.size()));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
  }
  return std::nullopt;
}

/// Where the memory files of a version of control groups lie, and what they are called.
struct GroupFiles {
  const char *mount;
  const char *limit;
  const char *usage;
  const char *idlePages;  ///< entry of memory.stat, of the group and those below it
};
constexpr GroupFiles versionOne{"sys/fs/cgroup/memory", "memory.limit_in_bytes", "memory.usage_in_bytes",
                                "total_inactive_file "};
constexpr GroupFiles versionTwo{"sys/fs/cgroup", "memory.max", "memory.current", "inactive_file "};
constexpr GroupFiles versionTwoBesideOne{"sys/fs/cgroup/unified", "memory.max", "memory.current", "inactive_file "};

/// Lowers `figures` to what the group at `folder` allows.
void confine(MemoryFigures &figures, const GroupFiles &files, const std::string &folder) {
  const auto limit = numberIn(folder + '/' + files.limit);
  const auto usage = numberIn(folder + '/' + files.usage);
  if (!limit || !usage) return;
  const std::uint64_t idle = numberAfter(readText(folder + "/memory.stat"), files.idlePages).value_or(0);
  const std::uint64_t busy = *usage - std::min(idle, *usage);
  figures.totalBytes = std::min(figures.totalBytes, *limit);
  figures.availableBytes = std::min(figures.availableBytes, *limit - std::min(busy, *limit));
}

/// The group at `path` and every group around it. A path that the mount does not know, as seen from inside a
/// container, leaves those levels of it that it does.
void confineUpwards(MemoryFigures &figures, const GroupFiles &files, const std::string &root, std::string path) {
  while (true) {
    confine(figures, files, root + files.mount + path);
    if (path.empty()) return;
    path.resize(path.find_last_of('/') == std::string::npos ? 0 : path.find_last_of('/'));
  }
}

bool listsMemory(std::string_view controllers) {
  while (!controllers.empty()) {
    const std::string_view name = controllers.substr(0, controllers.find(','));
    if (name == "memory") return true;
    controllers.remove_prefix(std::min(name.size() + 1, controllers.size()));
  }
  return false;
}

}  // namespace

MemoryFigures systemMemory(const std::string &root) {
  constexpr std::uint64_t kib = 1024;
  const std::string known = readText(root + "proc/meminfo");
  const auto total = numberAfter(known, "MemTotal:");
  const auto available = numberAfter(known, "MemAvailable:");
  MemoryFigures figures{total ? *total * kib : assumedTotal, available ? *available * kib : assumedAvailable};

  // A line reads "number:controllers:path"; version 2 names no controller.
  std::istringstream groups(readText(root + "proc/self/cgroup"));
  for (std::string line; std::getline(groups, line);) {
    const std::size_t first = line.find(':');
    const std::size_t second = first == std::string::npos ? first : line.find(':', first + 1);
    if (second == std::string::npos) continue;
    const std::string_view controllers = std::string_view(line).substr(first + 1, second - first - 1);
    std::string path = line.substr(second + 1);
    if (path == "/") path.clear();
    if (controllers.empty()) {
      confineUpwards(figures, versionTwo, root, path);
      confineUpwards(figures, versionTwoBesideOne, root, path);
    } else if (listsMemory(controllers)) {
      confineUpwards(figures, versionOne, root, path);
    }
  }
  return figures;
}

}  // namespace tarvo::skarnvisor
