#pragma once

#include <QDateTime>
#include <atomic>

namespace tarvo::skarnvisor {

/// Lets one call pass in each wall-clock second, and not the very first one. Any thread.
class OnceASecond {
 public:
  bool passes() {
    const qint64 now = QDateTime::currentDateTime().toSecsSinceEpoch();
    qint64 seen = -1;
    if (m_last.compare_exchange_strong(seen, now)) return false;
    return now > seen && m_last.compare_exchange_strong(seen, now);
  }

 private:
  std::atomic<qint64> m_last{-1};
};

}  // namespace tarvo::skarnvisor
