#include "contracts/host/category.h"

#include <QMetaProperty>
#include <QVariant>
#include <algorithm>
#include <stdexcept>

#include "contracts/host/buffer.h"
#include "contracts/host/registration.h"
#include "contracts/host/threads.h"
#include "host/core/category_table.h"
#include "host/core/functor_scheduler.h"

namespace tarvo::skarnvisor::Category {

Instance::Instance(QObject *parent) : QObject(parent), m_scheduler(std::make_unique<FunctorScheduler>()) {}

Instance::~Instance() {
  m_scheduler->stop();
  qDeleteAll(subCategories());
  m_buffers.clear();
  while (!m_makingOrder.isEmpty()) {
    const QSharedPointer<Functor> functor = m_functors.take(m_makingOrder.takeLast());
    // Who still holds the functor keeps it; as our child it would be deleted twice.
    functor->setParent(nullptr);
    functor->setScheduler(nullptr);
  }
}

Instance *Instance::addSubCategory(const QString &category, const QString &key) {
  Instance *made = nullptr;
  runInThreadOf(this, [&] { made = makeSubCategory(category, key); });
  return made;
}

Instance *Instance::makeSubCategory(const QString &category, const QString &key) {
  const CategoryPlan plan = categoryPlan(category, key);
  if (plan.functors.empty()) throw std::runtime_error("there is no category named " + category.toStdString());
  auto made = std::make_unique<Instance>(this);
  made->m_category = category;
  made->m_key = key;
  for (const FunctorRow &row : plan.functors) made->addFunctor(row.className, row.nameOf + key);
  connect(made.get(), &Instance::changed, this, &Instance::changed);
  return made.release();
}

QSharedPointer<Functor> Instance::addFunctor(const QString &className, const QString &name) {
  QObject *const object = Registration::create(className, this);
  auto *const made = qobject_cast<Functor *>(object);
  if (made == nullptr) {
    delete object;
    throw std::runtime_error("class " + className.toStdString() + " cannot run: it is no Functor");
  }
  QSharedPointer<Functor> functor(made);
  functor->setScheduler(m_scheduler.get());
  m_functors.insert(name, functor);
  m_makingOrder.append(name);
  const QMetaObject *const meta = functor->metaObject();
  for (int i = QObject::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
    const QMetaProperty property = meta->property(i);
    if (auto *const buffer = qobject_cast<Buffer *>(property.read(made).value<QObject *>())) {
      m_buffers.insert(name + QLatin1Char('.') + QLatin1String(property.name()), buffer);
    }
  }
  return functor;
}

QList<Instance *> Instance::subCategories() const {
  return findChildren<Instance *>(QString(), Qt::FindDirectChildrenOnly);
}

}  // namespace tarvo::skarnvisor::Category
