#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace tarvo::skarnvisor {

/// Memory for `bytes`, unset. A large block is asked for in huge pages: touching fresh memory in small ones costs more
/// than reading a file into it. @throws std::bad_alloc
[[nodiscard]] void *takeRawMemory(std::size_t bytes);
/// `bytes` as given to `takeRawMemory`.
void giveRawMemory(void *memory, std::size_t bytes) noexcept;
/// Asks for huge pages in memory that nothing has been written to yet; a hint that may come to nothing.
void preferHugePages(void *memory, std::size_t bytes) noexcept;

/// Allocator whose vectors leave new elements of trivial types unset: a reader writes each of them right away, and
/// clearing megabytes first would cost as much as reading them.
template <typename T>
struct UnsetAllocator {
  using value_type = T;

  UnsetAllocator() = default;
  template <typename U>
  UnsetAllocator(const UnsetAllocator<U> &) noexcept {}

  [[nodiscard]] T *allocate(std::size_t count) {
    if (count > static_cast<std::size_t>(-1) / 2 / sizeof(T)) throw std::bad_array_new_length();
    return static_cast<T *>(takeRawMemory(count * sizeof(T)));
  }
  void deallocate(T *memory, std::size_t count) noexcept { giveRawMemory(memory, count * sizeof(T)); }

  template <typename U>
  void construct(U *place) noexcept {
    ::new (static_cast<void *>(place)) U;
  }
  template <typename U, typename... Arguments>
  void construct(U *place, Arguments &&...arguments) {
    ::new (static_cast<void *>(place)) U(std::forward<Arguments>(arguments)...);
  }
  friend bool operator==(const UnsetAllocator &, const UnsetAllocator &) { return true; }
};

template <typename T>
using RawVector = std::vector<T, UnsetAllocator<T>>;

/// Gives the vector `size` unset elements. What it held is lost, and never held beside the new room.
template <typename T>
void renew(RawVector<T> &vector, std::size_t size) {
  if (vector.capacity() < size) RawVector<T>().swap(vector);
  vector.resize(size);
}

}  // namespace tarvo::skarnvisor
