#include "default/point_files/readers/number_text.h"

#include <charconv>
#include <cmath>

namespace tarvo::skarnvisor {

namespace {

using numbers::isBlank;

// The exact way, for whatever the quick one declines.
bool parseSlowly(const char *begin, const char *end, float &value) {
  if (begin != end && *begin == '+') {
    ++begin;
    if (begin != end && (*begin == '+' || *begin == '-')) return false;
  }
  float parsed = 0.0F;
  const std::from_chars_result result = std::from_chars(begin, end, parsed);
  if (result.ptr != end) return false;
  if (result.ec == std::errc{}) {
    value = parsed;
    return true;
  }
  // Out of range says neither which way; the double's range tells the two apart, and past that range the exponent's
  // sign.
  double wide = 0.0;
  if (std::from_chars(begin, end, wide).ec == std::errc{}) {
    if (std::abs(wide) > 1.0) return false;
    value = static_cast<float>(wide);
    return true;
  }
  for (const char *c = begin; c != end; ++c) {
    if ((*c == 'e' || *c == 'E') && c + 1 != end && c[1] == '-') {
      value = 0.0F;
      return true;
    }
  }
  return false;
}

}  // namespace

bool NumberLine::nextToken(const char *&begin, const char *&end) {
  while (m_position != m_end && isBlank(*m_position)) ++m_position;
  begin = m_position;
  while (m_position != m_end && !isBlank(*m_position)) ++m_position;
  end = m_position;
  return begin != end;
}

bool NumberLine::readSlowly(float &value) {
  const char *begin = nullptr;
  const char *end = nullptr;
  return nextToken(begin, end) && parseSlowly(begin, end, value) ? true : fail();
}

bool NumberLine::readSlowly(std::uint16_t &value) {
  const char *begin = nullptr;
  const char *end = nullptr;
  if (!nextToken(begin, end)) return fail();
  const bool negative = *begin == '-';
  if (negative || *begin == '+') ++begin;
  std::uint16_t parsed = 0;
  const std::from_chars_result result = std::from_chars(begin, end, parsed);
  if (begin == end || result.ec != std::errc{} || result.ptr != end) return fail();
  value = negative ? static_cast<std::uint16_t>(-parsed) : parsed;
  return true;
}

bool NumberLine::skipWord() {
  const char *begin = nullptr;
  const char *end = nullptr;
  return !m_failed && nextToken(begin, end) ? true : fail();
}

}  // namespace tarvo::skarnvisor
