#pragma once

#include "contracts/runtime/point_info.h"
#include "default/frame/zeroed_vector.h"

#include <cstddef>
#include <span>
#include <vector>

namespace tarvo::skarnvisor {

/// The points behind what is drawn, addressed by position. A single picture is one block; a stack has one
/// block a canvas, all of one size, so that a group of frames enters by swapping its block in.
class PointStore {
 public:
  using Point = tarvo::lidar::SDKPointInfo;
  using Block = ZeroedVector<Point>;

  PointStore() = default;
  explicit PointStore(std::size_t points) { shape(1, points); }

  std::size_t size() const { return m_blocks.size() * m_blockSize; }
  /// Points that memory is held for.
  std::size_t capacity() const;
  std::size_t blocks() const { return m_blocks.size(); }
  std::size_t blockSize() const { return m_blockSize; }

  /// `position` is below `size()`.
  Point &operator[](std::size_t position) { return m_blocks[position / m_blockSize][position % m_blockSize]; }
  const Point &operator[](std::size_t position) const {
    return m_blocks[position / m_blockSize][position % m_blockSize];
  }

  /// The points from `position` to the end of its block; none from `size()` on.
  std::span<Point> from(std::size_t position);
  std::span<const Point> from(std::size_t position) const;

  /// Becomes `blocks` blocks of `blockSize` points. Blocks that have that size already are kept, new ones are
  /// zero. Returns the number of new points. Throws std::bad_alloc, and then holds nothing.
  std::size_t shape(std::size_t blocks, std::size_t blockSize);

  /// Exchanges block `index` with `block`, which has the size of a block; the only block takes any size.
  void swapBlock(std::size_t index, Block &block);

 private:
  std::vector<Block> m_blocks;
  std::size_t m_blockSize = 0;
};

}  // namespace tarvo::skarnvisor
