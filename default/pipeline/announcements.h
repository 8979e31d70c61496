#pragma once

#include <functional>
#include <vector>

namespace tarvo::skarnvisor {

/// Holds back the signals of the current thread until the scope ends, then emits them in the order
/// in which they were announced. Declare it in front of a lock: it then outlives the lock, so that a
/// slot may set a property, and with it take the same lock, without waiting for itself.
/// An inner scope hands what it holds to the outer one.
class AnnouncementScope {
 public:
  AnnouncementScope();
  ~AnnouncementScope();
  AnnouncementScope(const AnnouncementScope &) = delete;
  AnnouncementScope &operator=(const AnnouncementScope &) = delete;

  /// Runs `announcement` at the end of the thread's outermost scope, or at once without a scope.
  static void announce(std::function<void()> announcement);

 private:
  AnnouncementScope *m_outer;
  std::vector<std::function<void()>> m_held;
};

}  // namespace tarvo::skarnvisor
