#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>

namespace tarvo::skarnvisor {

/// Bits of the IEEE 754 half float next to `value` towards zero. Too large a value gives infinity, too
/// small a one goes through the denormals to a zero of its sign, and a NaN stays a NaN.
[[nodiscard]] constexpr std::uint16_t halfFromFloat(float value) noexcept
{
    constexpr std::uint32_t smallestNormal = 113U << 23; // 2^-14
    constexpr std::uint32_t overflow = 143U << 23;       // 2^16
    constexpr std::uint32_t infinity = 255U << 23;
    const auto bits = std::bit_cast<std::uint32_t>(value);
    const std::uint32_t magnitude = bits & 0x7fffffffU;
    const auto sign = static_cast<std::uint16_t>((bits >> 16) & 0x8000U);

    if (magnitude >= overflow) [[unlikely]] {
        // Dropping low bits could leave an infinity of a NaN, so a NaN is made quiet.
        const std::uint32_t payload = magnitude > infinity ? 0x200U | ((magnitude >> 13) & 0x3ffU) : 0U;
        return static_cast<std::uint16_t>(sign | 0x7c00U | payload);
    }
    const std::uint32_t normal = (magnitude - (112U << 23)) >> 13;
    const std::uint32_t shift = std::min(126U - std::min(magnitude >> 23, 126U), 31U);
    const std::uint32_t denormal = ((magnitude & 0x7fffffU) | 0x800000U) >> shift;
    return static_cast<std::uint16_t>(sign | (magnitude < smallestNormal ? denormal : normal));
}

/// Value of the half float with these bits; exact.
[[nodiscard]] constexpr float floatFromHalf(std::uint16_t half) noexcept
{
    const std::uint32_t sign = (half & 0x8000U) << 16;
    const std::uint32_t exponent = (half >> 10) & 0x1fU;
    const std::uint32_t mantissa = half & 0x3ffU;
    if (exponent == 0) {
        constexpr float denormalStep = 1.0F / 16777216.0F; // 2^-24
        const float magnitude = static_cast<float>(mantissa) * denormalStep;
        return sign != 0 ? -magnitude : magnitude;
    }
    const std::uint32_t widened = exponent == 31 ? 255U : exponent + 112U;
    return std::bit_cast<float>(sign | (widened << 23) | (mantissa << 13));
}

} // namespace tarvo::skarnvisor
