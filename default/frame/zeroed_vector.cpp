#include "default/frame/zeroed_vector.h"

#include <sys/mman.h>

#include <cstdlib>

namespace tarvo::skarnvisor {

namespace {

// Under the address sanitizer every block comes from its allocator, which watches the bounds.
#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t ownPagesFrom = static_cast<std::size_t>(-1);
#else
constexpr std::size_t ownPagesFrom = std::size_t{1} << 20;
#endif

}  // namespace

void *allocateZeroed(std::size_t bytes) {
  if (bytes < ownPagesFrom) {
    if (void *const block = std::calloc(bytes, 1)) return block;
    throw std::bad_alloc();
  }
  void *const block = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (block == MAP_FAILED) throw std::bad_alloc();
  // Large pages make the first writing of a canvas many times cheaper; without them all works the same.
  madvise(block, bytes, MADV_HUGEPAGE);
  return block;
}

void releaseZeroed(void *block, std::size_t bytes) noexcept {
  if (bytes < ownPagesFrom)
    std::free(block);
  else
    munmap(block, bytes);
}

}  // namespace tarvo::skarnvisor
