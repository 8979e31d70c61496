#pragma once

#include <QObject>
#include <QVariant>

#include "app/session/lidar_tools.h"
#include "app/window/buffer_calls.h"

namespace tarvo::skarnvisor::app {

/// The tools of the open lidar as the tool boxes bind to them. Lives on the GUI thread.
class ToolList : public QObject {
  Q_OBJECT
  /// The tools on offer: maps with "name", "title", "tip" and "part" as texts, the bool "switched", and "numbers", maps
  /// with "title", "least", "greatest", "decimals" and "at", the place among the tool's numbers.
  Q_PROPERTY(QVariantList rows READ rows NOTIFY rowsChanged)
  /// By the name of a tool, a map with the bool "on" and the list "numbers".
  Q_PROPERTY(QVariantMap state READ state NOTIFY stateChanged)

 public:
  /// What the user sets reaches the buffer by `calls`.
  explicit ToolList(BufferCalls &calls, QObject *parent = nullptr);

  /// Observes it; null for none.
  void setBuffer(QObject *buffer);
  QVariantList rows() const { return m_rows; }
  QVariantMap state() const { return m_state; }

  Q_INVOKABLE void switchTo(const QString &name, bool on);
  Q_INVOKABLE void setNumber(const QString &name, int at, double value);
  /// Gives the numbers what they had when the source was opened.
  Q_INVOKABLE void reset(const QString &name);

 private Q_SLOTS:
  void readRows();
  void readState();

 Q_SIGNALS:
  void rowsChanged();
  void stateChanged();

 private:
  const LidarTool *find(const QString &name) const;
  QVariantMap stateNow() const;

  BufferCalls &m_calls;
  LidarTools m_tools;
  QVariantList m_rows;
  QVariantMap m_state;
  QVariantMap m_start;
};

}  // namespace tarvo::skarnvisor::app
