#pragma once

#include "default/frame/memory_budget.h"
#include "default/models/settings_value.h"

#include <array>
#include <cstddef>

namespace tarvo::skarnvisor {

/// The settings of the stack that belong together, for one run of the producer.
struct StackSettings {
  int frames = 1;
  int framesPerCanvas = 1;
  bool cached = false;  ///< decoded group by group into canvases; else the whole stack for each picture
};

/// The ring of canvases that shows a stack of frames: which slot a group of frames goes to and where
/// in it the next points land. The producer restarts it, the parser moves it, the GUI thread reads the
/// counts. The vertices of the canvases themselves lie in `FramePicture`.
struct CanvasRing {
  static constexpr int size = StackLimits::canvases;
  static constexpr int pointCapacityAtStart = 76'000;

  Relaxed<int> frameNumber{1};  ///< depth of the stack, frames
  Relaxed<bool> internalCache{true};
  Relaxed<int> canvasCount{0};  ///< canvases in use; 0: one picture, no ring
  Relaxed<int> canvasIndex{0};
  Relaxed<int> canvasOffset{0};
  Relaxed<bool> canvasRestart{false};
  Relaxed<int> framesPerCanvas{1};
  Relaxed<int> canvasPointCapacity{pointCapacityAtStart};
  Relaxed<int> canvasBufferSize{pointCapacityAtStart};
  std::array<Relaxed<int>, size> canvasFill;     ///< points written per slot
  std::array<Relaxed<int>, size> canvasTargets;  ///< groups a slot takes; 0: slot not in use
  std::array<Relaxed<int>, size> canvasFrames;   ///< groups counted since the slot was entered

  Relaxed<bool> hasGroup{false};  ///< one has entered since the stack was shaped or restarted

  CanvasRing() { canvasTargets.fill(1); }

  bool active() const { return canvasCount > 0; }

  StackSettings settings() const;
  /// Takes the shape of a stack whose canvases have room for `points` points; empty.
  void shape(const StackShape &stack, int points);
  /// Shows `frames` frames in one picture, without canvases.
  void leave(int frames);

  /// Asks the next group to begin a stack at slot 0.
  void restart();

  /// Takes up a pending restart and enters the slot for the next group.
  void enterNextGroup();
  /// Goes back to the begin of the slot of the last group, which is to be written again; false without one.
  bool reenterGroup();

  /// Points of the current slot that are still free.
  std::size_t room() const;

  /// Counts `points` as written to the current slot.
  void commit(int points);

  /// Frame-store position of a canvas's first point.
  std::size_t canvasStart(int canvas) const {
    return static_cast<std::size_t>(canvasPointCapacity.load()) * static_cast<std::size_t>(canvas);
  }
  /// Frame-store position of the first point of the frame that is being parsed.
  std::size_t firstPosition() const;
};

}  // namespace tarvo::skarnvisor
