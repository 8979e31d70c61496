#pragma once

#include <string>
#include <vector>

#include "contracts/host/log.h"

namespace tarvo::skarnvisor::test {

/// What the log takes from this object's beginning on.
class LogLines {
 public:
  LogLines() {
    Logger::GetInstance().flush();
    m_start = Logger::GetInstance().lastSequence();
  }
  [[nodiscard]] std::vector<LogEntry> entries() const {
    Logger::GetInstance().flush();
    return Logger::GetInstance().entriesAfter(m_start);
  }
  [[nodiscard]] std::vector<std::string> messages() const {
    std::vector<std::string> texts;
    for (const LogEntry &entry : entries()) texts.push_back(entry.message);
    return texts;
  }

 private:
  std::uint64_t m_start;
};

}  // namespace tarvo::skarnvisor::test
