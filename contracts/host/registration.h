#pragma once

#include <QMetaObject>
#include <QObject>
#include <QString>
#include <QStringList>

namespace tarvo::skarnvisor {

/// Classes that can be created by name. All operations may be called from any thread.
class Registration {
 public:
  /// `className` as the meta-object spells it, namespace included. A second registration of a name replaces the first.
  static void regist(const QString &className, const QMetaObject *metaObject);

  [[nodiscard]] static const QMetaObject *metaObject(const QString &className);
  [[nodiscard]] static QStringList classNames();

  /// Creates an object through the class's invokable constructor taking a QObject*. `parent` owns it if not null and
  /// must live on the calling thread.
  /// @throws std::runtime_error naming the class, if it is not registered or has no such constructor
  [[nodiscard]] static QObject *create(const QString &className, QObject *parent);
};

}  // namespace tarvo::skarnvisor
