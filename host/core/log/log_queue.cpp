#include "host/core/log/log_queue.h"

namespace tarvo::skarnvisor {

LogQueue::LogQueue(std::size_t capacity) : m_mask(capacity - 1), m_cells(std::make_unique<Cell[]>(capacity)) {
  for (std::size_t i = 0; i < capacity; ++i) m_cells[i].turn.store(i, std::memory_order_relaxed);
}

}  // namespace tarvo::skarnvisor
