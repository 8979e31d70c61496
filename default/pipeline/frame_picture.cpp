#include "default/pipeline/frame_picture.h"

#include <algorithm>
#include <utility>

namespace tarvo::skarnvisor {

namespace {

template <typename Array>
QByteArray bytesOf(const Array &values, std::size_t count) {
  return {reinterpret_cast<const char *>(values.data()),
          static_cast<int>(std::min(count, values.size()) * sizeof(values[0]))};
}

/// Gives memory back that a deep stack's groups needed and `size` entries don't.
template <typename Array>
void letGoOfExcess(Array &array, std::size_t size) {
  if (array.capacity() > 4 * std::max(size, FramePicture::storeSizeAtStart)) Array().swap(array);
}

std::size_t fromCount(int count) { return static_cast<std::size_t>(std::max(count, 0)); }

}  // namespace

FramePicture::FramePicture() : frameStore(storeSizeAtStart), spreadSheetRows(rowsAtStart) {}

void FramePicture::setCapacity(std::size_t capacity) {
  if (capacity == pointCapacity) return;
  pointCapacity = capacity;
  ZeroedVector<std::uint32_t> rows(capacity + rowsAtStart);
  const std::scoped_lock lock(frameMutex, placesMutex);
  spreadSheetRows.swap(rows);
}

void FramePicture::fitRowsLocked(std::size_t points) {
  // A stack holds more points than the frame that the table was sized for.
  const std::size_t size = std::max(spreadSheetRows.size(), points);
  if (workRows.size() == size) return;
  const std::lock_guard places(placesMutex);
  workRows = ZeroedVector<std::uint32_t>(size);
}

void FramePicture::publishRowsLocked(std::size_t listed, bool keepsWork) {
  const std::lock_guard places(placesMutex);
  spreadSheetRows.swap(workRows);
  listedRows = static_cast<int>(listed);
  if (!keepsWork) workRows = ZeroedVector<std::uint32_t>();
}

void FramePicture::fitWork(const CanvasRing &ring, std::size_t pointNum) {
  const bool whole = ring.active();
  const std::size_t size = whole ? fromCount(ring.canvasBufferSize) : std::max(pointCapacity, pointNum);
  letGoOfExcess(workVertices, size);
  letGoOfExcess(workStore, size);
  if (workVertices.size() != size) workVertices.assign(size, hiddenVertex);
  workStore.resize(whole ? size : pointNum);
  workLasers.fill(LaserPoint{});
}

void FramePicture::publish(CanvasRing &ring, std::size_t pointNum, int pointCount, int lasers) {
  // A source may count more points than it holds; what no point stands behind must not be drawn.
  hideBehind(pointNum, fromCount(pointCount));
  const std::lock_guard lock(frameMutex);
  const bool swapped = ring.active() && fillSlotLocked(ring, pointNum);
  shownCanvas = swapped ? ring.canvasIndex.load() : -1;
  if (!ring.active()) {
    const std::lock_guard places(placesMutex);
    frameStore.swapBlock(0, workStore);
  }
  if (swapped)
    VertexArray().swap(vertices);
  else
    vertices.swap(workVertices);
  ring.commit(pointCount);
  frameWithheld = false;
  laserTable = workLasers;
  laserCount = std::min(lasers, static_cast<int>(laserTableSize));
  fastVertexValid = false;
  storeMatchesVertices = true;
  primitiveCount = pointCount;
}

void FramePicture::withhold(const CanvasRing &ring, std::size_t pointNum) {
  if (ring.active()) hideBehind(pointNum, fromCount(ring.canvasFill[fromCount(ring.canvasIndex)]));
  const std::lock_guard lock(frameMutex);
  frameWithheld = true;
  if (ring.active()) fillSlotLocked(ring, pointNum);
}

void FramePicture::hideBehind(std::size_t pointNum, std::size_t drawn) {
  const auto behind = [&](auto &values, const auto &hidden) {
    const std::size_t end = std::min(drawn, values.size());
    if (pointNum < end)
      std::fill(values.begin() + static_cast<std::ptrdiff_t>(pointNum),
                values.begin() + static_cast<std::ptrdiff_t>(end), hidden);
  };
  behind(workVertices, hiddenVertex);
  behind(workStore, Point{});
}

bool FramePicture::fillSlotLocked(const CanvasRing &ring, std::size_t pointNum) {
  const std::lock_guard places(placesMutex);
  const auto slot = fromCount(ring.canvasIndex);
  const auto offset = fromCount(ring.canvasOffset);
  auto &canvas = canvases[slot];
  const bool hasBlock = slot < frameStore.blocks() && frameStore.blockSize() == workStore.size();
  if (offset == 0 && canvas.size() == workVertices.size() && hasBlock) {
    canvas.swap(workVertices);
    frameStore.swapBlock(slot, workStore);
    untouchedPoints -= std::min(untouchedPoints, pointNum);
    return true;
  }
  // A further group in a slot that takes several.
  const std::size_t fitting = offset < canvas.size() ? std::min(pointNum, canvas.size() - offset) : 0;
  std::copy_n(workVertices.begin(), fitting, canvas.begin() + static_cast<std::ptrdiff_t>(offset));
  const auto stored = frameStore.from(ring.firstPosition());
  std::copy_n(workStore.begin(), std::min(pointNum, stored.size()), stored.begin());
  return false;
}

FramePicture::Held FramePicture::held() const {
  const std::lock_guard lock(placesMutex);
  Held held;
  for (const VertexArray &canvas : canvases) held.bytes += canvas.capacity() * sizeof(Vertex);
  held.bytes += frameStore.capacity() * sizeof(Point);
  held.bytes += (spreadSheetRows.capacity() + workRows.capacity()) * sizeof(std::uint32_t);
  held.untouchedBytes = std::min(held.bytes, untouchedPoints * (sizeof(Vertex) + sizeof(Point)));
  return held;
}

std::shared_ptr<FramePicture::Stack> FramePicture::makeStack(int count, std::size_t pointsPerCanvas,
                                                             const std::function<bool(double share)> &goesOn) {
  auto stack = std::make_shared<Stack>();
  const auto wanted = fromCount(count);
  for (std::size_t k = 0; k < wanted; ++k) {
    if (goesOn && !goesOn(static_cast<double>(k) / static_cast<double>(wanted))) return {};
    stack->canvases[k].resize(pointsPerCanvas);
    stack->store.shape(k + 1, pointsPerCanvas);
  }
  stack->rows.resize(wanted * pointsPerCanvas);
  return stack;
}

void FramePicture::takeStackLocked(Stack &stack) {
  const std::lock_guard places(placesMutex);
  keepShownLocked();
  canvases.swap(stack.canvases);
  std::swap(frameStore, stack.store);
  spreadSheetRows.swap(stack.rows);
  untouchedPoints = frameStore.size();
}

std::shared_ptr<void> FramePicture::dropStackLocked() {
  struct Dropped {
    std::array<VertexArray, CanvasRing::size> canvases;
    PointStore store;
  };
  const bool stacked = frameStore.blocks() != 1 ||
                       std::any_of(canvases.begin(), canvases.end(), [](auto &canvas) { return !canvas.empty(); });
  if (!stacked) return {};
  const std::lock_guard places(placesMutex);
  keepShownLocked();
  auto dropped = std::make_shared<Dropped>();
  dropped->canvases.swap(canvases);
  dropped->store = std::exchange(frameStore, PointStore(storeSizeAtStart));
  untouchedPoints = 0;
  return dropped;
}

void FramePicture::keepShownLocked() {
  if (shownCanvas >= 0) vertices.swap(canvases[fromCount(shownCanvas)]);
  shownCanvas = -1;
  storeMatchesVertices = false;
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
  return bytesOf(shownCanvas < 0 ? vertices : canvases[fromCount(shownCanvas)], fromCount(primitiveCount));
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
  const int canvas = ring.active() ? index : shownCanvas;
  return static_cast<int>(std::min(written, (canvas < 0 ? vertices : canvases[fromCount(canvas)]).size()));
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
  return std::min({fromCount(primitiveCount), vertices.size(), frameStore.from(0).size()});
}

std::size_t FramePicture::validCountLocked(const CanvasRing &ring, int canvas) const {
  const std::size_t first = ring.canvasStart(canvas);
  const std::size_t stored = first < frameStore.size() ? frameStore.size() - first : 0;
  return std::min({fromCount(ring.canvasFill[fromCount(canvas)]), canvases[fromCount(canvas)].size(), stored});
}

}  // namespace tarvo::skarnvisor
