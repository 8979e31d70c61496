#include "default/models/specific_table_model.h"

#include "contracts/host/log.h"

#include <algorithm>
#include <utility>

SKARN_LOG_SOURCE("default/specific_table_model");

namespace tarvo::skarnvisor {

namespace {

QHash<int, QByteArray> displayRole() { return {{Qt::DisplayRole, QByteArrayLiteral("display")}}; }

}  // namespace

void RowSelection::select(int x, int y) {
  if (x >= 0 && y < 0) {
    if (x < rows()) {
      auto &mark = m_selected[static_cast<std::size_t>(x)];
      mark = mark != 0 ? 0 : 1;
    }
    return;
  }
  std::fill(m_selected.begin(), m_selected.end(), 0);
  if (y < 0) return;
  const int first = x < 0 ? y : std::min(x, y);
  const int last = std::min(x < 0 ? y : std::max(x, y), rows() - 1);
  for (int row = first; row <= last; ++row) m_selected[static_cast<std::size_t>(row)] = 1;
}

QVariantList RowSelection::toList() const {
  QVariantList list;
  list.reserve(rows());
  for (const unsigned char selected : m_selected) list.append(selected != 0);
  return list;
}

ChannelModel::ChannelModel(QObject *parent, int rowCount, QStringList headers, Cell cell)
    : ChannelModel(parent, rowCount, selectableRows, std::move(headers), std::move(cell)) {}

ChannelModel::ChannelModel(QObject *parent, int rowCount, int selectable, QStringList headers, Cell cell)
    : QAbstractTableModel(parent),
      m_rowCount(rowCount),
      m_headers(std::move(headers)),
      m_cell(std::move(cell)),
      m_selection(selectable) {
  if (rowCount > selectable) SKARN_LOG(LogLevel::Error, "error: row_selected_.size() < row");
}

int ChannelModel::rowCount(const QModelIndex &) const { return m_rowCount; }

int ChannelModel::columnCount(const QModelIndex &) const { return m_headers.size(); }

QVariant ChannelModel::data(const QModelIndex &index, int role) const {
  if (role == Qt::DisplayRole) return m_cell(index.row(), index.column());
  if (role == Qt::BackgroundRole) return m_selection.isSelected(index.row());
  return {};
}

QHash<int, QByteArray> ChannelModel::roleNames() const {
  auto roles = displayRole();
  roles.insert(Qt::BackgroundRole, QByteArrayLiteral("background"));
  return roles;
}

void ChannelModel::refresh() {
  beginResetModel();
  endResetModel();
}

ColumnModel::ColumnModel(QObject *parent, QStringList headers, Cell cell)
    : ChannelModel(parent, columnRows, columnRows, std::move(headers), std::move(cell)) {}

MonitorModel::MonitorModel(QObject *parent, int columnCount, QStringList columnNames, Cell cell)
    : QAbstractTableModel(parent),
      m_columnCount(columnCount),
      m_columnNames(std::move(columnNames)),
      m_cell(std::move(cell)) {}

int MonitorModel::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : m_rowCount.load(); }

int MonitorModel::columnCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : m_columnCount; }

void MonitorModel::reload() {
  beginResetModel();
  endResetModel();
}

QVariant MonitorModel::data(const QModelIndex &index, int) const { return m_cell(index.row(), index.column()); }

QHash<int, QByteArray> MonitorModel::roleNames() const { return displayRole(); }

}  // namespace tarvo::skarnvisor
