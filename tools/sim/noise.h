#pragma once

#include <cmath>
#include <cstdint>

namespace tarvo::lidar::sim {

/// Scrambles 64 bits; neighbouring inputs give unrelated outputs.
[[nodiscard]] constexpr std::uint64_t scramble(std::uint64_t value) noexcept {
  value += 0x9E3779B97F4A7C15ull;
  value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9ull;
  value = (value ^ (value >> 27)) * 0x94D049BB133111EBull;
  return value ^ (value >> 31);
}

/// A stream of random numbers that depends on its key alone, so that results do not depend on which thread asks.
class Draw {
 public:
  template <typename... Keys>
  explicit constexpr Draw(std::uint64_t seed, Keys... keys) noexcept : state_(scramble(seed)) {
    ((state_ = scramble(state_ ^ static_cast<std::uint64_t>(keys))), ...);
  }

  /// In [0, 1).
  [[nodiscard]] constexpr double uniform() noexcept { return static_cast<double>(next() >> 11) * 0x1p-53; }
  [[nodiscard]] constexpr double between(double low, double high) noexcept { return low + (high - low) * uniform(); }

  /// Mean 0, deviation 1, never beyond ±3.5: the sum of four 16-bit uniforms.
  [[nodiscard]] constexpr double gaussian() noexcept {
    const std::uint64_t bits = next();
    const auto sum =
        static_cast<double>((bits & 0xFFFF) + (bits >> 16 & 0xFFFF) + (bits >> 32 & 0xFFFF) + (bits >> 48));
    return (sum / 65536.0 - 2.0) * 1.7320508075688772;
  }

  [[nodiscard]] constexpr std::uint64_t next() noexcept { return state_ = scramble(state_); }

 private:
  std::uint64_t state_;
};

}  // namespace tarvo::lidar::sim
