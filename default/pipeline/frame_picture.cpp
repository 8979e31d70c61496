#include "default/pipeline/frame_picture.h"

#include <algorithm>

namespace tarvo::skarnvisor {

namespace {

template <typename Array>
QByteArray bytesOf(const Array &values, std::size_t count) {
  return {reinterpret_cast<const char *>(values.data()),
          static_cast<int>(std::min(count, values.size()) * sizeof(values[0]))};
}

std::size_t fromCount(int count) { return static_cast<std::size_t>(std::max(count, 0)); }

}  // namespace

FramePicture::FramePicture() : frameStore(storeSizeAtStart), spreadSheetRows(rowsAtStart, 0) {}

void FramePicture::setCapacity(std::size_t capacity) {
  if (capacity == pointCapacity) return;
  pointCapacity = capacity;
  const std::lock_guard lock(frameMutex);
  spreadSheetRows.assign(capacity + rowsAtStart, 0);
}

void FramePicture::fitWork(std::size_t pointNum) {
  const std::size_t size = std::max(pointCapacity, pointNum);
  if (workVertices.size() != size) workVertices.assign(size, hiddenVertex);
  workStore.resize(pointNum);
  workLasers.fill(LaserPoint{});
}

void FramePicture::publish(const CanvasRing &ring, std::size_t pointNum, int pointCount, int lasers) {
  // A source may count more points than it holds; what no point stands behind must not be drawn.
  const std::size_t drawn = std::min(fromCount(pointCount), workVertices.size());
  if (pointNum < drawn)
    std::fill(workVertices.begin() + static_cast<std::ptrdiff_t>(pointNum),
              workVertices.begin() + static_cast<std::ptrdiff_t>(drawn), hiddenVertex);

  const std::lock_guard lock(frameMutex);
  if (ring.active())
    fillSlotLocked(ring, pointNum);
  else
    frameStore.swap(workStore);
  vertices.swap(workVertices);
  frameWithheld = false;
  laserTable = workLasers;
  laserCount = std::min(lasers, static_cast<int>(laserTableSize));
  fastVertexValid = false;
  storeMatchesVertices = true;
  primitiveCount = pointCount;
}

void FramePicture::withhold(const CanvasRing &ring, std::size_t pointNum) {
  const std::lock_guard lock(frameMutex);
  frameWithheld = true;
  if (ring.active()) fillSlotLocked(ring, pointNum);
}

void FramePicture::fillSlotLocked(const CanvasRing &ring, std::size_t pointNum) {
  const auto offset = fromCount(ring.canvasOffset);
  auto &canvas = canvases[fromCount(ring.canvasIndex)];
  const std::size_t fitting = offset < canvas.size() ? std::min(pointNum, canvas.size() - offset) : 0;
  std::copy_n(workVertices.begin(), fitting, canvas.begin() + static_cast<std::ptrdiff_t>(offset));
  const std::size_t first = ring.firstPosition();
  const std::size_t stored = first < frameStore.size() ? std::min(pointNum, frameStore.size() - first) : 0;
  std::copy_n(workStore.begin(), stored, frameStore.begin() + static_cast<std::ptrdiff_t>(first));
}

void FramePicture::publishFast(int pointCount, int lasers) {
  const std::lock_guard lock(frameMutex);
  vertices.swap(workVertices);
  frameWithheld = false;
  laserCount = std::min(lasers, static_cast<int>(laserTableSize));
  storeMatchesVertices = false;
  primitiveCount = pointCount;
}

void FramePicture::dropFastVertex() {
  const std::lock_guard lock(frameMutex);
  fastVertexValid = false;
  fastVertex.clear();
}

QByteArray FramePicture::vertexBytes() const {
  const std::lock_guard lock(frameMutex);
  if (fastVertexValid && !fastVertex.isEmpty()) return fastVertex;
  return bytesOf(vertices, fromCount(primitiveCount));
}

QByteArray FramePicture::canvasBytes(const CanvasRing &ring, int index) const {
  if (!ring.active()) return index == 0 ? vertexBytes() : QByteArray();
  if (index < 0 || index >= CanvasRing::size) return {};
  const std::lock_guard lock(frameMutex);
  return bytesOf(canvases[fromCount(index)], fromCount(ring.canvasFill[fromCount(index)]));
}

int FramePicture::canvasPoints(const CanvasRing &ring, int index) const {
  if (index < 0 || index >= (ring.active() ? CanvasRing::size : 1)) return 0;
  const std::lock_guard lock(frameMutex);
  const std::size_t written = fromCount(ring.active() ? ring.canvasFill[fromCount(index)] : primitiveCount);
  return static_cast<int>(std::min(written, (ring.active() ? canvases[fromCount(index)] : vertices).size()));
}

QByteArray FramePicture::laserBytes() const {
  const std::lock_guard lock(frameMutex);
  return bytesOf(laserTable, fromCount(laserCount));
}

QByteArray FramePicture::overlayBytes() const {
  const std::lock_guard lock(frameMutex);
  return bytesOf(overlayVertices, fromCount(rgbOverlayPrimitiveCount));
}

std::size_t FramePicture::storedCountLocked() const {
  return std::min({fromCount(primitiveCount), vertices.size(), frameStore.size()});
}

std::size_t FramePicture::validCountLocked(const CanvasRing &ring, int canvas) const {
  const std::size_t first = ring.canvasStart(canvas);
  const std::size_t stored = first < frameStore.size() ? frameStore.size() - first : 0;
  return std::min({fromCount(ring.canvasFill[fromCount(canvas)]), canvases[fromCount(canvas)].size(), stored});
}

}  // namespace tarvo::skarnvisor
