#include "default/telemetry/device_tables.h"

#include <utility>

namespace tarvo::skarnvisor {

void NamedValues::replace(std::vector<NamedValue> rows) {
  const std::lock_guard lock(m_mutex);
  m_rows = std::move(rows);
}

int NamedValues::size() const {
  const std::lock_guard lock(m_mutex);
  return static_cast<int>(m_rows.size());
}

NamedValue NamedValues::row(int index) const {
  const std::lock_guard lock(m_mutex);
  return index >= 0 && static_cast<std::size_t>(index) < m_rows.size() ? m_rows[static_cast<std::size_t>(index)]
                                                                       : NamedValue{};
}

}  // namespace tarvo::skarnvisor
