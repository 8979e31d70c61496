#pragma once

#include <QAbstractTableModel>
#include <QFutureWatcher>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QVector3D>
#include <array>

namespace tarvo::skarnvisor::app {

/// What takes long in a table of a million points: listing and sorting its rows, done on a thread of its own, and the
/// search for a point's row, done a few milliseconds at a time. GUI thread.
class TableRows : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool listing READ isListing NOTIFY listingChanged)

 public:
  explicit TableRows(QObject *parent = nullptr);
  ~TableRows() override { stop(); }

  bool isListing() const { return m_watcher.isRunning(); }

  /// Lists the buffer's points anew and sorts them as its table asks. Asked again while that runs, it follows once
  /// more.
  Q_INVOKABLE void list(QObject *buffer);
  /// Looks for the row of the point at `place`, metres, in the columns of the coordinates; `found` tells of it. Ends an
  /// earlier search. A table that is listed anew meanwhile is searched from its start.
  Q_INVOKABLE void find(QAbstractTableModel *table, const QVector3D &place);
  /// Waits for the listing under way; before its buffer goes.
  void stop();

 Q_SIGNALS:
  void listingChanged();
  void found(int row);

 private:
  void search();
  bool isAt(int row) const;

  QFutureWatcher<void> m_watcher;
  QPointer<QObject> m_next;  ///< buffer to be listed after the one under way
  QPointer<QAbstractTableModel> m_table;
  QVector3D m_place;
  std::array<int, 3> m_columns{};  ///< of x, y and z
  int m_row = 0;
  QTimer m_turn;
};

}  // namespace tarvo::skarnvisor::app
