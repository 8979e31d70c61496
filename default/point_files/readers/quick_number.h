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
inline bool narrow(double wide, float &value) {
  constexpr std::uint64_t middle = 0x10000000;
  const std::uint64_t tail = std::bit_cast<std::uint64_t>(wide) & 0x1fffffff;
  const double size = std::abs(wide);
  if (tail - (middle - 4) <= 8 || size > std::numeric_limits<float>::max() ||
      (size < std::numeric_limits<float>::min() && size != 0.0))
    return false;
  value = static_cast<float>(wide);
  return true;
}

inline constexpr std::array<std::uint64_t, 9> smallPowers = {1,       10,        100,        1'000,      10'000,
                                                             100'000, 1'000'000, 10'000'000, 100'000'000};

// Takes the digits at `c` into the mantissa, up to eight at once without a branch for each: the digits are moved to the
// top of a word, zeros in front of them, and summed up in pairs, fours and eights.
inline const char *takeDigits(const char *c, const char *end, std::uint64_t &mantissa) {
  static_assert(std::endian::native == std::endian::little);
  while (end - c >= 8) {
    std::uint64_t word;
    std::memcpy(&word, c, sizeof word);
    word ^= 0x3030303030303030U;  // a digit becomes its value, anything else more than 9
    const std::uint64_t others = ((word + 0x7676767676767676U) | word) & 0x8080808080808080U;
    const int count = std::countr_zero(others) / 8;
    if (count == 0) return c;
    word <<= 64 - 8 * count;
    word = word * 10 + (word >> 8);
    word = (word & 0x000000ff000000ffU) * (100 + (std::uint64_t{1'000'000} << 32)) +
           (word >> 16 & 0x000000ff000000ffU) * (1 + (std::uint64_t{10'000} << 32));
    mantissa = mantissa * smallPowers[static_cast<std::size_t>(count)] + (word >> 32);
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
  const double wide = static_cast<double>(mantissa) * powersOfTen[static_cast<std::size_t>(exponent + largestPower)];
  if (!narrow(negative ? -wide : wide, value)) return Quick::declined;
  position = c;
  return Quick::done;
}

}  // namespace tarvo::skarnvisor::numbers
