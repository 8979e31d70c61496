#include "default/pipeline/stack_allocation.h"

#include "default/files/system_memory.h"

#include <QtConcurrent>

#include <utility>

namespace tarvo::skarnvisor {

StackAllocation::StackAllocation() : memory([] { return systemMemory(); }) {}

StackAllocation::~StackAllocation() { wait(); }

void StackAllocation::run(const std::function<void()> &work) {
  m_cancelled = false;
  progress = 0.0;
  m_work = QtConcurrent::run(work);
}

void StackAllocation::release(std::shared_ptr<void> memory, std::size_t bytes) {
  if (!memory) return;
  m_releasingBytes += bytes;
  // The pool's thread gets the only reference: giving back a gigabyte takes longer than a caller may wait.
  auto *const last = new std::shared_ptr<void>(std::move(memory));
  m_release = QtConcurrent::run([this, last, bytes, before = m_release]() mutable {
    delete last;
    m_releasingBytes -= bytes;
    before.waitForFinished();  // the end of the newest is the end of all
  });
}

}  // namespace tarvo::skarnvisor
