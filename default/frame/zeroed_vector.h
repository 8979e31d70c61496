#pragma once

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

namespace tarvo::skarnvisor {

/// `bytes` of zeroed memory. A large block comes straight from the system, which hands out its pages as they
/// are first written; releasing it gives them back at once. Throws std::bad_alloc.
void *allocateZeroed(std::size_t bytes);
/// `bytes` as they were asked for.
void releaseZeroed(void *block, std::size_t bytes) noexcept;

/// Allocator of memory that is zero already, so that making a long vector touches none of it.
template <typename T>
class ZeroedAllocator {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  using value_type = T;

  ZeroedAllocator() = default;
  template <typename U>
  ZeroedAllocator(const ZeroedAllocator<U> &) noexcept {}

  T *allocate(std::size_t count) {
    if (count > static_cast<std::size_t>(-1) / 2 / sizeof(T)) throw std::bad_alloc();
    return static_cast<T *>(allocateZeroed(count * sizeof(T)));
  }
  void deallocate(T *block, std::size_t count) noexcept { releaseZeroed(block, count * sizeof(T)); }

  /// The zeros are there.
  template <typename U>
  void construct(U *) noexcept {}
  template <typename U, typename First, typename... Rest>
  void construct(U *place, First &&first, Rest &&...rest) {
    ::new (static_cast<void *>(place)) U{std::forward<First>(first), std::forward<Rest>(rest)...};
  }

  friend bool operator==(const ZeroedAllocator &, const ZeroedAllocator &) { return true; }
};

/// A vector for millions of plain values, whose growth costs no writing. An entry that `resize` brings back
/// after the vector was shorter holds what it held before, a new one zeros.
template <typename T>
using ZeroedVector = std::vector<T, ZeroedAllocator<T>>;

}  // namespace tarvo::skarnvisor
