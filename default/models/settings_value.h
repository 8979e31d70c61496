#pragma once

#include <atomic>
#include <memory>
#include <utility>

namespace tarvo::skarnvisor {

/// A scalar that one thread writes and others read as it stands: a relaxed atomic that reads and
/// assigns like the plain value. It orders nothing around it.
template <typename T>
class Relaxed {
 public:
  constexpr Relaxed() = default;
  constexpr Relaxed(T value) : m_value(value) {}
  Relaxed(const Relaxed &other) : m_value(other.load()) {}
  Relaxed &operator=(const Relaxed &other) { return *this = other.load(); }
  Relaxed &operator=(T value) {
    m_value.store(value, std::memory_order_relaxed);
    return *this;
  }

  T load() const { return m_value.load(std::memory_order_relaxed); }
  operator T() const { return load(); }
  /// Assigns `next` unless another thread has changed `seen` meanwhile; true when it did.
  bool replace(T seen, T next) { return m_value.compare_exchange_strong(seen, next, std::memory_order_acq_rel); }
  T exchange(T value) { return m_value.exchange(value, std::memory_order_acq_rel); }

 private:
  std::atomic<T> m_value{};
};

/// A value of any size that is only ever replaced as a whole. Readers take the pointer once and work
/// on what they took; a change appears to the next reader. Safe from any thread.
template <typename T>
class Snapshot {
 public:
  Snapshot() : m_value(std::make_shared<const T>()) {}
  explicit Snapshot(T value) : m_value(std::make_shared<const T>(std::move(value))) {}

  std::shared_ptr<const T> take() const { return m_value.load(); }
  T copy() const { return *take(); }
  void set(T value) { m_value.store(std::make_shared<const T>(std::move(value))); }

  /// Applies `change(T&)` to a copy of the newest value and publishes it. `change` runs again when
  /// another thread published in between, so it must depend on its argument alone.
  template <typename Change>
  void update(Change &&change) {
    auto current = m_value.load();
    std::shared_ptr<const T> next;
    do {
      T changed = *current;
      change(changed);
      next = std::make_shared<const T>(std::move(changed));
    } while (!m_value.compare_exchange_weak(current, next));
  }

 private:
  std::atomic<std::shared_ptr<const T>> m_value;
};

}  // namespace tarvo::skarnvisor
