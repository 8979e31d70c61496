#include "default/frame/point_store.h"

#include <cassert>

namespace tarvo::skarnvisor {

std::size_t PointStore::capacity() const {
  std::size_t points = 0;
  for (const Block &block : m_blocks) points += block.capacity();
  return points;
}

std::span<PointStore::Point> PointStore::from(std::size_t position) {
  if (position >= size()) return {};
  return std::span(m_blocks[position / m_blockSize]).subspan(position % m_blockSize);
}

std::span<const PointStore::Point> PointStore::from(std::size_t position) const {
  if (position >= size()) return {};
  return std::span(m_blocks[position / m_blockSize]).subspan(position % m_blockSize);
}

std::size_t PointStore::shape(std::size_t blocks, std::size_t blockSize) {
  // What goes is given back before anything new is asked for.
  if (blockSize != m_blockSize) m_blocks.clear();
  m_blockSize = blockSize;
  if (m_blocks.size() > blocks) m_blocks.resize(blocks);
  const std::size_t kept = m_blocks.size();
  try {
    while (m_blocks.size() < blocks) m_blocks.emplace_back(blockSize);
  } catch (...) {
    m_blocks.clear();
    throw;
  }
  return (blocks - kept) * blockSize;
}

void PointStore::swapBlock(std::size_t index, Block &block) {
  assert(index < m_blocks.size() && (m_blocks.size() == 1 || block.size() == m_blockSize));
  m_blocks[index].swap(block);
  if (m_blocks.size() == 1) m_blockSize = m_blocks[index].size();
}

}  // namespace tarvo::skarnvisor
