#include "default/pipeline/canvas_ring.h"

#include <algorithm>

namespace tarvo::skarnvisor {

StackSettings CanvasRing::settings() const {
  StackSettings now;
  now.frames = frameNumber;
  now.framesPerCanvas = std::max<int>(framesPerCanvas, 1);
  now.cached = internalCache && now.frames >= 2;
  return now;
}

void CanvasRing::shape(const StackShape &stack, int points) {
  frameNumber = stack.frames;
  framesPerCanvas = stack.framesPerCanvas;
  canvasCount = stack.canvases;
  canvasBufferSize = points;
  canvasPointCapacity = points;
  canvasIndex = 0;
  canvasOffset = 0;
  hasGroup = false;
  canvasTargets.fill(0);
  std::fill_n(canvasTargets.begin(), stack.slotsInUse(), 1);
  canvasFill.fill(0);
  canvasFrames.fill(0);
}

void CanvasRing::leave(int frames) {
  frameNumber = frames;
  canvasCount = 0;
  framesPerCanvas = 1;
  canvasOffset = 0;
  hasGroup = false;
  canvasFill.fill(0);
  canvasFrames.fill(0);
}

void CanvasRing::restart() {
  canvasRestart = true;
  hasGroup = false;
  canvasIndex = 0;
  canvasOffset = 0;
  canvasFrames.fill(0);
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
  hasGroup = true;
  int index = std::clamp<int>(canvasIndex, 0, size - 1);
  canvasFrames[index] = canvasFrames[index] + 1;
  if (canvasFrames[index] < canvasTargets[index]) return;
  canvasFrames[index] = 0;
  index = (index + 1) % size;
  if (canvasTargets[index] == 0) index = 0;
  canvasIndex = index;
  canvasOffset = 0;
}

bool CanvasRing::reenterGroup() {
  if (active() && !hasGroup) return false;
  canvasOffset = 0;
  return true;
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
