#pragma once

#include <cstddef>

namespace tarvo::skarnvisor {

/// Most characters that one of the functions below writes.
inline constexpr std::size_t longestNumberText = 330;

/// Writes `value` as an output stream in its default format does ("%g"): six significant digits, halves to even,
/// no zeros at the end. Returns the end of the text; nothing terminates it.
char *writeGeneral(char *out, float value);

/// Writes `value` as an output stream in fixed notation with 6 decimals does ("%.6f"), exact halves to even.
char *writeSixDecimals(char *out, float value);
char *writeSixDecimals(char *out, double value);

/// Writes `value` as `QString::number(value, 'f', decimals)` does: fixed notation, exact halves away from zero, no sign
/// for zero and what is no number. `decimals` from 0 to 9.
char *writeDecimals(char *out, double value, int decimals);

}  // namespace tarvo::skarnvisor
