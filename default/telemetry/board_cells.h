#pragma once

#include "default/telemetry/monitor_table.h"

/// The words in which boards are written down.
namespace tarvo::skarnvisor::cells {

/// scale x raw + offset, raw unsigned.
constexpr BoardCells number(int cell, const char *name, float scale = 1.0F, float offset = 0.0F) {
  return {cell, cell, name, 'f', scale, offset, 0};
}

/// scale x raw, raw signed.
constexpr BoardCells signedNumber(int cell, const char *name, float scale = 1.0F) {
  return {cell, cell, name, 'f', scale, 0.0F, 1};
}

/// A whole number, unsigned.
constexpr BoardCells integer(int cell, const char *name) { return {cell, cell, name, '1', 1.0F, 0.0F, 1}; }

/// A whole number over up to four cells, lowest word first.
constexpr BoardCells wide(int first, int last, const char *name) { return {first, last, name, '1', 1.0F, 0.0F, 1}; }

/// A temperature through the resistance table.
constexpr BoardCells thermistor(int cell, const char *name) { return {cell, cell, name, 'b', 1.0F, 0.0F, 0}; }

/// Two letters a cell. One cell alone begins a text that nothing ends.
constexpr BoardCells text(int first, int last, const char *name) { return {first, last, name, 's', 1.0F, 0.0F, 0}; }

}  // namespace tarvo::skarnvisor::cells
