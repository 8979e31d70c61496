#pragma once

#include "contracts/runtime/point_info.h"
#include "default/frame/frame_loops.h"
#include "default/frame/vertex.h"
#include "default/models/settings_value.h"
#include "default/pipeline/canvas_ring.h"

#include <QByteArray>

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

namespace tarvo::skarnvisor {

/// What the canvas draws and the points behind it.
///
/// Two sides meet here. The published side is what QML reads, under `frameMutex`. The working side is
/// what a parse or the decoder's fast path writes, under `SDKSource::frameLock`; the end of a parse
/// publishes it by a swap, so that a reader never sees half a frame and no array is copied.
struct FramePicture {
  using Point = tarvo::lidar::SDKPointInfo;
  static constexpr std::size_t storeSizeAtStart = 76'000;
  static constexpr std::size_t rowsAtStart = 1024;

  FramePicture();

  mutable std::mutex frameMutex;  ///< guards the members down to `overlayRows`
  std::vector<Vertex> vertices;
  std::array<std::vector<Vertex>, CanvasRing::size> canvases;
  std::vector<Point> frameStore;
  std::vector<std::uint32_t> spreadSheetRows;  ///< table row to frame-store position
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
  Relaxed<bool> frameWithheld{false};  ///< the source's frame is not the picture's: it had nothing to show

  // The working side
  std::vector<Vertex> workVertices;
  std::vector<Point> workStore;
  LaserTable workLasers;
  std::size_t pointCapacity = 0;  ///< what the vertices were sized for

  Snapshot<std::vector<std::int32_t>> areaMask;  ///< per frame-store position, area cuts that hold it
  Relaxed<std::uint32_t> areaFlags{2};

  /// Takes a new capacity of a frame, points; the table rows start afresh with it.
  void setCapacity(std::size_t capacity);

  /// Working vertices for `pointNum` points, at least `pointCapacity`; all hidden when their number changes.
  void fitWork(std::size_t pointNum);

  /// Makes the working side the picture. With a ring, its vertices and points go to the current slot.
  void publish(const CanvasRing &ring, std::size_t pointNum, int pointCount, int lasers);
  /// Keeps the picture, since the frame has no visible point. With a ring, its current slot is hidden all the same.
  void withhold(const CanvasRing &ring, std::size_t pointNum);
  /// The same as `publish` for a frame of the fast path, which has no stored points.
  void publishFast(int pointCount, int lasers);

  void dropFastVertex();

  QByteArray vertexBytes() const;
  QByteArray canvasBytes(const CanvasRing &ring, int index) const;
  int canvasPoints(const CanvasRing &ring, int index) const;
  QByteArray laserBytes() const;
  QByteArray overlayBytes() const;

  /// Copies the working side to the ring's current slot. Caller holds frameMutex.
  void fillSlotLocked(const CanvasRing &ring, std::size_t pointNum);

  /// Number of points that have vertex and stored point, without a ring. Caller holds frameMutex.
  std::size_t storedCountLocked() const;
  /// Valid points of a canvas: written, with a vertex and with a stored point. Caller holds frameMutex.
  std::size_t validCountLocked(const CanvasRing &ring, int canvas) const;
};

}  // namespace tarvo::skarnvisor
