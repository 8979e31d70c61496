#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tarvo::skarnvisor {

/// Bit values, so that a set of levels is a mask.
enum class LogLevel : unsigned {
  Information = 2,
  Warning = 4,
  Error = 8,
  Internal = 16,  ///< our own mistake: a missing runtime, a list of the wrong size
  Notice = 128,   ///< success, or something the user should read
};

[[nodiscard]] constexpr unsigned logBit(LogLevel level) { return static_cast<unsigned>(level); }
inline constexpr unsigned logDefaultMask =
    logBit(LogLevel::Warning) | logBit(LogLevel::Error) | logBit(LogLevel::Internal);
inline constexpr unsigned logEverythingMask = logDefaultMask | logBit(LogLevel::Information) | logBit(LogLevel::Notice);

/// One line of the log as a reader gets it.
struct LogEntry {
  std::uint64_t sequence = 0;  ///< counts from 1; a gap is a line that fell out of the ring
  std::int64_t unixMicroseconds = 0;
  LogLevel level = LogLevel::Information;
  std::string source;  ///< the module's source name, as "default/filter_model"
  int line = 0;
  std::string function;
  std::string message;  ///< without a line end at its end; long ones are cut to 1000 bytes
};

/// The log queue of the process. Writing never blocks: a full queue drops the line and counts it. A thread of the log's
/// own writes the lines to standard error (levels in the console mask) and keeps the newest in a ring for the viewer.
/// Every operation may be called from any thread.
class Logger {
 public:
  /// Lines that can wait for the log's thread, and lines that the ring keeps.
  static constexpr std::size_t queueCapacity = 2048;
  static constexpr std::size_t ringCapacity = 4096;

  static Logger &GetInstance();

  /// printf format. `file` and `function` are copied, a null reads as "".
  void AddToQueue(LogLevel level, const char *file, int line, const char *function, const char *format, ...)
      __attribute__((format(printf, 6, 7)));

  /// Which levels go to standard error; the ring keeps all of them.
  void setConsoleMask(unsigned mask);
  [[nodiscard]] unsigned consoleMask() const;

  /// The ring's lines with a sequence above `sequence`, oldest first.
  [[nodiscard]] std::vector<LogEntry> entriesAfter(std::uint64_t sequence) const;
  /// Sequence of the newest line in the ring, 0 while it is empty. Cheap enough to poll.
  [[nodiscard]] std::uint64_t lastSequence() const;
  /// Lines lost to a full queue since the start.
  [[nodiscard]] std::uint64_t droppedCount() const;
  /// Waits until every line that was queued before the call is written.
  void flush();

  Logger(const Logger &) = delete;
  Logger &operator=(const Logger &) = delete;

 private:
  struct State;
  Logger();
  ~Logger() = delete;  // lives to the end of the process: static destructors may still log

  State *m_state;
};

}  // namespace tarvo::skarnvisor

/// States the source name of a .cpp once, in front of its first SKARN_LOG: SKARN_LOG_SOURCE("default/filter_model");
#define SKARN_LOG_SOURCE(name)                                  \
  namespace {                                                   \
  [[maybe_unused]] constexpr const char *skarnLogSource = name; \
  }                                                             \
  static_assert(true)

/// SKARN_LOG(LogLevel::Warning, "read %d of %d points", got, wanted);
#define SKARN_LOG(level, ...) \
  ::tarvo::skarnvisor::Logger::GetInstance().AddToQueue((level), skarnLogSource, __LINE__, __func__, __VA_ARGS__)
