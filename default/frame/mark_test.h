#pragma once

#include <cstdint>

#include "default/frame/half_float.h"
#include "default/frame/vertex.h"

namespace tarvo::skarnvisor {

/// Whether vertices are hidden or highlighted: camera lidars by the whole word, the others by the value.
struct MarkTest {
  bool byWord;

  bool hidden(std::uint32_t word) const {
    return byWord ? word == hiddenMark : floatFromHalf(static_cast<std::uint16_t>(word)) < 0.0F;
  }
  bool highlighted(std::uint32_t word) const {
    return byWord ? word == highlightMark : floatFromHalf(static_cast<std::uint16_t>(word)) > 1.0F;
  }
};

}  // namespace tarvo::skarnvisor
