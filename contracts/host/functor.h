#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>

namespace tarvo::skarnvisor {

class FunctorScheduler;

/// One stage of a pipeline. The object lives on the thread that created it (the GUI thread for those of a category);
/// its `operator()` runs on the functor thread of its pipeline. No two stages of one pipeline run at the same time.
///
/// A subclass that the host creates by name has an invokable constructor taking the QObject parent.
class Functor : public QObject {
  Q_OBJECT

 public:
  explicit Functor(QObject *parent = nullptr);
  ~Functor() override;

  /// The stage's work. An exception that leaves it is logged and ends this run only.
  virtual void operator()();

  /// Has `operator()` executed soon on the pipeline's functor thread; returns at once. Callable from any thread.
  /// A stage that already waits, behind every waiting predecessor of its own, is not queued a second time.
  void run();

  /// Makes `next` a stage behind this one: a waiting `next` keeps behind a waiting `this`. Does not run it.
  /// Call while the chain is being built, before the first `run()` of either.
  void addSuccessor(Functor *next);
  [[nodiscard]] QList<Functor *> successors() const;

  /// The scheduler whose thread runs this stage: that of the functor's category, or else one shared by all functors
  /// that belong to none. Set by the host before the first `run()`; not owned.
  void setScheduler(FunctorScheduler *scheduler) { m_scheduler = scheduler; }
  [[nodiscard]] FunctorScheduler *scheduler() const;

 Q_SIGNALS:
  /// After each execution, on the functor thread. `error` is empty, or what the exception that ended the run said.
  void finished(const QString &error);

 private:
  friend class FunctorScheduler;

  FunctorScheduler *m_scheduler = nullptr;
  QList<QPointer<Functor>> m_successors;
  QSet<QString> m_loggedErrors;  ///< the scheduler's thread only
};

}  // namespace tarvo::skarnvisor
