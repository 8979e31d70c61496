#include "app/session/lidar_tools.h"

#include <QMetaMethod>
#include <QMetaProperty>
#include <algorithm>
#include <cmath>

namespace tarvo::skarnvisor::app {
namespace {

/// The first invokable of that name; an invalid one for none.
QMetaMethod methodOf(const QObject &object, const char *name) {
  const QMetaObject &meta = *object.metaObject();
  for (int i = 0; name != nullptr && i < meta.methodCount(); ++i)
    if (meta.method(i).name() == name && meta.method(i).methodType() != QMetaMethod::Signal) return meta.method(i);
  return {};
}

bool hasProperty(const QObject &object, const char *name) {
  return name != nullptr && object.metaObject()->indexOfProperty(name) >= 0;
}

/// Hands the value over as the type that the function takes.
void call(QObject &object, const QMetaMethod &method, QVariant value) {
  if (!method.isValid() || method.parameterCount() != 1) return;
  const int type = method.parameterType(0);
  if (value.convert(type))
    method.invoke(&object, Qt::DirectConnection, QGenericArgument(QMetaType::typeName(type), value.constData()));
}

double inLimits(const ToolNumber &number, const QVariant &value) {
  const double limited = std::clamp(value.toDouble(), number.least, number.greatest);
  return number.decimals == 0 ? std::round(limited) : limited;
}

}  // namespace

bool LidarTools::has(const LidarTool &tool) const {
  if (m_buffer.isNull() || !m_buffer->property(tool.flag).toBool()) return false;
  const QMetaObject &meta = *m_buffer->metaObject();
  const auto known = [&](const char *name) {
    return name == nullptr || meta.property(meta.indexOfProperty(name)).isWritable() ||
           methodOf(*m_buffer, name).isValid();
  };
  return known(tool.setter) && known(tool.config) &&
         std::all_of(tool.numbers.begin(), tool.numbers.end(), [&](const ToolNumber &n) { return known(n.property); });
}

std::vector<const LidarTool *> LidarTools::offered() const {
  std::vector<const LidarTool *> tools;
  for (const LidarTool &tool : lidarTools())
    if (has(tool)) tools.push_back(&tool);
  return tools;
}

QVariant LidarTools::told(const char *setter) const {
  if (m_buffer.isNull() || setter == nullptr) return {};
  const QString name = QLatin1String(setter);
  if (m_waiting.contains(name)) return m_kept.value(name);
  if (hasProperty(*m_buffer, setter)) return m_buffer->property(setter);
  return m_buffer->property("toolSettings").toMap().value(name, m_kept.value(name));
}

bool LidarTools::isOn(const LidarTool &tool) const { return told(tool.setter).toBool(); }

QVariantList LidarTools::numbers(const LidarTool &tool) const {
  const QVariant config = told(tool.config);
  const QVariantList list = config.type() == QVariant::List ? config.toList() : QVariantList{config};
  QVariantList values;
  for (int i = 0; i < static_cast<int>(tool.numbers.size()); ++i) {
    const ToolNumber &number = tool.numbers[static_cast<std::size_t>(i)];
    values << (number.property != nullptr ? told(number.property) : list.value(i)).toDouble();
  }
  return values;
}

void LidarTools::set(const LidarTool &tool, const char *setter, const QVariant &value) {
  if (m_buffer.isNull()) return;
  m_kept.insert(QLatin1String(setter), value);
  const auto write = [&buffer = *m_buffer, setter, value, quiet = tool.quiet] {
    if (hasProperty(buffer, setter))
      buffer.setProperty(setter, value);
    else
      call(buffer, methodOf(buffer, setter), value);
    if (quiet) QMetaObject::invokeMethod(&buffer, "renderStateChanged", Qt::DirectConnection);
  };
  if (!m_later) return write();
  m_waiting.insert(QLatin1String(setter));
  m_later(write);
}

void LidarTools::switchTo(const LidarTool &tool, bool on) {
  if (tool.setter != nullptr) set(tool, tool.setter, on);
}

void LidarTools::setNumbers(const LidarTool &tool, const QVariantList &values) {
  if (m_buffer.isNull() || values.size() != static_cast<int>(tool.numbers.size())) return;
  QVariantList limited;
  for (int i = 0; i < values.size(); ++i) limited << inLimits(tool.numbers[static_cast<std::size_t>(i)], values[i]);
  const QMetaMethod config = methodOf(*m_buffer, tool.config);
  if (config.isValid() && config.parameterCount() == 1) {
    const bool asList = config.parameterType(0) == QMetaType::QVariantList;
    set(tool, tool.config, asList ? QVariant(limited) : limited[0]);
  }
  for (int i = 0; i < limited.size(); ++i) {
    const char *const property = tool.numbers[static_cast<std::size_t>(i)].property;
    if (property != nullptr && told(property).toDouble() != limited[i].toDouble()) set(tool, property, limited[i]);
  }
}

}  // namespace tarvo::skarnvisor::app
