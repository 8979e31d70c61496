#pragma once

#include "default/files/output_file.h"
#include "default/models/settings_value.h"

#include <QAbstractTableModel>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariant>
#include <QVector>

#include <cstdint>
#include <functional>
#include <span>
#include <utility>

namespace tarvo::skarnvisor {

/// One column of the point table: title, cell by row, and the two orders over frame-store positions. Both
/// orders put a value that is no number behind all others.
struct ColumnRecord {
  using Keys = std::function<void(std::span<const std::uint32_t> positions, std::uint64_t *keys)>;

  QString title;
  std::function<QVariant(int row)> value;
  std::function<bool(int a, int b)> ascending;
  std::function<bool(int a, int b)> descending;
  Keys keys;  ///< for many positions at once, numbers that order as `ascending` does; may be unset
  /// Appends the cell of a frame-store position, the same text as `value` gives; called by several threads while
  /// `RowAccess` holds the points still. May be unset.
  std::function<void(std::uint32_t position, TextStream &text)> text;
};

/// Calls its argument once with the frame-store position of each listed row, while rows and points stand still.
using RowAccess = std::function<void(const std::function<void(std::span<const std::uint32_t> positions)> &read)>;

/// How the rows are to be ordered: 1 ascending, -1 descending, 0 in visiting order with the functions unset.
struct RowOrder {
  int order = 0;
  ColumnRecord::Keys keys;                   ///< of the sort column, ascending whatever `order` is; may be unset
  std::function<bool(int a, int b)> before;  ///< the order function of the sort column that fits `order`
};

/// The table of points under the canvas. It stores no cells: a column is a record, a row is looked up
/// by the column. The row count is written by the pass that lists the points and the order is read by it,
/// on any thread; all else belongs to the GUI thread and, before the first frame, to the configuration.
class SpreadSheetModel : public QAbstractTableModel {
  Q_OBJECT
  Q_PROPERTY(QStringList columnNames READ columnNames NOTIFY columnNamesChanged)
  Q_PROPERTY(bool allDisplayed READ allDisplayed WRITE setAllDisplayed NOTIFY allDisplayedChanged)

 public:
  /// Takes the columns in the order that the user saved.
  SpreadSheetModel(QObject *parent, QVector<ColumnRecord> columns);

  int rowCount(const QModelIndex &parent = {}) const override;
  int columnCount(const QModelIndex &parent = {}) const override;
  /// The cell, whatever the role.
  QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
  QHash<int, QByteArray> roleNames() const override;

  QStringList columnNames() const;
  bool allDisplayed() const { return m_allDisplayed; }
  void setAllDisplayed(bool allDisplayed) { m_allDisplayed = allDisplayed; }

  /// Writes the order of the columns to the settings file, which new tables take it from.
  Q_INVOKABLE bool saveCurrentColumnNames();
  /// The sort order if `column` is the sort column, else 0.
  Q_INVOKABLE int getSort(int column) const;
  /// Takes effect when the rows are listed next.
  Q_INVOKABLE void setSort(int column, int order);
  /// Exchanges two columns; raises nothing. An index outside the table is ignored.
  Q_INVOKABLE void swap(int a, int b);

  /// Writes the table as comma-separated values: a line of titles and one for each row, each cell with a comma behind
  /// it, nothing quoted, the text in the locale's encoding. A file that was there is replaced when all is written.
  Q_INVOKABLE bool exportPointsInformation(QUrl fileUrl) const {
    return exportPointsInformation(fileUrl.toLocalFile());
  }
  Q_INVOKABLE bool exportPointsInformation(QString filePath) const;
  /// The same with only the columns of `titles`, in that order; all of the table's without titles. Any thread.
  WriteOutcome writeTable(const QString &filePath, const QStringList &titles, WriteProgress &progress) const;
  /// Once, before the first rows. Lets an export read many rows at a time.
  void setRowAccess(RowAccess access) { m_rowAccess = std::move(access); }

  void setRowCount(int rows) { m_rowCount = rows; }

  /// What the rows are ordered by, as one consistent value. Any thread.
  RowOrder rowOrder() const;

  /// Has every view load the table again.
  void reload();

  /// Inserts at `position`; anywhere outside the table appends. The saved order applies. Raises columnNamesChanged.
  void insertColumn(ColumnRecord record, int position);

  /// Takes out the first column of that title, if there is one. The saved order applies. Raises columnNamesChanged.
  void removeColumn(const QString &title);

 Q_SIGNALS:
  void columnNamesChanged();
  void allDisplayedChanged();

 private:
  struct Layout {
    QVector<ColumnRecord> columns;
    int sortColumn = 0;
    int sortOrder = 0;
  };

  Relaxed<int> m_rowCount{0};
  Snapshot<Layout> m_layout;
  Relaxed<bool> m_allDisplayed{false};
  RowAccess m_rowAccess;
};

}  // namespace tarvo::skarnvisor
