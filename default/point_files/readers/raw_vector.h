#pragma once

#include <memory>
#include <utility>
#include <vector>

namespace tarvo::skarnvisor {

/// Allocator whose vectors leave new elements of trivial types unset: a reader writes each of them right away, and
/// clearing megabytes first would cost as much as reading them.
template <typename T>
struct UnsetAllocator : std::allocator<T> {
  template <typename U>
  struct rebind {
    using other = UnsetAllocator<U>;
  };
  template <typename U>
  void construct(U *place) noexcept {
    ::new (static_cast<void *>(place)) U;
  }
  template <typename U, typename... Arguments>
  void construct(U *place, Arguments &&...arguments) {
    ::new (static_cast<void *>(place)) U(std::forward<Arguments>(arguments)...);
  }
};

template <typename T>
using RawVector = std::vector<T, UnsetAllocator<T>>;

}  // namespace tarvo::skarnvisor
