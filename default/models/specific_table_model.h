#pragma once

#include "default/models/settings_value.h"
#include "default/models/spread_sheet_model.h"

#include <QAbstractTableModel>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariant>

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

 protected:
  /// `selectable`: rows that can be selected; those behind them are shown only.
  ChannelModel(QObject *parent, int rowCount, int selectable, QStringList headers, Cell cell);

 private:
  Relaxed<int> m_rowCount;
  QStringList m_headers;
  Cell m_cell;
  RowSelection m_selection;
};

/// A table of 512 rows with the selection of the channel table.
class ColumnModel : public ChannelModel {
  Q_OBJECT

 public:
  static constexpr int columnRows = 512;

  ColumnModel(QObject *parent, QStringList headers, Cell cell);
};

/// A table of named values: device monitor and faults. The row count is written by the pass that fills the rows, on any
/// thread; all else belongs to the GUI thread, but for the export, which any one thread may call.
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

  /// Writes titles and rows to a file, each value followed by a comma. False when it could not be written; what a
  /// regular file held is kept then.
  Q_INVOKABLE bool exportMonitorInfo(QUrl fileUrl);
  Q_INVOKABLE bool exportMonitorInfo(QString filePath);

 Q_SIGNALS:
  void columnNamesChanged();

 private:
  int m_columnCount;
  Relaxed<int> m_rowCount{0};
  QStringList m_columnNames;
  Cell m_cell;
};

}  // namespace tarvo::skarnvisor
