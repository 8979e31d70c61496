#include "default/point_files/pcd_frame_store.h"

#include <algorithm>

namespace tarvo::skarnvisor {

void PcdFrameStore::prepareLocked(std::size_t count) {
  if (count <= prepared) return;
  std::fill(vertices.data() + prepared, vertices.data() + count, hiddenVertex);
  prepared = count;
}

std::size_t PcdFrameStore::usableLocked() const {
  return std::min(static_cast<std::size_t>(std::max(primitiveCount.load(), 0)), prepared);
}

QByteArray PcdFrameStore::vertexBytes() const {
  const std::lock_guard lock(frameMutex);
  const auto count = static_cast<std::size_t>(std::max(primitiveCount.load(), 0));
  const std::size_t written = std::min(count, prepared);
  QByteArray bytes(reinterpret_cast<const char *>(vertices.data()), static_cast<int>(written * sizeof(Vertex)));
  if (written < count) {
    bytes.resize(static_cast<int>(count * sizeof(Vertex)));
    auto *const target = reinterpret_cast<Vertex *>(bytes.data());
    std::fill(target + written, target + count, hiddenVertex);
  }
  return bytes;
}

}  // namespace tarvo::skarnvisor
