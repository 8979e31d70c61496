#pragma once

#include <bit>
#include <cstdint>
#include <functional>
#include <span>

namespace tf {
class Executor;
}

namespace tarvo::skarnvisor {

/// An unsigned number for a value, in the same order: a < b gives a smaller key, equal values the same one. A value
/// that is no number stands behind all others.
[[nodiscard]] inline std::uint64_t sortKey(double value) noexcept {
  if (value != value) return ~std::uint64_t{0};
  constexpr std::uint64_t sign = std::uint64_t{1} << 63;
  const auto bits = std::bit_cast<std::uint64_t>(value + 0.0);  // no negative zero
  return (bits & sign) != 0 ? ~bits : bits | sign;
}

/// The key that stands for the descending order; what is no number stays behind all others.
[[nodiscard]] constexpr std::uint64_t reversedSortKey(std::uint64_t key) noexcept {
  return key == ~std::uint64_t{0} ? key : ~key;
}

/// Puts `rows` into the ascending order of their keys, `keys[i]` being that of `rows[i]`; rows of equal keys keep their
/// order. Takes as many passes over the rows as the keys have digits of 11 bits that differ.
void sortRows(tf::Executor &executor, std::span<std::uint32_t> rows, std::span<const std::uint64_t> keys);

using RowKeys = std::function<void(std::span<const std::uint32_t> rows, std::uint64_t *keys)>;
using RowBefore = std::function<bool(int a, int b)>;

/// Puts rows of a table into the order that it asks for: 1 ascending, -1 descending, any other leaves them. By `keys`,
/// which order ascending, or where there are none by `before`, which fits `order`. Both are called from several
/// threads; the caller holds the lock of what they read.
void sortRows(tf::Executor &executor, std::span<std::uint32_t> rows, int order, const RowKeys &keys,
              const RowBefore &before);

}  // namespace tarvo::skarnvisor
