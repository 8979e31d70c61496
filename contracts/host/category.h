#pragma once

#include <QList>
#include <QMap>
#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <memory>

#include "contracts/host/functor.h"

namespace tarvo::skarnvisor {

class Buffer;

namespace Category {

/// A node of the category tree: functors, their buffers, and one functor thread that runs them. The root holds the
/// loaders; each source that a loader opens becomes a sub-category. Lives on the thread that made the root, the GUI
/// thread.
class Instance : public QObject {
  Q_OBJECT

 public:
  /// A root when `parent` is no Instance.
  explicit Instance(QObject *parent = nullptr);
  /// Waits for the stage that runs, drops those that wait, and deletes the functors in the reverse order of their
  /// making.
  ~Instance() override;

  /// Creates a sub-category and the functors that the category's row names, each stored under its class name (namespace
  /// included) followed by `key`. Callable from any thread; the objects are made on this object's own thread, which
  /// must serve its events. Sub-categories of one key may stand side by side, each with maps of its own.
  /// @return the new node, owned by this one
  /// @throws std::runtime_error for a category that has no row, and for a class that cannot be made; nothing stays
  /// behind
  Instance *addSubCategory(const QString &category, const QString &key);

  /// Creates one functor by class name, with this node as its parent, and lists it and its buffers under `name`.
  /// Call on this object's thread. @throws std::runtime_error if the class cannot be made or is no Functor
  QSharedPointer<Functor> addFunctor(const QString &className, const QString &name);

  [[nodiscard]] const QMap<QString, QSharedPointer<Functor>> &functors() const { return m_functors; }
  [[nodiscard]] const QMap<QString, Buffer *> &buffers() const { return m_buffers; }
  /// Null for a name that is not there.
  [[nodiscard]] QSharedPointer<Functor> functor(const QString &name) const { return m_functors.value(name); }
  [[nodiscard]] Buffer *buffer(const QString &name) const { return m_buffers.value(name, nullptr); }
  /// In the order of their making.
  [[nodiscard]] QList<Instance *> subCategories() const;

  [[nodiscard]] const QString &category() const { return m_category; }
  [[nodiscard]] const QString &key() const { return m_key; }
  [[nodiscard]] FunctorScheduler &scheduler() const { return *m_scheduler; }

 Q_SIGNALS:
  /// A sub-category of this node is wired and may be taken up. Emitted by the loader, on its functor thread.
  void changed();

 private:
  Instance *makeSubCategory(const QString &category, const QString &key);

  QString m_category;
  QString m_key;
  std::unique_ptr<FunctorScheduler> m_scheduler;
  QMap<QString, QSharedPointer<Functor>> m_functors;
  QMap<QString, Buffer *> m_buffers;
  QList<QString> m_makingOrder;  ///< functor names
};

}  // namespace Category
}  // namespace tarvo::skarnvisor
