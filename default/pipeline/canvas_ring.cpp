#include "default/pipeline/canvas_ring.h"

#include <algorithm>

namespace tarvo::skarnvisor {

void CanvasRing::restart() {
  canvasRestart = true;
  canvasIndex = 0;
  canvasOffset = 0;
  for (Relaxed<int> &count : canvasFrames) count = 0;
}

void CanvasRing::enterNextGroup() {
  if (canvasRestart) {
    canvasOffset = 0;
    canvasRestart = false;
  }
  if (!active()) {
    canvasOffset = 0;
    return;
  }
  int index = std::clamp<int>(canvasIndex, 0, size - 1);
  canvasFrames[index] = canvasFrames[index] + 1;
  if (canvasFrames[index] < canvasTargets[index]) return;
  canvasFrames[index] = 0;
  index = (index + 1) % size;
  if (canvasTargets[index] == 0) index = 0;
  canvasIndex = index;
  canvasOffset = 0;
}

std::size_t CanvasRing::room() const {
  const int left = canvasBufferSize - canvasOffset;
  return left > 0 ? static_cast<std::size_t>(left) : 0;
}

void CanvasRing::commit(int points) {
  if (!active()) return;
  canvasOffset = canvasOffset + points;
  canvasFill[static_cast<std::size_t>(canvasIndex.load())] = canvasOffset.load();
}

std::size_t CanvasRing::firstPosition() const {
  if (!active()) return 0;
  return canvasStart(canvasIndex) + static_cast<std::size_t>(canvasOffset.load());
}

}  // namespace tarvo::skarnvisor
