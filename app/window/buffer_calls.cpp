#include "app/window/buffer_calls.h"

#include <QMetaMethod>
#include <array>
#include <cstddef>
#include <mutex>
#include <utility>

namespace tarvo::skarnvisor::app {
namespace {

constexpr int mostArguments = 3;

QMetaMethod methodOf(const QObject &object, const QByteArray &name, int arguments) {
  const QMetaObject &meta = *object.metaObject();
  for (int i = 0; i < meta.methodCount(); ++i)
    if (meta.method(i).name() == name && meta.method(i).parameterCount() == arguments) return meta.method(i);
  return {};
}

void invoke(QObject &object, const QByteArray &name, QVariantList values) {
  const QMetaMethod method = methodOf(object, name, values.size());
  if (!method.isValid() || values.size() > mostArguments) {
    qWarning("%s has no %s that takes %d arguments", object.metaObject()->className(), name.constData(),
             static_cast<int>(values.size()));
    return;
  }
  std::array<QGenericArgument, mostArguments> arguments;
  for (int i = 0; i < values.size(); ++i) {
    const int type = method.parameterType(i);
    if (!values[i].convert(type)) {
      qWarning("%s does not take argument %d that is given", method.methodSignature().constData(), i);
      return;
    }
    arguments[static_cast<std::size_t>(i)] =
        QGenericArgument(QMetaType::typeName(type), std::as_const(values)[i].constData());
  }
  method.invoke(&object, Qt::DirectConnection, arguments[0], arguments[1], arguments[2]);
}

}  // namespace

/// The value of a write that waits for its turn.
class BufferCalls::Write {
 public:
  Write(QObject *object, QByteArray property, QVariant value)
      : m_object(object), m_property(std::move(property)), m_value(std::move(value)) {}

  bool isOf(const QObject *object, const QByteArray &property) const {
    return m_object == object && m_property == property;
  }
  /// False once it was taken.
  bool replace(const QVariant &value) {
    const std::lock_guard lock(m_mutex);
    if (!m_taken) m_value = value;
    return !m_taken;
  }
  void perform() {
    if (!m_object->setProperty(m_property.constData(), take()))
      qWarning("%s takes no such %s", m_object->metaObject()->className(), m_property.constData());
  }

 private:
  QVariant take() {
    const std::lock_guard lock(m_mutex);
    m_taken = true;
    return m_value;
  }

  QObject *const m_object;
  const QByteArray m_property;
  std::mutex m_mutex;  ///< guards the two below
  QVariant m_value;
  bool m_taken = false;
};

BufferCalls::BufferCalls(BackgroundCalls &background, QObject *parent) : QObject(parent), m_background(background) {}

void BufferCalls::set(QObject *object, const QString &property, const QVariant &value) {
  if (object == nullptr || !m_taken) return;
  const QByteArray name = property.toLatin1();
  // Ahead of what was asked since, a newer value might be refused.
  if (m_write && m_write->isOf(object, name) && m_write->replace(value)) return;
  m_write = std::make_shared<Write>(object, name, value);
  enqueue([write = m_write] { write->perform(); });
}

void BufferCalls::call(QObject *object, const QString &method, const QVariantList &arguments) {
  if (object == nullptr) return;
  run([object, name = method.toLatin1(), arguments] { invoke(*object, name, arguments); });
}

void BufferCalls::run(std::function<void()> call) {
  m_write.reset();
  enqueue(std::move(call));
}

void BufferCalls::enqueue(std::function<void()> call) {
  if (!m_taken) return;
  if (m_outstanding++ == 0) Q_EMIT runningChanged();
  m_background.run([this, call = std::move(call), drops = m_drops.load()] {
    if (drops == m_drops) call();
    QMetaObject::invokeMethod(
        this,
        [this] {
          if (--m_outstanding == 0) Q_EMIT runningChanged();
        },
        Qt::QueuedConnection);
  });
}

void BufferCalls::drop() {
  m_taken = false;
  ++m_drops;
  m_write.reset();
}

}  // namespace tarvo::skarnvisor::app
