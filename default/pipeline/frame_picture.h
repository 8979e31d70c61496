#pragma once

#include "contracts/runtime/point_info.h"
#include "default/frame/frame_loops.h"
#include "default/frame/point_store.h"
#include "default/frame/vertex.h"
#include "default/frame/zeroed_vector.h"
#include "default/models/settings_value.h"
#include "default/pipeline/canvas_ring.h"

#include <QByteArray>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace tarvo::skarnvisor {

/// What the canvas draws and the points behind it.
///
/// Two sides meet here. The published side is what QML reads, under `frameMutex`. The working side is
/// what a parse or the decoder's fast path writes, under `SDKSource::frameLock`; the end of a parse
/// publishes it by a swap, so that a reader never sees half a frame and no array is copied. With a ring of
/// canvases the swap is with the arrays of the current slot, and costs the same however deep the stack is.
struct FramePicture {
  using Point = tarvo::lidar::SDKPointInfo;
  using VertexArray = ZeroedVector<Vertex>;
  static constexpr std::size_t storeSizeAtStart = 76'000;
  static constexpr std::size_t rowsAtStart = 1024;

  FramePicture();

  mutable std::mutex frameMutex;  ///< guards the members down to `overlayRows`
  /// Held beside frameMutex for the moment in which canvases, stored points or rows change places. A pass over a deep
  /// stack has frameMutex for seconds: who shows single cells of the table, or asks for sizes, takes this one alone.
  mutable std::mutex placesMutex;
  VertexArray vertices;           ///< of the one picture; empty once a canvas shows the newest frames
  std::array<VertexArray, CanvasRing::size> canvases;
  PointStore frameStore;                        ///< with a ring, one block a canvas
  ZeroedVector<std::uint32_t> spreadSheetRows;  ///< table row to frame-store position
  ZeroedVector<std::uint32_t> workRows;         ///< those of the next listing, as many
  int shownCanvas = -1;                         ///< canvas of the newest frames; -1: they are in `vertices`
  std::size_t untouchedPoints = 0;              ///< of the stack, sized but never written: no memory is behind them yet
  QByteArray fastVertex;
  bool fastVertexValid = false;
  bool storeMatchesVertices = true;  ///< false after a frame of the fast path, which stores no points
  LaserTable laserTable;
  int laserCount = 0;
  std::vector<Vertex> overlayVertices;
  std::vector<Point> overlayPointStore;
  int rgbOverlayPrimitiveCount = 0;
  int rgbOverlayCols = 0;
  int rgbOverlayRows = 0;

  Relaxed<int> primitiveCount{0};      ///< points that the next draw takes; written under frameMutex
  Relaxed<int> listedRows{0};          ///< valid entries of spreadSheetRows; written under frameMutex
  Relaxed<bool> frameWithheld{false};  ///< the source's frame is not the picture's: it had nothing to show

  // The working side
  VertexArray workVertices;
  PointStore::Block workStore;
  LaserTable workLasers;
  std::size_t pointCapacity = 0;  ///< what the vertices were sized for

  Snapshot<std::vector<std::int32_t>> areaMask;  ///< per frame-store position, area cuts that hold it
  Relaxed<std::uint32_t> areaFlags{2};

  /// Takes a new capacity of a frame, points; the table rows start afresh with it.
  void setCapacity(std::size_t capacity);

  /// Readies the working side for `pointNum` points. Its vertices are at least `pointCapacity`, with a ring one
  /// canvas, and all hidden when their number changes.
  void fitWork(const CanvasRing &ring, std::size_t pointNum);

  /// Makes the working side the picture. With a ring, its vertices and points go to the current slot, whose fill
  /// grows by `pointCount`.
  void publish(CanvasRing &ring, std::size_t pointNum, int pointCount, int lasers);
  /// Keeps the picture, since the frame has no visible point. With a ring, its current slot is hidden all the same.
  void withhold(const CanvasRing &ring, std::size_t pointNum);
  /// The same as `publish` for a frame of the fast path, which has no stored points.
  void publishFast(int pointCount, int lasers);

  void dropFastVertex();

  /// Bytes of memory behind the arrays of the stack, and how many of them the system has not handed out yet.
  struct Held {
    std::size_t bytes = 0;
    std::size_t untouchedBytes = 0;
  };
  Held held() const;
  /// The arrays of a stack.
  struct Stack {
    std::array<VertexArray, CanvasRing::size> canvases;
    PointStore store;
    ZeroedVector<std::uint32_t> rows;
  };
  /// Makes the arrays for a ring of `count` canvases, apart from those in use. `goesOn` is told the share done, 0 to 1,
  /// between the canvases; null when it answers false. Throws std::bad_alloc.
  static std::shared_ptr<Stack> makeStack(int count, std::size_t pointsPerCanvas,
                                          const std::function<bool(double share)> &goesOn = {});
  /// Puts `stack` in the place of the arrays in use and leaves those in it. Caller holds frameMutex.
  void takeStackLocked(Stack &stack);
  /// Empties the canvases and the points behind them; what is shown stays in `vertices`. The memory is given
  /// back by whoever lets go of the result. Caller holds frameMutex.
  std::shared_ptr<void> dropStackLocked();
  /// Sizes `workRows` for `points` rows, and puts them in the place of the table's. Caller holds frameMutex.
  void fitRowsLocked(std::size_t points);
  /// Those of the next listing are given back unless kept: in a deep stack they are as many as its points.
  void publishRowsLocked(std::size_t listed, bool keepsWork);

  QByteArray vertexBytes() const;
  QByteArray canvasBytes(const CanvasRing &ring, int index) const;
  int canvasPoints(const CanvasRing &ring, int index) const;
  QByteArray laserBytes() const;
  QByteArray overlayBytes() const;

  /// Hides what stands in the working side behind the first `pointNum` points, up to `drawn`.
  void hideBehind(std::size_t pointNum, std::size_t drawn);
  /// Moves the working side to the ring's current slot: true by a swap, false by a copy. Caller holds frameMutex.
  bool fillSlotLocked(const CanvasRing &ring, std::size_t pointNum);
  /// The newest frames' vertices go to where they are without a ring. Caller holds frameMutex.
  void keepShownLocked();

  /// Number of points that have vertex and stored point, without a ring. Caller holds frameMutex.
  std::size_t storedCountLocked() const;
  /// Valid points of a canvas: written, with a vertex and with a stored point. Caller holds frameMutex.
  std::size_t validCountLocked(const CanvasRing &ring, int canvas) const;
};

}  // namespace tarvo::skarnvisor
