#include "app/window/tool_list.h"

#include <utility>

namespace tarvo::skarnvisor::app {
namespace {

QString text(const char *utf8) { return QString::fromUtf8(utf8); }

QVariantMap describe(const LidarTool &tool) {
  QVariantList numbers;
  for (const ToolNumber &number : tool.numbers)
    numbers << QVariantMap{{QStringLiteral("title"), text(number.title)},
                           {QStringLiteral("least"), number.least},
                           {QStringLiteral("greatest"), number.greatest},
                           {QStringLiteral("decimals"), number.decimals},
                           {QStringLiteral("at"), numbers.size()}};
  return {{QStringLiteral("name"), text(tool.name)}, {QStringLiteral("title"), text(tool.title)},
          {QStringLiteral("tip"), text(tool.tip)},   {QStringLiteral("part"), text(tool.part)},
          {QStringLiteral("numbers"), numbers},      {QStringLiteral("switched"), tool.setter != nullptr}};
}

}  // namespace

ToolList::ToolList(BufferCalls &calls, QObject *parent) : QObject(parent), m_calls(calls) {
  connect(&calls, &BufferCalls::runningChanged, this, [this] {
    if (m_calls.isRunning()) return;
    m_tools.settle();
    readState();
  });
}

void ToolList::setBuffer(QObject *buffer) {
  m_tools = LidarTools(buffer, [this](auto call) { m_calls.run(std::move(call)); });
  if (buffer != nullptr && buffer->metaObject()->indexOfSignal("qmlControlChanged()") >= 0) {
    connect(buffer, SIGNAL(qmlControlChanged()), this, SLOT(readRows()));
    connect(buffer, SIGNAL(renderStateChanged()), this, SLOT(readState()));
  }
  m_start = stateNow();
  readRows();
}

QVariantMap ToolList::stateNow() const {
  QVariantMap state;
  for (const LidarTool *tool : m_tools.offered())
    state.insert(text(tool->name), QVariantMap{{QStringLiteral("on"), m_tools.isOn(*tool)},
                                               {QStringLiteral("numbers"), m_tools.numbers(*tool)}});
  return state;
}

void ToolList::readRows() {
  QVariantList rows;
  for (const LidarTool *tool : m_tools.offered()) rows << describe(*tool);
  // The state first: a row looks its own up.
  readState();
  if (rows == m_rows) return;
  m_rows = rows;
  Q_EMIT rowsChanged();
}

void ToolList::readState() {
  const QVariantMap state = stateNow();
  if (state == m_state) return;
  m_state = state;
  Q_EMIT stateChanged();
}

const LidarTool *ToolList::find(const QString &name) const {
  for (const LidarTool *tool : m_tools.offered())
    if (name == text(tool->name)) return tool;
  return nullptr;
}

void ToolList::switchTo(const QString &name, bool on) {
  if (const LidarTool *tool = find(name)) m_tools.switchTo(*tool, on);
  readState();
}

void ToolList::setNumber(const QString &name, int at, double value) {
  const LidarTool *tool = find(name);
  if (tool == nullptr) return;
  QVariantList numbers = m_tools.numbers(*tool);
  if (at < 0 || at >= numbers.size()) return;
  numbers[at] = value;
  m_tools.setNumbers(*tool, numbers);
  readState();
}

void ToolList::reset(const QString &name) {
  if (const LidarTool *tool = find(name))
    m_tools.setNumbers(*tool, m_start[name].toMap().value(QStringLiteral("numbers")).toList());
  readState();
}

}  // namespace tarvo::skarnvisor::app
