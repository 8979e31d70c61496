#pragma once

// The quick way of reading a number, in a header so that loops over millions of lines have it inline.
#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

namespace tarvo::skarnvisor::numbers {

constexpr bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

inline constexpr int largestPower = 22;
/// 10^-22 to 10^22; those from 10^0 on are exact.
inline constexpr std::array<double, 2 *largestPower + 1> powersOfTen = {
    1e-22, 1e-21, 1e-20, 1e-19, 1e-18, 1e-17, 1e-16, 1e-15, 1e-14, 1e-13, 1e-12, 1e-11, 1e-10, 1e-9, 1e-8,
    1e-7,  1e-6,  1e-5,  1e-4,  1e-3,  1e-2,  1e-1,  1e0,   1e1,   1e2,   1e3,   1e4,   1e5,   1e6,  1e7,
    1e8,   1e9,   1e10,  1e11,  1e12,  1e13,  1e14,  1e15,  1e16,  1e17,  1e18,  1e19,  1e20,  1e21, 1e22};

// Up to 2^53 times a power of ten, or times the nearest double to a negative power, is off by two units in the last
// place at most. Narrowing it goes wrong only where the double stands that close to the middle between two floats, or
// where the float is no normal one.
inline bool nearMiddle(double wide) {
  constexpr std::uint64_t middle = 0x10000000;
  return (std::bit_cast<std::uint64_t>(wide) & 0x1fffffff) - (middle - 4) <= 8;
}

inline bool narrow(double wide, float &value) {
  const double size = std::abs(wide);
  if (nearMiddle(wide) || size > std::numeric_limits<float>::max() ||
      (size < std::numeric_limits<float>::min() && size != 0.0))
    return false;
  value = static_cast<float>(wide);
  return true;
}

inline constexpr std::array<std::uint64_t, 9> smallPowers = {1,       10,        100,        1'000,      10'000,
                                                             100'000, 1'000'000, 10'000'000, 100'000'000};

static_assert(std::endian::native == std::endian::little, "the first character is the lowest byte of a word");

/// Eight characters, each digit as its value, anything else as more than 9.
inline std::uint64_t loadDigits(const char *c) {
  std::uint64_t word;
  std::memcpy(&word, c, sizeof word);
  return word ^ 0x3030303030303030U;
}

/// Marks, in the top bit of their bytes, those of `loadDigits` that are no digits; exact up to the first character
/// above 0x7f.
constexpr std::uint64_t othersIn(std::uint64_t word) {
  return ((word + 0x7676767676767676U) | word) & 0x8080808080808080U;
}

/// The marks of `othersIn`, a bit for each byte.
constexpr unsigned markBits(std::uint64_t others) {
  return static_cast<unsigned>((others >> 7) * 0x0102040810204080U >> 56);
}

/// The number that eight digits make, the lowest byte the first digit: summed up in pairs, fours and eights.
constexpr std::uint64_t eightDigits(std::uint64_t word) {
  word = word * 10 + (word >> 8);
  word = (word & 0x000000ff000000ffU) * (100 + (std::uint64_t{1'000'000} << 32)) +
         (word >> 16 & 0x000000ff000000ffU) * (1 + (std::uint64_t{10'000} << 32));
  return word >> 32;
}

// Takes the digits at `c` into the mantissa, up to eight at once without a branch for each: the digits are moved to the
// top of a word, zeros in front of them.
inline const char *takeDigits(const char *c, const char *end, std::uint64_t &mantissa) {
  while (end - c >= 8) {
    const std::uint64_t word = loadDigits(c);
    const int count = std::countr_zero(othersIn(word)) / 8;
    if (count == 0) return c;
    mantissa = mantissa * smallPowers[static_cast<std::size_t>(count)] + eightDigits(word << (64 - 8 * count));
    c += count;
    if (count < 8) return c;
  }
  while (c != end && isDigit(*c)) mantissa = mantissa * 10 + static_cast<std::uint64_t>(*c++ - '0');
  return c;
}

enum class Quick { done, failed, declined };

// Reads the usual forms right where they stand, without looking for the token's end first. On `done` the position is
// behind the number; a form that is declined, such as one of very many digits, is for `parseSlowly`.
inline Quick parseQuickly(const char *&position, const char *end, float &value) {
  const char *c = position;
  bool negative = false;
  if (c != end && (*c == '-' || *c == '+')) negative = *c++ == '-';
  std::uint64_t mantissa = 0;
  const char *firstDigit = c;
  c = takeDigits(c, end, mantissa);
  std::ptrdiff_t digits = c - firstDigit;
  int exponent = 0;
  if (c != end && *c == '.') {
    const char *firstDecimal = ++c;
    c = takeDigits(c, end, mantissa);
    exponent = -static_cast<int>(std::min<std::ptrdiff_t>(c - firstDecimal, 1000));
    digits += c - firstDecimal;
  }
  if (digits == 0 || digits > 18) return Quick::declined;
  if (c != end && (*c == 'e' || *c == 'E')) {
    ++c;
    bool down = false;
    if (c != end && (*c == '-' || *c == '+')) down = *c++ == '-';
    int read = 0;
    const char *firstExponent = c;
    while (c != end && isDigit(*c) && read < 1000) read = read * 10 + (*c++ - '0');
    if (c == firstExponent) return Quick::failed;
    exponent += down ? -read : read;
  }
  if (c != end && !isBlank(*c)) return Quick::declined;
  if (mantissa > (std::uint64_t{1} << 53) || exponent < -largestPower || exponent > largestPower)
    return Quick::declined;
  const int row = exponent + largestPower;
  const double wide = static_cast<double>(mantissa) * powersOfTen[static_cast<std::size_t>(row)];
  if (!narrow(negative ? -wide : wide, value)) return Quick::declined;
  position = c;
  return Quick::done;
}

/// Characters from a number's first on that `parseShort` looks at.
inline constexpr std::ptrdiff_t shortNumberReach = 17;

// The form that nearly every number of a file has: a minus or none, up to seven digits, a dot with digits behind it or
// none, fifteen characters at most, then a blank. No branch depends on how many digits there are, and none of the work
// waits for the number before. False for any other form, for `parseQuickly`, with position and value as they were.
inline bool parseShort(const char *&position, float &value) {
  const std::uint64_t negative = *position == '-' ? 1 : 0;
  const char *const c = position + negative;
  std::uint64_t low = loadDigits(c);
  const std::uint64_t others = othersIn(low);
  if (others == 0) return false;
  const auto before = static_cast<unsigned>(std::countr_zero(others)) / 8;
  if (c[before] != '.') {
    if (before == 0 || !isBlank(c[before])) return false;
    const auto number = static_cast<float>(static_cast<std::int64_t>(eightDigits(low << (64 - 8 * before))));
    value = negative != 0 ? -number : number;
    position = c + before;
    return true;
  }
  std::uint64_t high = loadDigits(c + 8);
  const unsigned marks = markBits(others) | markBits(othersIn(high)) << 8;
  const unsigned behindDot = marks & (marks - 1);
  if (behindDot == 0) return false;
  const auto end = static_cast<unsigned>(std::countr_zero(behindDot));
  const unsigned digits = end - 1;
  if (digits == 0 || !isBlank(c[end])) return false;
  const std::uint64_t whole = (std::uint64_t{1} << 8 * before) - 1;
  low = (low & whole) | ((low >> 8 | high << 56) & ~whole);  // closes up over the dot
  high >>= 8;
  using Wide = unsigned __int128;
  const Wide aligned = (static_cast<Wide>(high) << 64 | low) << 8 * (16 - digits);  // zeros in front
  const std::uint64_t mantissa = eightDigits(static_cast<std::uint64_t>(aligned)) * smallPowers[8] +
                                 eightDigits(static_cast<std::uint64_t>(aligned >> 64));
  const double wide = static_cast<double>(static_cast<std::int64_t>(mantissa)) *
                      powersOfTen[static_cast<std::size_t>(largestPower) - (digits - before)];
  if (nearMiddle(wide)) return false;
  value = static_cast<float>(std::bit_cast<double>(std::bit_cast<std::uint64_t>(wide) | negative << 63));
  position = c + end;
  return true;
}

// The same for a whole number: up to five digits, then a blank.
inline bool parseShort(const char *&position, std::uint16_t &value) {
  const std::uint64_t word = loadDigits(position);
  const std::uint64_t others = othersIn(word);
  if (others == 0) return false;
  const auto digits = static_cast<unsigned>(std::countr_zero(others)) / 8;
  if (digits == 0 || !isBlank(position[digits])) return false;
  const std::uint64_t number = eightDigits(word << (64 - 8 * digits));
  if (number > std::numeric_limits<std::uint16_t>::max()) return false;
  value = static_cast<std::uint16_t>(number);
  position += digits;
  return true;
}

}  // namespace tarvo::skarnvisor::numbers
