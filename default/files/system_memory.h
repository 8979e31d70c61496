#pragma once

#include <cstdint>
#include <string>

namespace tarvo::skarnvisor {

/// Memory of the machine, or of the group of processes that the program is confined to. Bytes.
struct MemoryFigures {
  std::uint64_t totalBytes = 0;
  std::uint64_t availableBytes = 0;
};

/// Memory of this machine and what of it is free, as the kernel tells under `root`. Where a control group
/// confines the process, on any level and of either version, the lower figures count; pages that the group
/// would give up first, those of files it no longer reads, count as free. 8 GiB and 2 GiB stand in for
/// figures that cannot be read.
MemoryFigures systemMemory(const std::string &root = "/");

}  // namespace tarvo::skarnvisor
