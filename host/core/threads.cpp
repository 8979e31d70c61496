#include "contracts/host/threads.h"

#include <QMetaObject>
#include <QObject>
#include <QThread>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tarvo::skarnvisor {
namespace {

/// A call on its way to another thread. The caller waits for its end; an event of the target object holds the ticket
/// that executes it, and gives the call up by dying unexecuted.
class Call {
 public:
  explicit Call(const std::function<void()> &fn) : m_fn(fn) {}

  void execute() {
    {
      const std::lock_guard lock(m_mutex);
      if (m_state != State::Waiting) return;
      m_state = State::Running;
    }
    std::exception_ptr failure;
    try {
      m_fn();
    } catch (...) {
      failure = std::current_exception();
    }
    end(State::Done, failure);
  }

  void giveUp() {
    std::unique_lock lock(m_mutex);
    if (m_state != State::Waiting) return;
    lock.unlock();
    end(State::Dropped, nullptr);
  }

  bool wait() {
    std::unique_lock lock(m_mutex);
    m_ended.wait(lock, [this] { return m_state == State::Done || m_state == State::Dropped; });
    if (m_failure) std::rethrow_exception(std::exchange(m_failure, nullptr));
    return m_state == State::Done;
  }

 private:
  enum class State { Waiting, Running, Done, Dropped };

  void end(State state, std::exception_ptr failure) {
    const std::lock_guard lock(m_mutex);
    m_state = state;
    m_failure = std::move(failure);
    m_ended.notify_all();
  }

  const std::function<void()> &m_fn;
  std::mutex m_mutex;  ///< guards the two fields below
  State m_state = State::Waiting;
  std::exception_ptr m_failure;
  std::condition_variable m_ended;
};

struct Ticket {
  std::shared_ptr<Call> call;
  explicit Ticket(std::shared_ptr<Call> c) : call(std::move(c)) {}
  ~Ticket() { call->giveUp(); }
  Ticket(const Ticket &) = delete;
  Ticket &operator=(const Ticket &) = delete;
};

/// Calls under way, by target thread, for threads that wait without an event loop.
class Directory {
 public:
  static Directory &instance() {
    static auto *const directory = new Directory;  // outlives every thread
    return *directory;
  }

  void add(QThread *thread, const std::shared_ptr<Ticket> &ticket) {
    const std::lock_guard lock(m_mutex);
    auto &tickets = m_tickets[thread];
    std::erase_if(tickets, [](const std::weak_ptr<Ticket> &old) { return old.expired(); });
    tickets.push_back(ticket);
  }

  std::vector<std::weak_ptr<Ticket>> take(QThread *thread) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_tickets.find(thread);
    if (found == m_tickets.end()) return {};
    auto tickets = std::move(found->second);
    m_tickets.erase(found);
    return tickets;
  }

 private:
  std::mutex m_mutex;  ///< guards the map
  std::unordered_map<QThread *, std::vector<std::weak_ptr<Ticket>>> m_tickets;
};

}  // namespace

bool runInThreadOf(QObject *object, const std::function<void()> &fn) {
  if (object->thread() == QThread::currentThread()) {
    fn();
    return true;
  }
  const auto call = std::make_shared<Call>(fn);
  {
    auto ticket = std::make_shared<Ticket>(call);
    Directory::instance().add(object->thread(), ticket);
    QMetaObject::invokeMethod(
        object, [ticket] { ticket->call->execute(); }, Qt::QueuedConnection);
  }
  return call->wait();
}

void serveWaitingCalls() {
  for (const std::weak_ptr<Ticket> &waiting : Directory::instance().take(QThread::currentThread())) {
    if (const std::shared_ptr<Ticket> ticket = waiting.lock()) ticket->call->execute();
  }
}

}  // namespace tarvo::skarnvisor
