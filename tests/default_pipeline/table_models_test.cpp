#include "default/models/specific_table_model.h"

#include <QAbstractItemModelTester>
#include <QIdentityProxyModel>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include "tests/support/log_lines.h"

namespace tarvo::skarnvisor::test {
namespace {

QVariant numbered(int row, int column) { return column == 0 ? QVariant(row + 1) : QVariant(); }

/// What the tester can't know of these tables: their counts ignore the parent, a background says whether a row is
/// selected, where it expects a colour, and a cell may be the same for every role.
class AsTheTesterExpects : public QIdentityProxyModel {
 public:
  int rowCount(const QModelIndex &parent) const override {
    return parent.isValid() ? 0 : QIdentityProxyModel::rowCount(parent);
  }
  int columnCount(const QModelIndex &parent) const override {
    return parent.isValid() ? 0 : QIdentityProxyModel::columnCount(parent);
  }
  QVariant data(const QModelIndex &index, int role) const override {
    return role == Qt::DisplayRole ? QIdentityProxyModel::data(index, role) : QVariant();
  }
};

std::vector<int> selectedRows(const QAbstractItemModel &model) {
  std::vector<int> rows;
  for (int row = 0; row < std::min(model.rowCount(), 600); ++row)
    if (model.index(row, 0).data(Qt::BackgroundRole).toBool()) rows.push_back(row);
  return rows;
}

TEST(TableModels, KeepTheRulesOfTheirBase) {
  ChannelModel channels(nullptr, 20, {"", "CH #"}, numbered);
  ColumnModel columns(nullptr, {"", "Column"}, numbered);
  MonitorModel monitor(nullptr, 3, {"ID", "Name", "Value"}, numbered);
  monitor.setRowCount(5);
  for (QAbstractItemModel *model :
       {static_cast<QAbstractItemModel *>(&channels), static_cast<QAbstractItemModel *>(&columns),
        static_cast<QAbstractItemModel *>(&monitor)}) {
    AsTheTesterExpects shown;
    const QAbstractItemModelTester tester(&shown, QAbstractItemModelTester::FailureReportingMode::Fatal);
    shown.setSourceModel(model);
    QSignalSpy reset(&shown, &QAbstractItemModel::modelReset);
    if (model != &monitor) QMetaObject::invokeMethod(model, "refresh");
    monitor.reload();
    EXPECT_EQ(reset.count(), 1);
  }
  EXPECT_EQ(columns.rowCount(), 512);
  EXPECT_EQ(channels.roleNames(), (QHash<int, QByteArray>{{0, "display"}, {8, "background"}}));
  EXPECT_EQ(channels.property("headerData").toStringList(), QStringList({"", "CH #"}));
}

template <typename Model>
void expectSelection(Model &model, int selectable) {
  struct Case {
    int x, y;
    std::vector<int> selected;
  };
  for (const Case &c : {Case{5, -1, {5}},
                        {5, -1, {}},
                        {1, -1, {1}},
                        {8, -1, {1, 8}},
                        {9, 7, {7, 8, 9}},
                        {-1, 7, {7}},
                        {3, 3, {3}},
                        {-1, -1, {}},
                        {-5, 600'000, {}},
                        {600'000, -1, {}}}) {
    QMetaObject::invokeMethod(&model, "setSelectRange", Q_ARG(int, c.x), Q_ARG(int, c.y));
    EXPECT_EQ(selectedRows(model), c.selected) << c.x << ", " << c.y;
  }
  QMetaObject::invokeMethod(&model, "setSelectRange", Q_ARG(int, 2));
  model.setSelectRange(selectable - 1);
  QVariantList rows;
  QMetaObject::invokeMethod(&model, "selectRows", Q_RETURN_ARG(QVariantList, rows));
  ASSERT_EQ(rows.size(), selectable) << "whatever the row count";
  EXPECT_EQ(rows.count(QVariant(true)), 2);
  EXPECT_EQ(rows.first(), QVariant(false));
  EXPECT_EQ(rows.last(), QVariant(true));
}

TEST(TableModels, RowsAreSelectedAloneInRangesAndByToggling) {
  ChannelModel channels(nullptr, 20, {"", "CH #"}, numbered);
  expectSelection(channels, 0x40000);
  ColumnModel columns(nullptr, {"", "Column"}, numbered);
  expectSelection(columns, 512);
}

TEST(TableModels, ATableLongerThanItsSelectionSaysSoAndWorks) {
  const LogLines log;
  ChannelModel channels(nullptr, 0x40001, {"", "CH #"}, numbered);
  const auto entries = log.entries();
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0].message, "error: row_selected_.size() < row");
  EXPECT_EQ(entries[0].level, LogLevel::Error);
  channels.setSelectRange(0x3fffe, 0x40000);
  channels.setSelectRange(0x40000);
  EXPECT_EQ(channels.rowCount(), 0x40001);
  const auto background = [&channels](int row) { return channels.index(row, 0).data(Qt::BackgroundRole).toBool(); };
  EXPECT_TRUE(background(0x3ffff));
  EXPECT_FALSE(background(0x40000)) << "behind what can be selected";
  EXPECT_EQ(channels.index(0x40000, 0).data(), QVariant(0x40001));
  EXPECT_EQ(channels.selectRows().size(), 0x40000);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
