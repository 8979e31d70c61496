#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "contracts/runtime/point_info.h"
#include "default/frame/lanes.h"
#include "default/frame/vertex.h"

namespace tarvo::skarnvisor {

/// A short run of points on its way to vertices: where each stands, its colour word and whether it is
/// hidden. Lives on the stack of a loop; the arrays hold what was put there, up to `count`.
template <std::size_t length>
struct VertexRun {
  static_assert(length % lanes::width == 0);

  std::size_t count;
  std::array<float, length> x;  ///< metres
  std::array<float, length> y;
  std::array<float, length> z;
  std::array<std::uint32_t, length> words;
  std::array<std::uint8_t, length> hidden;  ///< 1 or 0

  /// Starts a run of `points`. Lanes read whole groups of points, so what lies behind the last one is
  /// given values, and hidden.
  explicit VertexRun(std::size_t points)  // the arrays stay unset: their steps fill them
      : count(points) {
    std::fill(hidden.begin() + count, hidden.end(), std::uint8_t{1});
    for (auto *values : {&x, &y, &z}) {
      std::fill(values->begin() + count, values->end(), 0.0F);
    }
    std::fill(words.begin() + count, words.end(), 0U);
  }

  void placeAt(const lidar::SDKPointInfo *points) {
    for (std::size_t i = 0; i < count; ++i) {
      x[i] = points[i].x;
      y[i] = points[i].y;
      z[i] = points[i].z;
    }
  }

  void hideEmptySlots(const lidar::SDKPointInfo *points) {
    for (std::size_t i = 0; i < count; ++i) {
      hidden[i] = static_cast<std::uint8_t>(points[i].channel == 0);
    }
  }

  /// Writes the vertices of the run; a hidden one gets the mark and keeps its position words.
  void write(Vertex *vertices) const {
    for (std::size_t i = 0; i < count; i += lanes::width) {
      std::uint32_t anyHidden;
      static_assert(sizeof anyHidden == lanes::width);
      std::memcpy(&anyHidden, &hidden[i], sizeof anyHidden);
      if (anyHidden == 0) {
        lanes::packVertices(&x[i], &y[i], &z[i], &words[i], vertices + i);
        continue;
      }
      std::array<Vertex, lanes::width> packed;
      lanes::packVertices(&x[i], &y[i], &z[i], &words[i], packed.data());
      const std::size_t end = std::min(lanes::width, count - i);
      for (std::size_t k = 0; k < end; ++k) {
        if (hidden[i + k] != 0) {
          vertices[i + k].color = hiddenMark;
        } else {
          vertices[i + k] = packed[k];
        }
      }
    }
  }
};

/// True when a colour word is not the hidden mark.
[[nodiscard]] inline bool anyShown(std::span<const Vertex> vertices) {
  return std::ranges::any_of(vertices, [](const Vertex &vertex) { return vertex.color != hiddenMark; });
}

}  // namespace tarvo::skarnvisor
