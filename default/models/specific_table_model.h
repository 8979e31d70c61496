#pragma once

#include "default/models/settings_value.h"

#include <QAbstractTableModel>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <functional>
#include <vector>

namespace tarvo::skarnvisor {

/// Row selection of a table: one mark per row, GUI thread only.
class RowSelection {
 public:
  explicit RowSelection(int rows) : m_selected(static_cast<std::size_t>(rows), 0) {}

  int rows() const { return static_cast<int>(m_selected.size()); }
  bool isSelected(int row) const { return row >= 0 && row < rows() && m_selected[static_cast<std::size_t>(row)] != 0; }

  /// With x alone: toggles row x. With y alone: selects only row y. With both: selects only the rows
  /// from the one to the other. With neither (both negative): clears. Rows outside the table are ignored.
  void select(int x, int y);

  QVariantList toList() const;

 private:
  std::vector<unsigned char> m_selected;
};

/// One row per lidar channel: check box, number and angles. The render buffer supplies the cells.
class ChannelModel : public QAbstractTableModel {
  Q_OBJECT
  Q_PROPERTY(QStringList headerData READ headers NOTIFY headerDataChanged)

 public:
  using Cell = std::function<QVariant(int row, int column)>;
  static constexpr int selectableRows = 0x40000;

  ChannelModel(QObject *parent, int rowCount, QStringList headers, Cell cell);

  int rowCount(const QModelIndex &parent = {}) const override;
  int columnCount(const QModelIndex &parent = {}) const override;
  QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
  QHash<int, QByteArray> roleNames() const override;

  QStringList headers() const { return m_headers; }
  void setRowCount(int rows) { m_rowCount = rows; }

  Q_INVOKABLE void refresh();
  Q_INVOKABLE void setSelectRange(int x, int y = -1) { m_selection.select(x, y); }
  Q_INVOKABLE QVariantList selectRows() const { return m_selection.toList(); }

 Q_SIGNALS:
  void headerDataChanged();

 private:
  Relaxed<int> m_rowCount;
  QStringList m_headers;
  Cell m_cell;
  RowSelection m_selection{selectableRows};
};

/// A table of 512 rows with the selection of the channel table.
class ColumnModel : public ChannelModel {
  Q_OBJECT

 public:
  static constexpr int selectableRows = 512;

  ColumnModel(QObject *parent, QStringList headers, Cell cell);

  Q_INVOKABLE void setSelectRange(int x, int y = -1) { m_selection.select(x, y); }
  Q_INVOKABLE QVariantList selectRows() const { return m_selection.toList(); }

 private:
  RowSelection m_selection{selectableRows};
};

/// One column of the point table: title, cell by row, and the two orders over frame-store positions.
struct ColumnRecord {
  QString title;
  std::function<QVariant(int row)> value;
  std::function<bool(int a, int b)> ascending;
  std::function<bool(int a, int b)> descending;
};

/// The table of points under the canvas. It stores no cells: a column is a record, a row is looked up
/// by the column. The row count is written by the pass that lists the points, on any thread; all else
/// belongs to the GUI thread and, before the first frame, to the configuration.
class SpreadSheetModel : public QAbstractTableModel {
  Q_OBJECT
  Q_PROPERTY(QStringList columnNames READ columnNames NOTIFY columnNamesChanged)
  Q_PROPERTY(bool allDisplayed READ allDisplayed WRITE setAllDisplayed NOTIFY allDisplayedChanged)

 public:
  SpreadSheetModel(QObject *parent, QVector<ColumnRecord> columns);

  int rowCount(const QModelIndex &parent = {}) const override;
  int columnCount(const QModelIndex &parent = {}) const override;
  QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
  QHash<int, QByteArray> roleNames() const override;

  QStringList columnNames() const;
  bool allDisplayed() const { return m_allDisplayed; }
  void setAllDisplayed(bool allDisplayed) { m_allDisplayed = allDisplayed; }

  void setRowCount(int rows) { m_rowCount = rows; }

  /// Has every view load the table again.
  void reload();

  /// Inserts at `position`; anywhere outside the table appends. Raises columnNamesChanged.
  void insertColumn(ColumnRecord record, int position);

  /// Takes out the first column of that title, if there is one. Raises columnNamesChanged.
  void removeColumn(const QString &title);

 Q_SIGNALS:
  void columnNamesChanged();
  void allDisplayedChanged();

 private:
  Relaxed<int> m_rowCount{0};
  QVector<ColumnRecord> m_columns;
  Relaxed<bool> m_allDisplayed{false};
};

/// A table of named values: device monitor and faults.
class MonitorModel : public QAbstractTableModel {
  Q_OBJECT
  Q_PROPERTY(QStringList columnNames READ columnNames WRITE setColumnNames NOTIFY columnNamesChanged)

 public:
  using Cell = std::function<QVariant(int row, int column)>;

  MonitorModel(QObject *parent, int columnCount, QStringList columnNames, Cell cell);

  int rowCount(const QModelIndex &parent = {}) const override;
  int columnCount(const QModelIndex &parent = {}) const override;
  QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
  QHash<int, QByteArray> roleNames() const override;

  QStringList columnNames() const { return m_columnNames; }
  void setColumnNames(const QStringList &names) { m_columnNames = names; }
  void setRowCount(int rows) { m_rowCount = rows; }

  /// Has every view load the table again.
  void reload();

 Q_SIGNALS:
  void columnNamesChanged();

 private:
  int m_columnCount;
  Relaxed<int> m_rowCount{0};
  QStringList m_columnNames;
  Cell m_cell;
};

}  // namespace tarvo::skarnvisor
