#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "contracts/runtime/point_info.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace tarvo::skarnvisor {

/// From so many points on a copy goes past the caches: it would push out the points that it is made from, and nobody
/// reads it before the next frame.
inline constexpr std::size_t streamedPoints = 50'000;

/// Copies points to memory without taking them into the caches. The thread calls `endStream` before others may look.
inline void streamPoints(const lidar::SDKPointInfo *from, lidar::SDKPointInfo *to, std::size_t count) {
  std::size_t bytes = count * sizeof(lidar::SDKPointInfo);
  auto *source = reinterpret_cast<const std::byte *>(from);
  auto *target = reinterpret_cast<std::byte *>(to);
#ifdef __SSE2__
  constexpr std::size_t lane = sizeof(__m128i);
  if (reinterpret_cast<std::uintptr_t>(target) % lane == 0) {
    for (; bytes >= lane; bytes -= lane, source += lane, target += lane)
      _mm_stream_si128(reinterpret_cast<__m128i *>(target), _mm_loadu_si128(reinterpret_cast<const __m128i *>(source)));
  }
#endif
  std::memcpy(target, source, bytes);
}

inline void endStream() {
#ifdef __SSE2__
  _mm_sfence();
#endif
}

}  // namespace tarvo::skarnvisor
