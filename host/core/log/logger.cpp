#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <deque>
#include <mutex>
#include <thread>

#include "contracts/host/log.h"
#include "host/core/log/log_queue.h"

namespace tarvo::skarnvisor {
namespace {

template <std::size_t size>
void copyText(std::array<char, size> &target, const char *text) {
  const std::size_t length = text == nullptr ? 0 : std::min(std::strlen(text), size - 1);
  if (length > 0) std::memcpy(target.data(), text, length);
  target[length] = '\0';
}

const char *levelName(LogLevel level) {
  switch (level) {
    case LogLevel::Information:
      return "info";
    case LogLevel::Warning:
      return "warning";
    case LogLevel::Error:
      return "error";
    case LogLevel::Internal:
      return "internal error";
    case LogLevel::Notice:
      return "notice";
  }
  return "log";
}

void printLine(const LogEntry &entry) {
  const std::time_t seconds = entry.unixMicroseconds / 1'000'000;
  std::tm local{};
  localtime_r(&seconds, &local);
  std::fprintf(stderr, "%02d:%02d:%02d.%03d %s: %s (%s:%d)\n", local.tm_hour, local.tm_min, local.tm_sec,
               static_cast<int>(entry.unixMicroseconds / 1000 % 1000), levelName(entry.level), entry.message.c_str(),
               entry.source.c_str(), entry.line);
}

LogEntry toEntry(const LogRecord &record, std::uint64_t sequence) {
  LogEntry entry{sequence,    record.unixMicroseconds, record.level,         record.source.data(),
                 record.line, record.function.data(),  record.message.data()};
  while (!entry.message.empty() && (entry.message.back() == '\n' || entry.message.back() == '\r'))
    entry.message.pop_back();
  return entry;
}

}  // namespace

struct Logger::State {
  LogQueue queue{queueCapacity};
  std::atomic<unsigned> consoleMask{logDefaultMask};
  std::atomic<std::uint64_t> dropped{0};
  std::atomic<std::uint32_t> posted{0};  ///< changes with each line; what the log's thread sleeps on

  mutable std::mutex ringMutex;  ///< guards the ring and `written`
  std::condition_variable ringGrew;
  std::deque<LogEntry> ring;
  std::uint64_t written = 0;  ///< lines taken from the queue
  std::atomic<std::uint64_t> lastSequence{0};

  void takeOne(const LogRecord &record);
  void reportDrops(std::uint64_t &reported) const;
  void loop();
};

void Logger::State::takeOne(const LogRecord &record) {
  LogEntry entry = toEntry(record, lastSequence.load(std::memory_order_relaxed) + 1);
  if ((consoleMask.load(std::memory_order_relaxed) & logBit(entry.level)) != 0) printLine(entry);
  {
    const std::lock_guard lock(ringMutex);
    lastSequence.store(entry.sequence, std::memory_order_relaxed);
    ring.push_back(std::move(entry));
    if (ring.size() > ringCapacity) ring.pop_front();
    ++written;
  }
  ringGrew.notify_all();
}

void Logger::State::reportDrops(std::uint64_t &reported) const {
  const std::uint64_t now = dropped.load(std::memory_order_relaxed);
  if (now == reported) return;
  std::fprintf(stderr, "log queue full: %llu lines lost\n", static_cast<unsigned long long>(now - reported));
  reported = now;
}

void Logger::State::loop() {
  std::uint64_t reportedDrops = 0;
  for (;;) {
    const std::uint32_t seen = posted.load(std::memory_order_acquire);
    while (queue.read([this](const LogRecord &record) { takeOne(record); })) {
    }
    reportDrops(reportedDrops);
    posted.wait(seen, std::memory_order_acquire);
  }
}

Logger::Logger() : m_state(new State) {
  std::thread([state = m_state] { state->loop(); }).detach();
  std::atexit([] { GetInstance().flush(); });
}

Logger &Logger::GetInstance() {
  static auto *const instance = new Logger;
  return *instance;
}

void Logger::AddToQueue(LogLevel level, const char *file, int line, const char *function, const char *format, ...) {
  using namespace std::chrono;
  va_list arguments;
  va_start(arguments, format);
  const bool queued = m_state->queue.write([&](LogRecord &record) {
    record.unixMicroseconds = duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
    record.level = level;
    record.line = line;
    copyText(record.source, file);
    copyText(record.function, function);
    std::vsnprintf(record.message.data(), record.message.size(), format, arguments);
  });
  va_end(arguments);
  if (!queued) m_state->dropped.fetch_add(1, std::memory_order_relaxed);
  m_state->posted.fetch_add(1, std::memory_order_release);
  m_state->posted.notify_one();
}

void Logger::setConsoleMask(unsigned mask) { m_state->consoleMask.store(mask, std::memory_order_relaxed); }
unsigned Logger::consoleMask() const { return m_state->consoleMask.load(std::memory_order_relaxed); }

std::vector<LogEntry> Logger::entriesAfter(std::uint64_t sequence) const {
  const std::lock_guard lock(m_state->ringMutex);
  const auto first = std::partition_point(m_state->ring.begin(), m_state->ring.end(),
                                          [sequence](const LogEntry &entry) { return entry.sequence <= sequence; });
  return {first, m_state->ring.end()};
}

std::uint64_t Logger::lastSequence() const { return m_state->lastSequence.load(std::memory_order_relaxed); }
std::uint64_t Logger::droppedCount() const { return m_state->dropped.load(std::memory_order_relaxed); }

void Logger::flush() {
  const std::uint64_t target = m_state->queue.writtenCount();
  std::unique_lock lock(m_state->ringMutex);
  // At exit the process may have lost the log's thread; a bound keeps it from hanging there.
  m_state->ringGrew.wait_for(lock, std::chrono::seconds(2), [&] { return m_state->written >= target; });
}

}  // namespace tarvo::skarnvisor
