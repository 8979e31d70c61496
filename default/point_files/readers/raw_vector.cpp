#include "default/point_files/readers/raw_vector.h"

#include <sys/mman.h>

#include <cstdint>
#include <cstdlib>

namespace tarvo::skarnvisor {

namespace {

constexpr std::size_t hugePage = std::size_t{2} << 20;
constexpr std::size_t smallestInHugePages = 2 * hugePage;

}  // namespace

void preferHugePages(void *memory, std::size_t bytes) noexcept {
  const auto begin = (reinterpret_cast<std::uintptr_t>(memory) + hugePage - 1) / hugePage * hugePage;
  const auto end = (reinterpret_cast<std::uintptr_t>(memory) + bytes) / hugePage * hugePage;
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the border of a page is a number
  if (begin < end) ::madvise(reinterpret_cast<void *>(begin), end - begin, MADV_HUGEPAGE);
}

void *takeRawMemory(std::size_t bytes) {
  if (bytes < smallestInHugePages) return ::operator new(bytes);
  void *const memory = std::aligned_alloc(hugePage, (bytes + hugePage - 1) / hugePage * hugePage);
  if (memory == nullptr) throw std::bad_alloc();
  preferHugePages(memory, bytes);
  return memory;
}

void giveRawMemory(void *memory, std::size_t bytes) noexcept {
  if (bytes < smallestInHugePages)
    ::operator delete(memory);
  else
    std::free(memory);
}

}  // namespace tarvo::skarnvisor
