#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "default/point_files/readers/input_file.h"

namespace tarvo::skarnvisor {

/// Bytes from a line's end on that `forEachLine` lets its caller look at, the first of which is a blank.
inline constexpr std::ptrdiff_t readableBehindLine = 24;

/// Lines that start in [first, last) and hold something: neither empty nor begun by `comment` (a line feed: no
/// comments). May count a last line of a lone carriage return.
[[nodiscard]] std::size_t countDataLines(const InputFile &file, std::uint64_t dataStart, std::uint64_t first,
                                         std::uint64_t last, char comment);

/// Calls `take(begin, end)` for each line of the file that starts in [first, last): without its line feed and a
/// carriage return before it. A line starts at `dataStart` and behind each line feed, so that neighbouring ranges share
/// no line. Reads block by block; memory follows the longest line. `take` returns false to end the walk.
template <typename Take>
void forEachLine(const InputFile &file, std::uint64_t dataStart, std::uint64_t first, std::uint64_t last, Take &&take) {
  constexpr std::size_t blockSize = 256 * 1024;
  std::vector<char> block(blockSize + readableBehindLine);
  std::size_t held = 0;  // bytes of an unfinished line at the block's start
  std::uint64_t position = first;
  bool skipping = false;  // inside a line that belongs to the range before
  if (first > dataStart) {
    char before = '\n';
    file.readAt(first - 1, &before, 1);
    skipping = before != '\n';
  }
  std::uint64_t lineStart = first;
  for (;;) {
    if (block.size() - held < blockSize / 2) block.resize(block.size() * 2);
    const std::size_t room = block.size() - held - readableBehindLine;
    const std::size_t got = file.readAt(position, block.data() + held, room);
    block[held + got] = '\n';
    position += got;
    const char *begin = block.data();
    const char *const end = begin + held + got;
    const char *searchFrom = begin + held;
    for (;;) {
      const auto *feed =
          static_cast<const char *>(std::memchr(searchFrom, '\n', static_cast<std::size_t>(end - searchFrom)));
      const bool atEnd = !feed && got == 0;
      if (!feed && !(atEnd && begin != end)) break;
      const char *lineEnd = feed ? feed : end;
      if (!skipping) {
        if (lineStart >= last) return;
        const char *textEnd = lineEnd != begin && lineEnd[-1] == '\r' ? lineEnd - 1 : lineEnd;
        if (!take(begin, textEnd)) return;
      }
      skipping = false;
      if (!feed) return;
      lineStart += static_cast<std::uint64_t>(feed + 1 - begin);
      begin = searchFrom = feed + 1;
    }
    if (got == 0) return;
    held = static_cast<std::size_t>(end - begin);
    if (held == 0 && lineStart >= last && !skipping) return;
    std::memmove(block.data(), begin, held);
  }
}

}  // namespace tarvo::skarnvisor
