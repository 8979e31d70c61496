#pragma once

#include <QSortFilterProxyModel>
#include <QUrl>

#include "app/window/log_model.h"

namespace tarvo::skarnvisor::app {

/// The lines of the log that the user wants to see. GUI thread.
class LogView : public QSortFilterProxyModel {
  Q_OBJECT
  Q_PROPERTY(int count READ count NOTIFY countChanged)
  /// 0: all lines, 1: warnings and errors, 2: errors.
  Q_PROPERTY(int severity READ severity WRITE setSeverity NOTIFY wantChanged)
  /// Text that a line holds, whatever its case; empty for all.
  Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY wantChanged)

 public:
  explicit LogView(LogModel &log, QObject *parent = nullptr);

  int count() const { return rowCount(); }
  int severity() const { return m_severity; }
  void setSeverity(int severity);
  QString search() const { return m_search; }
  void setSearch(const QString &search);

  /// The lines seen as text, with their sources.
  Q_INVOKABLE QString text() const;
  /// Writes that text to a file; false if it cannot be written.
  Q_INVOKABLE bool save(const QUrl &target) const;

 Q_SIGNALS:
  void countChanged();
  void wantChanged();

 protected:
  bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

 private:
  int m_severity = 0;
  QString m_search;
};

}  // namespace tarvo::skarnvisor::app
