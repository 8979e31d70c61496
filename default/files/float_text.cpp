#include "default/files/float_text.h"

#include <QByteArray>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace tarvo::skarnvisor {

namespace {

constexpr std::array<std::uint64_t, 10> powersOfTen{1,       10,        100,        1'000,       10'000,
                                                    100'000, 1'000'000, 10'000'000, 100'000'000, 1'000'000'000};

constexpr int significantDigits = 6;
constexpr std::uint64_t significantLimit = powersOfTen[significantDigits];

/// "00" to "99", side by side.
constexpr auto digitPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

/// Writes exactly `digits` digits, zeros in front.
void writeDigits(char *out, std::uint32_t value, int digits) {
  char *place = out + digits;
  for (; digits >= 2; digits -= 2, value /= 100) {
    place -= 2;
    std::memcpy(place, &digitPairs[value % 100 * 2], 2);
  }
  if (digits == 1) *out = static_cast<char>('0' + value);
}

constexpr float exactLimit = 8'388'608.0F;  // 2^23

/// Writes `number` with its last `decimals` digits behind a point.
char *writePoint(char *out, std::uint64_t number, int decimals) {
  const std::uint64_t power = powersOfTen[static_cast<std::size_t>(decimals)];
  out = std::to_chars(out, out + 20, number / power).ptr;
  if (decimals == 0) return out;
  *out++ = '.';
  writeDigits(out, static_cast<std::uint32_t>(number % power), decimals);
  return out + decimals;
}

enum class Halves { ToEven, Up };

/// |value| x 10^decimals to the nearest integer, by integer arithmetic and therefore exact. |value| is below 2^23,
/// `decimals` at most 9: the product of mantissa and power stays below 2^54.
std::uint64_t scaled(float value, int decimals, Halves halves) {
  const auto bits = std::bit_cast<std::uint32_t>(value);
  const auto exponent = static_cast<int>(bits >> 23 & 0xffU);
  const std::uint64_t fraction = bits & 0x7fffffU;
  const std::uint64_t mantissa = exponent == 0 ? fraction : fraction | 0x800000U;
  const int shift = std::min(150 - std::max(exponent, 1), 60);  // beyond 60 the result is 0 all the same
  const std::uint64_t product = mantissa * powersOfTen[static_cast<std::size_t>(decimals)];
  const std::uint64_t quotient = product >> shift;
  const std::uint64_t rest = product & ((std::uint64_t{1} << shift) - 1);
  const std::uint64_t half = std::uint64_t{1} << (shift - 1);
  const bool halfUp = halves == Halves::Up || (quotient & 1) != 0;
  return quotient + (rest > half || (rest == half && halfUp) ? 1 : 0);
}

/// Digits before the point less one, of a value from 1e-4 to below 1e6.
int decimalExponent(double magnitude) {
  if (magnitude >= 1.0)
    return magnitude >= 1e3 ? (magnitude >= 1e5   ? 5
                               : magnitude >= 1e4 ? 4
                                                  : 3)
                            : (magnitude >= 1e2   ? 2
                               : magnitude >= 1e1 ? 1
                                                  : 0);
  return magnitude >= 1e-2 ? (magnitude >= 1e-1 ? -1 : -2) : (magnitude >= 1e-3 ? -3 : -4);
}

}  // namespace

char *writeGeneral(char *out, float value) {
  const double magnitude = std::fabs(static_cast<double>(value));
  // No float lies between a power of ten and the double nearest to it, so that comparing doubles is exact.
  if (magnitude >= 1e-4 && magnitude < 999'999.0) {
    if (std::signbit(value)) *out++ = '-';
    int exponent = decimalExponent(magnitude);
    std::uint64_t digits = scaled(value, significantDigits - 1 - exponent, Halves::ToEven);
    if (digits == significantLimit) {
      digits /= 10;
      ++exponent;
    }
    std::array<char, significantDigits> text;
    writeDigits(text.data(), static_cast<std::uint32_t>(digits), significantDigits);
    int kept = significantDigits;
    while (kept > 1 && text[static_cast<std::size_t>(kept) - 1] == '0') --kept;
    if (exponent < 0) {
      std::memcpy(out, "0.000", 5);
      out += 1 - exponent;
      std::memcpy(out, text.data(), significantDigits);
      return out + kept;
    }
    const int whole = exponent + 1;
    std::memcpy(out, text.data(), significantDigits);
    if (kept <= whole) return out + whole;
    out[whole] = '.';
    std::memcpy(out + whole + 1, text.data() + whole, static_cast<std::size_t>(significantDigits - whole));
    return out + kept + 1;
  }
  if (magnitude == 0.0) {
    if (std::signbit(value)) *out++ = '-';
    *out++ = '0';
    return out;
  }
  return std::to_chars(out, out + longestNumberText, static_cast<double>(value), std::chars_format::general,
                       significantDigits)
      .ptr;
}

char *writeSixDecimals(char *out, float value) {
  if (!(std::fabs(value) < exactLimit)) return writeSixDecimals(out, static_cast<double>(value));
  if (std::signbit(value)) *out++ = '-';
  return writePoint(out, scaled(value, 6, Halves::ToEven), 6);
}

char *writeSixDecimals(char *out, double value) {
  return std::to_chars(out, out + longestNumberText, value, std::chars_format::fixed, 6).ptr;
}

char *writeDecimals(char *out, double value, int decimals) {
  const auto narrow = static_cast<float>(value);
  if (static_cast<double>(narrow) != value || !(std::fabs(narrow) < exactLimit)) {
    const QByteArray text = QByteArray::number(value, 'f', decimals);
    std::memcpy(out, text.constData(), static_cast<std::size_t>(text.size()));
    return out + text.size();
  }
  if (value < 0.0) *out++ = '-';
  return writePoint(out, scaled(narrow, decimals, Halves::Up), decimals);
}

}  // namespace tarvo::skarnvisor
