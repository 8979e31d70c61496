#include "default/point_files/readers/text_lines.h"

#include <algorithm>

namespace tarvo::skarnvisor {

namespace {

/// Of the lines that start at text[1] to text[length], those that hold something; text[0] and text[length + 1] are the
/// bytes before and behind. Counted in bytes as far as a byte reaches, which the compiler turns into vectors.
std::size_t countStarts(const char *text, std::size_t length, char comment) {
  constexpr std::size_t byteReach = 255;
  std::size_t count = 0;
  for (std::size_t begin = 0; begin < length; begin += byteReach) {
    const std::size_t end = std::min(length, begin + byteReach);
    std::uint8_t starts = 0;
    for (std::size_t i = begin; i < end; ++i) {
      const bool isStart = text[i] == '\n';
      const bool isEmpty = (text[i + 1] == '\n') | ((text[i + 1] == '\r') & (text[i + 2] == '\n'));
      starts = static_cast<std::uint8_t>(starts + (isStart & !isEmpty & (text[i + 1] != comment)));
    }
    count += starts;
  }
  return count;
}

}  // namespace

std::size_t countDataLines(const InputFile &file, std::uint64_t dataStart, std::uint64_t first, std::uint64_t last,
                           char comment) {
  constexpr std::size_t blockSize = 256 * 1024;
  std::vector<char> block(blockSize + 2);  // with the byte before and the byte behind
  std::size_t count = 0;
  for (std::uint64_t position = first; position < last;) {
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(blockSize, last - position));
    std::size_t before = 1;
    if (position == dataStart) {
      block[0] = '\n';
      before = 0;
    }
    const std::size_t got = file.readAt(position - before, block.data() + 1 - before, wanted + before + 1);
    if (got <= before) break;
    const std::size_t length = std::min(wanted, got - before);
    if (got - before == length) block[length + 1] = '\0';
    count += countStarts(block.data(), length, comment);
    position += length;
    if (length < wanted) break;
  }
  return count;
}

}  // namespace tarvo::skarnvisor
