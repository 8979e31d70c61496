#pragma once

#include <QString>

#include <array>

namespace tarvo::skarnvisor {

/// Temperatures (degrees Celsius) of a thermistor by its resistance, up to 500 entries; zero where the
/// file gave none. Loaded once, before the first frame.
struct ResistanceTable {
  static constexpr int size = 500;

  std::array<float, size> temperatures{};
  std::array<float, size> resistances{};

  /// Reads lines of "index, temperature, resistance", index from 1, behind one title line. A line that
  /// does not parse ends the reading with a log line and false; what was read until then stays.
  bool load(const QString &path);
};

}  // namespace tarvo::skarnvisor
