#include "default/models/spread_sheet_model.h"

#include "default/files/settings_file.h"

#include <QSettings>

#include <algorithm>
#include <utility>

namespace tarvo::skarnvisor {

namespace {

const QString savedOrderKey = QStringLiteral("SpreadSheetColumnNames");

QStringList savedOrder() { return QSettings(settingsFile(), QSettings::IniFormat).value(savedOrderKey).toStringList(); }

/// Brings the columns of `saved` to the front, in that order. The others stay behind them as the swaps leave them.
void applySavedOrder(QVector<ColumnRecord> &columns, const QStringList &saved) {
  auto next = columns.begin();
  for (const QString &title : saved) {
    const auto found =
        std::find_if(next, columns.end(), [&](const ColumnRecord &column) { return column.title == title; });
    if (found == columns.end()) continue;
    if (found != next) std::iter_swap(next, found);
    ++next;
  }
}

}  // namespace

SpreadSheetModel::SpreadSheetModel(QObject *parent, QVector<ColumnRecord> columns) : QAbstractTableModel(parent) {
  applySavedOrder(columns, savedOrder());
  m_layout.set({std::move(columns)});
}

int SpreadSheetModel::rowCount(const QModelIndex &) const { return m_rowCount; }

int SpreadSheetModel::columnCount(const QModelIndex &) const { return m_layout.take()->columns.size(); }

QVariant SpreadSheetModel::data(const QModelIndex &index, int) const {
  const auto layout = m_layout.take();
  if (index.column() < 0 || index.column() >= layout->columns.size()) return {};
  return layout->columns.at(index.column()).value(index.row());
}

QHash<int, QByteArray> SpreadSheetModel::roleNames() const { return {{0, QByteArrayLiteral("display")}}; }

void SpreadSheetModel::reload() {
  beginResetModel();
  endResetModel();
}

QStringList SpreadSheetModel::columnNames() const {
  QStringList names;
  const auto layout = m_layout.take();
  for (const ColumnRecord &column : layout->columns) names.append(column.title);
  return names;
}

bool SpreadSheetModel::saveCurrentColumnNames() {
  QSettings(settingsFile(), QSettings::IniFormat).setValue(savedOrderKey, columnNames());
  return true;
}

int SpreadSheetModel::getSort(int column) const {
  const auto layout = m_layout.take();
  return column == layout->sortColumn ? layout->sortOrder : 0;
}

void SpreadSheetModel::setSort(int column, int order) {
  m_layout.update([=](Layout &layout) {
    layout.sortColumn = column;
    layout.sortOrder = order;
  });
}

void SpreadSheetModel::swap(int a, int b) {
  m_layout.update([=](Layout &layout) {
    const auto inside = [&](int index) { return index >= 0 && index < layout.columns.size(); };
    if (inside(a) && inside(b) && a != b) std::swap(layout.columns[a], layout.columns[b]);
  });
}

RowOrder SpreadSheetModel::rowOrder() const {
  const auto layout = m_layout.take();
  const int column = layout->sortColumn;
  const bool ascending = layout->sortOrder == 1;
  if ((!ascending && layout->sortOrder != -1) || column < 0 || column >= layout->columns.size()) return {};
  const ColumnRecord &record = layout->columns.at(column);
  return {layout->sortOrder, record.keys, ascending ? record.ascending : record.descending};
}

void SpreadSheetModel::insertColumn(ColumnRecord record, int position) {
  const QStringList saved = savedOrder();
  m_layout.update([&](Layout &layout) {
    const bool inside = position >= 0 && position < layout.columns.size();
    layout.columns.insert(inside ? position : layout.columns.size(), record);
    applySavedOrder(layout.columns, saved);
  });
  Q_EMIT columnNamesChanged();
}

void SpreadSheetModel::removeColumn(const QString &title) {
  const QStringList saved = savedOrder();
  m_layout.update([&](Layout &layout) {
    auto &columns = layout.columns;
    const auto column =
        std::find_if(columns.begin(), columns.end(), [&](const ColumnRecord &record) { return record.title == title; });
    if (column != columns.end()) columns.erase(column);
    applySavedOrder(columns, saved);
  });
  Q_EMIT columnNamesChanged();
}

}  // namespace tarvo::skarnvisor
