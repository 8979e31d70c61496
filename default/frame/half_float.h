#pragma once

#include <bit>
#include <cstdint>

namespace tarvo::skarnvisor {

/// Bits of the IEEE 754 half float next to `value` towards zero. Too large a value gives infinity, too
/// small a one goes through the denormals to a zero of its sign, and a NaN stays a NaN. Every case is
/// worked out and one is picked, without a branch, so that a loop of it is vectorised.
[[nodiscard]] constexpr std::uint32_t halfFromFloat(float value) noexcept {
  constexpr std::uint32_t smallestNormal = 113U << 23;  // 2^-14
  constexpr std::uint32_t overflow = 143U << 23;        // 2^16
  constexpr std::uint32_t infinity = 255U << 23;
  const auto bits = std::bit_cast<std::uint32_t>(value);
  const std::uint32_t magnitude = bits & 0x7fffffffU;

  // A denormal counts steps of 2^-24; a magnitude that is none must not overflow the conversion.
  const auto below = std::bit_cast<float>(magnitude < smallestNormal ? magnitude : 0U);
  const auto denormal = static_cast<std::uint32_t>(static_cast<std::int32_t>(below * 16777216.0F));
  const std::uint32_t normal = (magnitude - (112U << 23)) >> 13;
  // A NaN is made quiet: dropping its low bits could leave an infinity.
  const std::uint32_t beyond = magnitude > infinity ? 0x7e00U | (magnitude >> 13 & 0x3ffU) : 0x7c00U;

  const std::uint32_t finite = magnitude < smallestNormal ? denormal : normal;
  return (bits >> 16 & 0x8000U) | (magnitude < overflow ? finite : beyond);
}

/// Value of the half float with these bits; exact.
[[nodiscard]] constexpr float floatFromHalf(std::uint16_t half) noexcept {
  const std::uint32_t sign = (half & 0x8000U) << 16;
  const std::uint32_t exponent = (half >> 10) & 0x1fU;
  const std::uint32_t mantissa = half & 0x3ffU;
  if (exponent == 0) {
    constexpr float denormalStep = 1.0F / 16777216.0F;  // 2^-24
    const float magnitude = static_cast<float>(mantissa) * denormalStep;
    return sign != 0 ? -magnitude : magnitude;
  }
  const std::uint32_t widened = exponent == 31 ? 255U : exponent + 112U;
  return std::bit_cast<float>(sign | (widened << 23) | (mantissa << 13));
}

}  // namespace tarvo::skarnvisor
