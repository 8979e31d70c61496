#pragma once

#include "default/telemetry/resistance_table.h"

#include <QString>
#include <QVariant>

#include <mutex>
#include <vector>

namespace tarvo::skarnvisor {

/// One row of a table of named values.
struct NamedValue {
  int id = 0;
  QString name;
  QVariant value;
};

/// Rows that the parser replaces and the GUI thread reads, each under the table's own lock.
class NamedValues {
 public:
  void replace(std::vector<NamedValue> rows);
  int size() const;

  /// A copy of a row; an empty one outside the table.
  NamedValue row(int index) const;

 private:
  mutable std::mutex m_mutex;  ///< guards m_rows
  std::vector<NamedValue> m_rows;
};

/// What stands behind the monitor and the fault table of a render buffer.
struct DeviceTables {
  NamedValues monitorRows;
  NamedValues faultRows;
  ResistanceTable rntcTable;
};

}  // namespace tarvo::skarnvisor
