#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>
#include <atomic>

#include "contracts/host/time.h"

namespace tarvo::skarnvisor {

/// What a functor offers to the host and to QML. A functor shows its buffers as properties of a pointer type that
/// derives from Buffer; the host lists each under functor name, "." and property name.
class Buffer : public QObject {
  Q_OBJECT

 public:
  explicit Buffer(QObject *parent = nullptr);
  ~Buffer() override;
};

/// A begin and an end on the timeline. Each is atomic: the functor thread writes, the GUI thread reads.
class TimeInterval {
 public:
  [[nodiscard]] TimePoint begin() const { return TimePoint(Ticks(m_begin.load(std::memory_order_relaxed))); }
  [[nodiscard]] TimePoint end() const { return TimePoint(Ticks(m_end.load(std::memory_order_relaxed))); }
  void setBegin(TimePoint time) { m_begin.store(time.time_since_epoch().count(), std::memory_order_relaxed); }
  void setEnd(TimePoint time) { m_end.store(time.time_since_epoch().count(), std::memory_order_relaxed); }
  /// False until both ends were set to something, with the end not before the begin.
  [[nodiscard]] bool isKnown() const { return end() >= begin() && end() != TimePoint(); }

 protected:
  TimeInterval() = default;
  ~TimeInterval() = default;

 private:
  std::atomic<Ticks::rep> m_begin{0};
  std::atomic<Ticks::rep> m_end{0};
};

class TimeIntervalBuffer : public Buffer, public TimeInterval {
  Q_OBJECT
  Q_PROPERTY(double beginSeconds READ beginSeconds WRITE setBeginSeconds NOTIFY changed)
  Q_PROPERTY(double endSeconds READ endSeconds WRITE setEndSeconds NOTIFY changed)
  Q_PROPERTY(QDateTime beginDateTime READ beginDateTime NOTIFY changed)
  Q_PROPERTY(QDateTime endDateTime READ endDateTime NOTIFY changed)

 public:
  explicit TimeIntervalBuffer(QObject *parent = nullptr);
  ~TimeIntervalBuffer() override;

  /// Seconds since 1970. The setters don't emit `changed()`: set both ends, then announce them together.
  [[nodiscard]] virtual double beginSeconds() const;
  [[nodiscard]] virtual double endSeconds() const;
  virtual void setBeginSeconds(double seconds);
  virtual void setEndSeconds(double seconds);
  [[nodiscard]] virtual QDateTime beginDateTime() const;
  [[nodiscard]] virtual QDateTime endDateTime() const;
  /// QML file that draws the content of this interval on the timeline; "" in the base.
  [[nodiscard]] virtual QString trackPointSource() const;

 Q_SIGNALS:
  /// The interval or the clip's state changed. May come from any thread.
  void changed();
};

}  // namespace tarvo::skarnvisor
