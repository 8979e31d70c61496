#include "contracts/host/registration.h"

#include <QMap>
#include <mutex>
#include <stdexcept>

namespace tarvo::skarnvisor {
namespace {

struct Classes {
  std::mutex mutex;  ///< guards the map
  QMap<QString, const QMetaObject *> byName;
};

Classes &classes() {
  static Classes registered;
  return registered;
}

}  // namespace

void Registration::regist(const QString &className, const QMetaObject *metaObject) {
  const std::lock_guard lock(classes().mutex);
  classes().byName.insert(className, metaObject);
}

const QMetaObject *Registration::metaObject(const QString &className) {
  const std::lock_guard lock(classes().mutex);
  return classes().byName.value(className, nullptr);
}

QStringList Registration::classNames() {
  const std::lock_guard lock(classes().mutex);
  return classes().byName.keys();
}

QObject *Registration::create(const QString &className, QObject *parent) {
  const QMetaObject *const meta = metaObject(className);
  if (meta == nullptr) {
    throw std::runtime_error("class " + className.toStdString() + " cannot be made: no plug-in has registered it");
  }
  QObject *const object = meta->newInstance(Q_ARG(QObject *, parent));
  if (object == nullptr) {
    throw std::runtime_error("class " + className.toStdString() +
                             " cannot be made: it has no invokable constructor taking a QObject parent");
  }
  return object;
}

}  // namespace tarvo::skarnvisor
