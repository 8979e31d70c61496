#pragma once

#include <cstdint>

#include "default/frame/vertex.h"

namespace tarvo::skarnvisor {

/// Whether vertices are hidden or highlighted: camera lidars by the whole word, the others by the value.
struct MarkTest {
  bool byWord;

  // As bits, a half float is below 0 from behind the negative zero to minus infinity, above 1 from behind 1 to
  // infinity.
  bool hidden(std::uint32_t word) const {
    const std::uint32_t half = word & 0xffffU;
    return byWord ? word == hiddenMark : half > 0x8000U && half <= 0xfc00U;
  }
  bool highlighted(std::uint32_t word) const {
    const std::uint32_t half = word & 0xffffU;
    return byWord ? word == highlightMark : half > 0x3c00U && half <= 0x7c00U;
  }
};

}  // namespace tarvo::skarnvisor
