#include "default/frame/memory_budget.h"

#include <algorithm>

namespace tarvo::skarnvisor {

namespace {

constexpr std::uint64_t gib = std::uint64_t{1} << 30;
/// Share of the available memory that passes the first test.
constexpr double quickShare = 0.8;

}  // namespace

int StackShape::slotsInUse() const {
  return std::min((frames - 1 + framesPerCanvas) / framesPerCanvas, StackLimits::canvases);
}

StackShape stackShape(int frames) {
  if (frames > StackLimits::canvases * StackLimits::groupFrames)
    return {frames, (frames + StackLimits::canvases - 1) / StackLimits::canvases, StackLimits::canvases};
  return {frames, StackLimits::groupFrames, frames / StackLimits::groupFrames};
}

int stackDepth(int frames) {
  const int steps = (frames + StackLimits::depthStep - 1) / StackLimits::depthStep;
  return std::max(steps, 1) * StackLimits::depthStep;
}

QuickTest quickTest(int frames, std::size_t pointsPerFrame, std::uint64_t availableBytes) {
  const std::uint64_t frameBytes = std::uint64_t{pointsPerFrame} * StackLimits::quickPointBytes;
  const double grant = quickShare * static_cast<double>(availableBytes);
  QuickTest test;
  test.neededBytes = frameBytes * static_cast<std::uint64_t>(frames);
  test.passed = static_cast<double>(test.neededBytes) <= grant;
  if (frameBytes > 0)
    test.suggestedFrames = static_cast<int>(
        std::clamp(grant / static_cast<double>(frameBytes), 1.0, static_cast<double>(StackLimits::frames)));
  return test;
}

double usableShare(std::uint64_t totalBytes) {
  if (totalBytes < 8 * gib) return 0.7;
  return totalBytes >= 16 * gib ? 0.85 : 0.8;
}

double usableBytes(const MemoryFigures &memory, std::uint64_t heldBytes) {
  return static_cast<double>(memory.availableBytes + heldBytes) * usableShare(memory.totalBytes);
}

int deepestStack(std::size_t pointsPerFrame, double usable) {
  int best = StackLimits::depthStep;
  if (pointsPerFrame == 0) return best;
  const double pointCost = static_cast<double>(pointsPerFrame) * StackLimits::pointBytes;
  for (int depth = StackLimits::depthStep; depth <= StackLimits::frames; depth += StackLimits::depthStep) {
    const StackShape shape = stackShape(depth);
    if (static_cast<double>(shape.canvases) * shape.framesPerCanvas * pointCost > usable) break;
    best = depth;
  }
  return best;
}

}  // namespace tarvo::skarnvisor
