#include "default/models/spread_sheet_model.h"

#include <QAbstractItemModelTester>
#include <QFile>
#include <QSettings>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include "default/files/settings_file.h"
#include "tests/support/files.h"
#include "tests/support/test_environment.h"

namespace tarvo::skarnvisor::test {
namespace {

ColumnRecord column(const QString &title) {
  ColumnRecord record;
  record.title = title;
  record.value = [title](int row) -> QVariant { return title + QString::number(row); };
  record.ascending = [](int a, int b) { return a < b; };
  record.descending = [](int a, int b) { return a > b; };
  return record;
}

QVector<ColumnRecord> columns(const QStringList &titles) {
  QVector<ColumnRecord> records;
  for (const QString &title : titles) records.append(column(title));
  return records;
}

class SpreadSheet : public testing::Test {
 protected:
  ~SpreadSheet() override { QFile::remove(settingsFile()); }

  static void save(const QStringList &titles) {
    QSettings(settingsFile(), QSettings::IniFormat).setValue(QStringLiteral("SpreadSheetColumnNames"), titles);
  }
};

TEST_F(SpreadSheet, ColumnsTakeTheSavedOrder) {
  struct Case {
    QStringList saved;
    QStringList given;
    QStringList expected;
  };
  for (const Case &c :
       {Case{{}, {"a", "b", "c"}, {"a", "b", "c"}}, Case{{"c", "gone", "b"}, {"a", "b", "c"}, {"c", "b", "a"}},
        Case{{"c"}, {"a", "b", "c", "d"}, {"c", "b", "a", "d"}}, Case{{"b", "b"}, {"a", "b", "b"}, {"b", "b", "a"}}}) {
    save(c.saved);
    EXPECT_EQ(SpreadSheetModel(nullptr, columns(c.given)).columnNames(), c.expected) << c.saved.join(',').toStdString();
  }
}

TEST_F(SpreadSheet, ASwapThatIsSavedHoldsForTheNextTable) {
  SpreadSheetModel table(nullptr, columns({"a", "b", "c"}));
  QSignalSpy renamed(&table, &SpreadSheetModel::columnNamesChanged);
  table.swap(0, 2);
  table.swap(0, 7);
  EXPECT_EQ(renamed.count(), 0);
  EXPECT_TRUE(table.saveCurrentColumnNames());
  EXPECT_EQ(SpreadSheetModel(nullptr, columns({"a", "b", "c"})).columnNames(), QStringList({"c", "b", "a"}));
}

TEST_F(SpreadSheet, AColumnAddedLaterTakesItsSavedPlace) {
  save({"late", "b"});
  SpreadSheetModel table(nullptr, columns({"a", "b", "c"}));
  QSignalSpy renamed(&table, &SpreadSheetModel::columnNamesChanged);
  table.insertColumn(column("late"), -1);
  EXPECT_EQ(table.columnNames(), QStringList({"late", "b", "c", "a"}));
  save({});
  table.insertColumn(column("first"), 0);
  table.removeColumn("late");
  table.removeColumn("unknown");
  EXPECT_EQ(table.columnNames(), QStringList({"first", "b", "c", "a"}));
  EXPECT_EQ(table.columnCount(), 4);
  EXPECT_EQ(renamed.count(), 4);
}

TEST_F(SpreadSheet, OneColumnIsSortedBy) {
  SpreadSheetModel table(nullptr, columns({"a", "b"}));
  EXPECT_EQ(table.rowOrder().order, 0);
  table.setSort(1, -1);
  EXPECT_EQ(table.getSort(0), 0);
  EXPECT_EQ(table.getSort(1), -1);
  EXPECT_TRUE(table.rowOrder().before(2, 1));
  table.setSort(0, 1);
  EXPECT_EQ(table.getSort(1), 0);
  EXPECT_TRUE(table.rowOrder().before(1, 2));
  for (const auto &[column, order] : {std::pair{0, 0}, {5, 1}, {-1, 1}, {0, 3}}) {
    table.setSort(column, order);
    EXPECT_EQ(table.rowOrder().order, 0) << column << ' ' << order;
    EXPECT_FALSE(table.rowOrder().before);
  }
}

TEST_F(SpreadSheet, ViewsMayTrustTheModel) {
  SpreadSheetModel table(nullptr, columns({"a", "b"}));
  // What the table is by its nature: it answers every role with the cell, and counts its rows below any index.
  const QStringList known{"model->hasChildren(topIndex)", "model->parent(childIndex)", "variant.canConvert<QSize>"};
  static QStringList complaints;
  complaints.clear();
  const auto before = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &context, const QString &text) {
    complaints.append(QString::fromLatin1(context.category) + ' ' + text);
  });
  QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::Warning);
  QSignalSpy resets(&table, &QAbstractItemModel::modelReset);
  for (const int rows : {3, 0, 1'000'000}) {
    table.setRowCount(rows);
    table.reload();
  }
  qInstallMessageHandler(before);
  EXPECT_EQ(resets.count(), 3);
  complaints.erase(std::remove_if(complaints.begin(), complaints.end(),
                                  [&](const QString &text) {
                                    return std::any_of(known.begin(), known.end(),
                                                       [&](const QString &word) { return text.contains(word); });
                                  }),
                   complaints.end());
  EXPECT_TRUE(complaints.isEmpty()) << complaints.join('\n').toStdString();
  EXPECT_EQ(table.index(999'999, 1).data().toString(), QStringLiteral("b999999"));
}

TEST_F(SpreadSheet, TheTableFileHasACommaBehindEachCell) {
  SpreadSheetModel table(nullptr, columns({"a", "b(m)"}));
  const QString path = processFolder() + "/table.csv";
  const auto written = [&] { return contents(path); };
  EXPECT_TRUE(table.exportPointsInformation(path));
  EXPECT_EQ(written(), "a,b(m),\n");
  table.setRowCount(2);
  EXPECT_TRUE(table.exportPointsInformation(QUrl::fromLocalFile(path)));
  EXPECT_EQ(written(), "a,b(m),\na0,b(m)0,\na1,b(m)1,\n");
  EXPECT_FALSE(table.exportPointsInformation(processFolder() + "/no such folder/table.csv"));
  EXPECT_FALSE(table.exportPointsInformation(QStringLiteral("/dev/full")));
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
