#pragma once

#include "default/files/system_memory.h"

#include <cstddef>
#include <cstdint>

namespace tarvo::skarnvisor {

/// What bounds a stack of frames, and what one point of it costs.
struct StackLimits {
  static constexpr int frames = 3000;          ///< deepest stack
  static constexpr int canvases = 30;          ///< slots of the ring
  static constexpr int groupFrames = 5;        ///< frames a canvas holds while the ring is not full
  static constexpr int depthStep = 5;          ///< a stack in canvases is a multiple of this deep
  static constexpr int quickPointBytes = 100;  ///< of the first test of a request
  static constexpr int pointBytes = 104;       ///< 88 stored, 12 drawn, 4 for the row of the point table
};

/// How a stack lies in the ring.
struct StackShape {
  int frames = 1;
  int framesPerCanvas = 1;
  int canvases = 0;

  /// Slots that the groups of the stack go round in, never more than the ring has.
  int slotsInUse() const;

  friend bool operator==(const StackShape &, const StackShape &) = default;
};

/// The shape of a stack of `frames` frames, a multiple of the depth step.
StackShape stackShape(int frames);

/// The depth that a request for `frames` frames means: up to the next multiple of the depth step.
int stackDepth(int frames);

/// First test of a request, before anything is sized.
struct QuickTest {
  bool passed = false;
  std::uint64_t neededBytes = 0;
  int suggestedFrames = 1;  ///< what would have passed, at least 1
};
QuickTest quickTest(int frames, std::size_t pointsPerFrame, std::uint64_t availableBytes);

/// Share of the memory that a stack may take: 0.7 on a machine below 8 GiB, 0.85 from 16 GiB on, else 0.8.
double usableShare(std::uint64_t totalBytes);

/// What a stack may take, with what it holds now counted as free.
double usableBytes(const MemoryFigures &memory, std::uint64_t heldBytes);

/// The deepest stack that `usable` bytes hold; the smallest one at least, and for frames of no points.
int deepestStack(std::size_t pointsPerFrame, double usable);

}  // namespace tarvo::skarnvisor
