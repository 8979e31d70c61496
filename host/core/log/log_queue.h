#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "contracts/host/log.h"

namespace tarvo::skarnvisor {

/// A line on its way to the log's thread, in memory of fixed size: writing one allocates nothing.
struct LogRecord {
  std::int64_t unixMicroseconds = 0;
  LogLevel level = LogLevel::Information;
  int line = 0;
  std::array<char, 64> source{};
  std::array<char, 64> function{};
  std::array<char, 1001> message{};
};

/// A bounded queue of records for many writers and one reader; no operation waits for another thread. Each cell carries
/// the turn at which it may be written or read next, so a writer that is interrupted in its cell holds up only the
/// reader.
class LogQueue {
 public:
  explicit LogQueue(std::size_t capacity);  ///< a power of two

  /// Has `fill(record)` write the next free record; false, without a call, when the queue is full.
  template <typename Fill>
  bool write(const Fill &fill) {
    std::size_t position = m_writePosition.load(std::memory_order_relaxed);
    for (;;) {
      Cell &cell = m_cells[position & m_mask];
      const auto ahead = static_cast<std::ptrdiff_t>(cell.turn.load(std::memory_order_acquire) - position);
      if (ahead < 0) return false;
      if (ahead > 0) {
        position = m_writePosition.load(std::memory_order_relaxed);
      } else if (m_writePosition.compare_exchange_weak(position, position + 1, std::memory_order_relaxed)) {
        fill(cell.record);
        cell.turn.store(position + 1, std::memory_order_release);
        return true;
      }
    }
  }

  /// Hands the oldest record to `take(record)`; false when none is complete. One thread only.
  template <typename Take>
  bool read(const Take &take) {
    Cell &cell = m_cells[m_readPosition & m_mask];
    if (cell.turn.load(std::memory_order_acquire) != m_readPosition + 1) return false;
    take(cell.record);
    cell.turn.store(m_readPosition + m_mask + 1, std::memory_order_release);
    ++m_readPosition;
    return true;
  }

  /// Records ever written, including those still being filled.
  [[nodiscard]] std::size_t writtenCount() const { return m_writePosition.load(std::memory_order_acquire); }

 private:
  struct Cell {
    std::atomic<std::size_t> turn;
    LogRecord record;
  };

  std::size_t m_mask;
  std::unique_ptr<Cell[]> m_cells;
  alignas(64) std::atomic<std::size_t> m_writePosition{0};
  alignas(64) std::size_t m_readPosition = 0;
};

}  // namespace tarvo::skarnvisor
