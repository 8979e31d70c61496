#include "host/core/functor_scheduler.h"

#include <QThread>
#include <algorithm>
#include <chrono>
#include <exception>
#include <set>

#include "contracts/host/functor.h"
#include "contracts/host/log.h"
#include "contracts/host/threads.h"

SKARN_LOG_SOURCE("host/functor_scheduler");

namespace tarvo::skarnvisor {
namespace {

// How often a thread that waits for a stage looks for calls that the stage directs at it.
constexpr std::chrono::milliseconds servingPeriod{2};

bool leadsTo(const Functor *from, const Functor *to, std::set<const Functor *> &seen) {
  for (const Functor *next : from->successors()) {
    if (next == to) return true;
    if (seen.insert(next).second && leadsTo(next, to, seen)) return true;
  }
  return false;
}

bool isPredecessor(const Functor *candidate, const Functor *of) {
  std::set<const Functor *> seen;
  return candidate != of && leadsTo(candidate, of, seen);
}

}  // namespace

FunctorScheduler::FunctorScheduler() = default;
FunctorScheduler::~FunctorScheduler() { stop(); }

FunctorScheduler &FunctorScheduler::shared() {
  static FunctorScheduler scheduler;
  return scheduler;
}

bool FunctorScheduler::waitsBehindItsPredecessors(const Functor *functor) const {
  for (auto waiting = m_queue.rbegin(); waiting != m_queue.rend(); ++waiting) {
    if (*waiting == functor) return true;
    if (isPredecessor(*waiting, functor)) return false;
  }
  return false;
}

void FunctorScheduler::post(Functor *functor) {
  const std::lock_guard lock(m_mutex);
  if (m_stopping || waitsBehindItsPredecessors(functor)) return;
  m_queue.push_back(functor);
  if (!m_thread) startThread();
  m_changed.notify_all();
}

bool FunctorScheduler::isPending(const Functor *functor) const {
  const std::lock_guard lock(m_mutex);
  return m_running == functor || std::find(m_queue.begin(), m_queue.end(), functor) != m_queue.end();
}

bool FunctorScheduler::isIdle() const {
  const std::lock_guard lock(m_mutex);
  return m_running == nullptr && m_queue.empty();
}

std::vector<Functor *> FunctorScheduler::waiting() const {
  const std::lock_guard lock(m_mutex);
  return {m_queue.begin(), m_queue.end()};
}

void FunctorScheduler::waitForRunning(std::unique_lock<std::mutex> &lock, const Functor *functor) {
  const auto isOver = [&] { return functor == nullptr ? m_running == nullptr : m_running != functor; };
  while (!isOver()) {
    if (m_changed.wait_for(lock, servingPeriod, isOver)) return;
    lock.unlock();
    serveWaitingCalls();
    lock.lock();
  }
}

void FunctorScheduler::forget(Functor *functor) {
  std::unique_lock lock(m_mutex);
  std::erase(m_queue, functor);
  if (m_thread.get() != QThread::currentThread()) waitForRunning(lock, functor);
}

void FunctorScheduler::interrupt() {
  const std::lock_guard lock(m_mutex);
  if (m_running != nullptr || !m_queue.empty()) m_thread->requestInterruption();
}

void FunctorScheduler::stop() {
  std::unique_lock lock(m_mutex);
  m_stopping = true;
  m_queue.clear();
  if (m_running != nullptr) m_thread->requestInterruption();
  m_changed.notify_all();
  waitForRunning(lock, nullptr);
  std::vector<std::unique_ptr<QThread>> threads = std::move(m_retired);
  if (m_thread) threads.push_back(std::move(m_thread));
  lock.unlock();
  for (const std::unique_ptr<QThread> &thread : threads) thread->wait();
}

void FunctorScheduler::startThread() {
  // Those that have gone since; one that is just going stays until the next time.
  std::erase_if(m_retired, [](const std::unique_ptr<QThread> &thread) { return thread->isFinished(); });
  m_thread.reset(QThread::create([this] { loop(); }));
  m_thread->setObjectName(QStringLiteral("functors"));
  m_thread->start();
}

void FunctorScheduler::loop() {
  std::unique_lock lock(m_mutex);
  for (;;) {
    m_changed.wait(lock, [this] { return m_stopping || !m_queue.empty(); });
    if (m_queue.empty()) return;
    Functor *const functor = m_running = m_queue.front();
    m_queue.pop_front();
    lock.unlock();
    execute(functor);
    lock.lock();
    m_running = nullptr;
    m_changed.notify_all();
    if (m_stopping) return;
    if (QThread::currentThread()->isInterruptionRequested()) {
      // A thread's flag cannot be cleared: the next stage gets a thread of its own.
      m_retired.push_back(std::move(m_thread));
      startThread();
      return;
    }
  }
}

void FunctorScheduler::execute(Functor *functor) {
  QString error;
  try {
    (*functor)();
  } catch (const std::exception &failure) {
    error = QString::fromLocal8Bit(failure.what());
    if (error.isEmpty()) error = QStringLiteral("an exception without a message");
  } catch (...) {
    error = QStringLiteral("an exception of an unknown type");
  }
  // A stage that fails again with the same words, at every frame or whenever play comes by, says so once.
  constexpr int mostKept = 256;
  if (!error.isEmpty() && !functor->m_loggedErrors.contains(error)) {
    if (functor->m_loggedErrors.size() >= mostKept) functor->m_loggedErrors.clear();
    functor->m_loggedErrors.insert(error);
    SKARN_LOG(LogLevel::Error, "%s ended with: %s", functor->metaObject()->className(), qPrintable(error));
  }
  Q_EMIT functor->finished(error);
}

}  // namespace tarvo::skarnvisor
