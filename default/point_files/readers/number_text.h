#pragma once

#include <cstddef>
#include <cstdint>

#include "default/point_files/readers/quick_number.h"

namespace tarvo::skarnvisor {

/// Walks the whitespace-separated tokens of one line of text. A token that is no number of the wanted kind, and the end
/// of the line, make every later read fail, as with a stream.
class NumberLine {
 public:
  NumberLine(const char *begin, const char *end) : NumberLine(begin, end, 0) {}
  /// `readable` bytes from `end` on may be looked at, the first of which is a blank: numbers close to the line's end
  /// are then read in the quickest way, too.
  NumberLine(const char *begin, const char *end, std::ptrdiff_t readable)
      : m_position(begin), m_end(end), m_readable(end + readable) {}

  /// Decimal or exponent form, "nan" and "inf" in any case and sign; correctly rounded. Too large a value fails, too
  /// small a one reads as 0 or a denormal. `value` stays as it was on failure.
  bool read(float &value) {
    if (m_failed) return false;
    while (m_position != m_end && numbers::isBlank(*m_position)) ++m_position;
    if (m_readable - m_position >= numbers::shortNumberReach && numbers::parseShort(m_position, value)) return true;
    switch (numbers::parseQuickly(m_position, m_end, value)) {
      case numbers::Quick::done:
        return true;
      case numbers::Quick::failed:
        return fail();
      case numbers::Quick::declined:
        break;
    }
    return readSlowly(value);
  }
  /// A whole number from 0 to 65535; "-n" wraps as an unsigned stream read does.
  bool read(std::uint16_t &value) {
    if (m_failed) return false;
    while (m_position != m_end && numbers::isBlank(*m_position)) ++m_position;
    if (m_readable - m_position >= numbers::shortNumberReach && numbers::parseShort(m_position, value)) return true;
    return readSlowly(value);
  }
  /// Steps over one token that need not be a number.
  bool skipWord();
  [[nodiscard]] bool failed() const { return m_failed; }

 private:
  bool readSlowly(float &value);
  bool readSlowly(std::uint16_t &value);
  bool nextToken(const char *&begin, const char *&end);
  bool fail() {
    m_failed = true;
    return false;
  }

  const char *m_position;
  const char *m_end;
  const char *m_readable;
  bool m_failed = false;
};

}  // namespace tarvo::skarnvisor
