#include "default/point_files/readers/number_text.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

namespace tarvo::skarnvisor {

namespace {

constexpr bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

constexpr std::array<double, 23> powersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                                1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

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

// Up to 2^53 times or over a power of ten up to 22 is one correctly rounded double operation. Narrowing it rounds a
// second time, which goes wrong only where the double stands exactly between two floats or the float is no normal one.
bool narrow(double wide, float &value) {
  const std::uint64_t tail = std::bit_cast<std::uint64_t>(wide) & 0x1fffffff;
  const double size = std::abs(wide);
  if (tail == 0x10000000 || size > std::numeric_limits<float>::max() ||
      (size < std::numeric_limits<float>::min() && size != 0.0))
    return false;
  value = static_cast<float>(wide);
  return true;
}

bool parseFloat(const char *begin, const char *end, float &value) {
  const char *c = begin;
  bool negative = false;
  if (c != end && (*c == '-' || *c == '+')) negative = *c++ == '-';
  std::uint64_t mantissa = 0;
  const char *firstDigit = c;
  while (c != end && isDigit(*c)) mantissa = mantissa * 10 + static_cast<std::uint64_t>(*c++ - '0');
  std::ptrdiff_t digits = c - firstDigit;
  int exponent = 0;
  if (c != end && *c == '.') {
    const char *firstDecimal = ++c;
    while (c != end && isDigit(*c)) mantissa = mantissa * 10 + static_cast<std::uint64_t>(*c++ - '0');
    exponent = -static_cast<int>(c - firstDecimal);
    digits += c - firstDecimal;
  }
  if (digits == 0 || digits > 18) return parseSlowly(begin, end, value);
  if (c != end && (*c == 'e' || *c == 'E')) {
    ++c;
    bool down = false;
    if (c != end && (*c == '-' || *c == '+')) down = *c++ == '-';
    int read = 0;
    const char *firstExponent = c;
    while (c != end && isDigit(*c) && read < 1000) read = read * 10 + (*c++ - '0');
    if (c == firstExponent) return false;
    exponent += down ? -read : read;
  }
  if (c != end) return parseSlowly(begin, end, value);
  if (mantissa > (std::uint64_t{1} << 53) || exponent < -22 || exponent > 22) return parseSlowly(begin, end, value);
  double wide = static_cast<double>(mantissa);
  const double power = powersOfTen[static_cast<std::size_t>(exponent < 0 ? -exponent : exponent)];
  wide = exponent < 0 ? wide / power : wide * power;
  if (!narrow(negative ? -wide : wide, value)) return parseSlowly(begin, end, value);
  return true;
}

}  // namespace

bool NumberLine::nextToken(const char *&begin, const char *&end) {
  while (m_position != m_end && isBlank(*m_position)) ++m_position;
  begin = m_position;
  while (m_position != m_end && !isBlank(*m_position)) ++m_position;
  end = m_position;
  return begin != end;
}

bool NumberLine::read(float &value) {
  const char *begin = nullptr;
  const char *end = nullptr;
  if (m_failed || !nextToken(begin, end) || !parseFloat(begin, end, value)) return fail();
  return true;
}

bool NumberLine::read(std::uint16_t &value) {
  const char *begin = nullptr;
  const char *end = nullptr;
  if (m_failed || !nextToken(begin, end)) return fail();
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
