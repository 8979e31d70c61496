#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

/// The status cells that the boards of the simulated lidars send.
namespace tarvo::lidar::sim {

/// Cells first to last hold value, value + step, value + 2 step, ...; `drift` is how much they wander.
struct CellRun {
  std::uint8_t first, last;
  std::uint16_t value, step, drift;
};

/// Two letters a cell, blanks behind the end of the text.
struct TextRun {
  std::uint8_t first, last;
  std::string_view text;
};

struct Board {
  std::vector<CellRun> cells;
  std::vector<TextRun> texts;
};

/// One board a cell group; null: the group stays empty.
using BoardSet = std::array<const Board *, 3>;

/// Boards of a lidar type. A type that is not known sends plain numbers in the cells that most boards use.
[[nodiscard]] const BoardSet &boardsOf(std::string_view type, std::uint8_t variant);

}  // namespace tarvo::lidar::sim
