#pragma once

#include <QByteArray>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>
#include <span>
#include <type_traits>

#include "contracts/runtime/point_info.h"
#include "default/frame/vertex.h"
#include "default/models/settings_value.h"
#include "default/point_files/readers/raw_vector.h"

namespace tarvo::skarnvisor {

/// A fixed number of zeroed elements. Memory is taken page by page, where possible in huge pages,
/// as elements are written.
template <typename T>
class ZeroPages {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  explicit ZeroPages(std::size_t count) : m_data(static_cast<T *>(std::calloc(count, sizeof(T)))), m_size(count) {
    if (!m_data) throw std::bad_alloc();
    preferHugePages(m_data.get(), count * sizeof(T));
  }
  [[nodiscard]] std::size_t size() const { return m_size; }
  T *data() { return m_data.get(); }
  const T *data() const { return m_data.get(); }
  T &operator[](std::size_t i) { return m_data[i]; }
  const T &operator[](std::size_t i) const { return m_data[i]; }

 private:
  struct Release {
    void operator()(T *data) const { std::free(data); }
  };
  std::unique_ptr<T[], Release> m_data;
  std::size_t m_size;
};

/// The vertices and points of one frame, each frame in place of the former, and the rows of the point table. Room for
/// the largest frame is there from the start, so that no frame allocates; only what frames used takes memory.
struct PcdFrameStore {
  static constexpr std::size_t rows = 4000;
  static constexpr std::size_t columns = 1024;
  static constexpr std::size_t capacity = rows * columns;  ///< points: index = row x 1024 + column

  mutable std::mutex frameMutex;  ///< guards the arrays and `prepared`
  /// Held beside frameMutex while a frame takes the place of the former, and for the moment when the rows do: who shows
  /// single cells of the table takes this one alone, and waits for no pass over the points.
  mutable std::mutex placesMutex;
  ZeroPages<Vertex> vertices{capacity};
  ZeroPages<lidar::SDKPointInfo> points{capacity};
  ZeroPages<std::uint32_t> spreadSheetRows{capacity};  ///< table row to point index
  ZeroPages<std::uint32_t> workRows{capacity};         ///< those of the next listing
  std::size_t prepared = 0;                            ///< vertices behind this count as hidden, whatever they hold
  std::size_t listed = 0;                              ///< rows in use

  Relaxed<int> primitiveCount{static_cast<int>(capacity)};  ///< points of the current frame

  /// Makes the first `count` vertices ones to write to. Caller holds the lock.
  void prepareLocked(std::size_t count);
  /// Points of the current frame that may be looked at. Caller holds the lock.
  [[nodiscard]] std::size_t usableLocked() const;
  /// `primitiveCount` vertices of 12 bytes.
  [[nodiscard]] QByteArray vertexBytes() const;
};

}  // namespace tarvo::skarnvisor
