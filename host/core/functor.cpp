#include "contracts/host/functor.h"

#include "host/core/functor_scheduler.h"

namespace tarvo::skarnvisor {

Functor::Functor(QObject *parent) : QObject(parent) {}

Functor::~Functor() { scheduler()->forget(this); }

void Functor::operator()() {}

void Functor::run() { scheduler()->post(this); }

void Functor::addSuccessor(Functor *next) {
  if (next == nullptr || next == this || m_successors.contains(next)) return;
  m_successors.append(next);
}

QList<Functor *> Functor::successors() const {
  QList<Functor *> living;
  for (const QPointer<Functor> &successor : m_successors) {
    if (successor) living.append(successor);
  }
  return living;
}

FunctorScheduler *Functor::scheduler() const {
  return m_scheduler != nullptr ? m_scheduler : &FunctorScheduler::shared();
}

}  // namespace tarvo::skarnvisor
