#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "default/frame/half_float.h"
#include "default/frame/vertex.h"

/// Four points at a time for the two conversions that every point of a frame takes. Written with the
/// vector types that GCC and Clang share, since neither vectorises the plain loops without relaxing the
/// floating-point rules. Each gives exactly what its one-value form gives.
namespace tarvo::skarnvisor::lanes {

inline constexpr std::size_t width = 4;

using Floats = float __attribute__((vector_size(16)));
using Doubles = double __attribute__((vector_size(32)));
using Ints = std::int32_t __attribute__((vector_size(16)));
using Words = std::uint32_t __attribute__((vector_size(16)));

template <typename Lanes, typename T>
inline void load(Lanes &lanes, const T *from) {
  std::memcpy(&lanes, from, sizeof(Lanes));
}

namespace detail {

/// A lane type passed through memory: returning one by value would depend on the target's registers.
struct WordLanes {
  Words lanes;
};

/// `millimetresFromMetres` of four values, low 21 bits of each.
inline WordLanes millimetres(const float *metres) {
  constexpr Floats lowest{-1048.576F, -1048.576F, -1048.576F, -1048.576F};
  constexpr Floats highest{1048.575F, 1048.575F, 1048.575F, 1048.575F};
  Floats value;
  load(value, metres);
  value = value < highest ? value : highest;  // a NaN takes the limit
  value = value > lowest ? value : lowest;
  const Words half = (std::bit_cast<Words>(value) & 0x80000000U) | std::bit_cast<std::uint32_t>(0.5F);
  const Doubles scaled = __builtin_convertvector(value, Doubles) * 1000.0;
  const Doubles rounded = scaled + __builtin_convertvector(std::bit_cast<Floats>(half), Doubles);
  return {std::bit_cast<Words>(__builtin_convertvector(rounded, Ints)) & 0x1fffffU};
}

/// `halfFromFloat` of four values.
inline WordLanes halves(const float *values) {
  Words bits;
  load(bits, values);
  const Words magnitude = bits & 0x7fffffffU;
  // Signed comparisons: there is an instruction for them, and a magnitude is never negative.
  const Ints ordered = std::bit_cast<Ints>(magnitude);
  const Ints isDenormal = ordered < (113 << 23);
  const Words belowBits = magnitude & std::bit_cast<Words>(isDenormal);
  const Ints steps = __builtin_convertvector(std::bit_cast<Floats>(belowBits) * 16777216.0F, Ints);
  const Words normal = (magnitude - (112U << 23)) >> 13;
  const Words quiet = (magnitude >> 13 & 0x3ffU) | 0x7e00U;
  const Words infinite = Words{} + 0x7c00U;
  const Words beyond = ordered > (255 << 23) ? quiet : infinite;
  const Words finite = isDenormal ? std::bit_cast<Words>(steps) : normal;
  return {(bits >> 16 & 0x8000U) | (ordered < (143 << 23) ? finite : beyond)};
}

}  // namespace detail

/// Words of four pairs of half floats: `low` in the low half.
inline void halfWords(const float *low, const float *high, std::uint32_t *words) {
  const Words result = detail::halves(high).lanes << 16 | detail::halves(low).lanes;
  std::memcpy(words, &result, sizeof result);
}

/// From raw camera values to 0 to 255: 0 at or below `min`, 255 at or above `max`, else
/// (value - min) / divisor * factor, rounded.
struct ChannelScale {
  float min;
  float max;
  float divisor;
  float factor;
};

/// Words 0x00RRGGBB of four points with the same scale.
inline void rgbWords(const ChannelScale &scale, const float *red, const float *green, const float *blue,
                     std::uint32_t *words) {
  const auto channel = [&scale](const float *raw, Words &result) {
    const Floats lowest = Floats{} + scale.min;
    const Floats highest = Floats{} + scale.max;
    Floats value;
    load(value, raw);
    const Floats limited = value > lowest ? (value < highest ? value : highest) : lowest;
    const Floats scaled = (limited - lowest) / scale.divisor * scale.factor + 0.5F;
    const Words between = std::bit_cast<Words>(__builtin_convertvector(scaled, Ints));
    const Words top = Words{} + 255U;
    result = value <= lowest ? Words{} : value >= highest ? top : between;
  };
  Words reds;
  Words greens;
  Words blues;
  channel(red, reds);
  channel(green, greens);
  channel(blue, blues);
  const Words result = reds << 16 | greens << 8 | blues;
  std::memcpy(words, &result, sizeof result);
}

/// `packVertex` of four points.
inline void packVertices(const float *x, const float *y, const float *z, const std::uint32_t *color, Vertex *vertices) {
  const Words xs = detail::millimetres(x).lanes;
  const Words ys = detail::millimetres(y).lanes;
  const Words zs = detail::millimetres(z).lanes;
  const Words low = xs | ys << 21;
  const Words high = ys >> 11 | zs << 10;
  Words colors;
  load(colors, color);
  // Four vertices are three lanes' worth of words: l0 h0 c0 l1, h1 c1 l2 h2, c2 l3 h3 c3.
  const Words pairs01 = __builtin_shufflevector(low, high, 0, 4, 1, 5);  // l0 h0 l1 h1
  const Words pairs23 = __builtin_shufflevector(low, high, 2, 6, 3, 7);  // l2 h2 l3 h3
  const Words out[3] = {
      __builtin_shufflevector(pairs01, colors, 0, 1, 4, 2),
      __builtin_shufflevector(__builtin_shufflevector(pairs01, colors, 3, 5, 0, 0), pairs23, 0, 1, 4, 5),
      __builtin_shufflevector(pairs23, colors, 6, 2, 3, 7),
  };
  static_assert(sizeof out == width * sizeof(Vertex));
  std::memcpy(vertices, out, sizeof out);
}

}  // namespace tarvo::skarnvisor::lanes
