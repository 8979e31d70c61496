// The monitor and fault tables as the panels see them.
#include "tests/default_pipeline/parser_fixture.h"
#include "tests/default_telemetry/status_block.h"

#include "default/families/default_sdk_KR_parser.h"
#include "default/families/default_sdk_LM_parser.h"
#include "tests/support/files.h"
#include "tests/support/test_environment.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QFile>
#include <QIdentityProxyModel>
#include <QSignalSpy>

#include <chrono>
#include <thread>

namespace tarvo::skarnvisor::test {
namespace {

/// Shows the one role that the tables name to their views.
class DisplayRole : public QIdentityProxyModel {
 public:
  QVariant data(const QModelIndex &index, int role) const override {
    return role == Qt::DisplayRole ? QIdentityProxyModel::data(index, role) : QVariant();
  }
};

class MonitorTableTest : public ParserTest {
 protected:
  MonitorTableTest() { give({point(1, 2, 3)}); }

  void send(const BlockMaker &block) {
    const std::lock_guard lock(runtime->frame.mutex);
    const auto bytes = block.bytes();
    std::copy(bytes.begin(), bytes.end(), runtime->frame.deviceStatus.begin());
  }

  std::string row(int index) {
    const QAbstractTableModel *table = rb.readMonitorModel();
    std::string text;
    for (int column = 0; column < table->columnCount(); ++column)
      text += table->data(table->index(index, column)).toString().toStdString() + "|";
    return text;
  }

  static BlockMaker motor(quint16 raw) { return BlockMaker().cell(0, 0, raw); }
};

TEST_F(MonitorTableTest, ShowsTheBlockOfAFrameOnlyWhileThePanelIsOpen) {
  rb.setLidarType("VD2");
  QSignalSpy changed(&rb, &DefaultSDKFrameRenderBuffer::monitorModelChanged);
  send(motor(6004));
  parse();
  EXPECT_EQ(changed.count(), 0);
  rb.setMonitorViewEnabled(true);
  parse();
  EXPECT_EQ(changed.count(), 1);
  EXPECT_EQ(rb.readMonitorModel()->rowCount(), 1);
  EXPECT_EQ(row(0), "0|motor speed(rpm)|600.40|");

  send(motor(6014));
  parse();
  parse();
  EXPECT_EQ(changed.count(), 3) << "while paused every frame counts";
  EXPECT_EQ(row(0), "0|motor speed(rpm)|601.40|");

  runtime->frame.deviceStatus[0] = 0;
  parse();
  EXPECT_EQ(changed.count(), 3) << "a frame without a block leaves the table";
  send(BlockMaker(0).cell(0, 0, 1));
  parse();
  EXPECT_EQ(rb.readMonitorModel()->rowCount(), 0) << "a block without cells empties it";
  send(motor(6004));
  rb.setLidarType("VD3");
  parse();
  EXPECT_EQ(changed.count(), 5);
  EXPECT_EQ(rb.readMonitorModel()->rowCount(), 0) << "a type without boards";
  rb.setLidarType("VD2");
  parse();
  rb.setMonitorViewEnabled(false);
  parse();
  EXPECT_EQ(rb.readMonitorModel()->rowCount(), 1) << "closing the panel leaves the last table";
}

TEST_F(MonitorTableTest, ReadsTheBlockOnceASecondWhilePlaying) {
  rb.setLidarType("VD2");
  rb.setMonitorViewEnabled(true);
  send(motor(6004));
  source.playState->playing = true;
  QSignalSpy changed(&rb, &DefaultSDKFrameRenderBuffer::monitorModelChanged);
  const auto second = [] { return QDateTime::currentSecsSinceEpoch(); };
  const qint64 begin = second();
  for (int frame = 0; frame < 200; ++frame) parse();
  EXPECT_LE(changed.count(), second() - begin + 1);
  const int before = changed.count();
  std::this_thread::sleep_for(std::chrono::milliseconds(1050));
  parse();
  EXPECT_EQ(changed.count(), before + 1);
}

TEST_F(MonitorTableTest, TheResistanceTableIsReadWhereTheUserKeepsIt) {
  const QDir folder(documentsFolder() + QStringLiteral("/SkarnvisorDataFiles/correction/angle_correction"));
  ASSERT_TRUE(folder.mkpath(QStringLiteral(".")));
  QFile file(folder.filePath(QStringLiteral("rntc.csv")));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("idx,temp,res\n1,10,3.2\n2,20,1.2\n");
  file.close();
  DefaultSDKFrameRenderBuffer fresh;
  file.remove();
  fresh.setLidarType("VD2");
  fresh.updateMonitor(BlockMaker().cell(0, 8, 2048).cell(0, 9, 4096).data());
  const auto *const table = fresh.readMonitorModel();
  EXPECT_EQ(table->data(table->index(0, 2)).toString(), "15.00");
  EXPECT_EQ(table->data(table->index(1, 2)).toString(), "-40.00");
}

TEST_F(MonitorTableTest, FamiliesReadTheBlocksOfTheirOwnTypes) {
  const auto rowsOf = [](DefaultSDKFrameRenderBuffer &buffer, const char *type, const BlockMaker &block) {
    buffer.setLidarType(type);
    buffer.updateMonitor(block.data());
    return buffer.readMonitorModel()->rowCount();
  };
  const BlockMaker block = BlockMaker().cell(0, 0, 1).cell(0, 1, 1).cell(1, 0, 1).cell(2, 0, 1);
  DefaultKRFrameRenderBuffer kr;
  DefaultLMFrameRenderBuffer lm;
  EXPECT_EQ(rowsOf(kr, "KR2", block), 4);
  EXPECT_EQ(rowsOf(kr, "KR9", block), 2);
  EXPECT_EQ(rowsOf(kr, "VD8", block), 0);
  EXPECT_EQ(rowsOf(lm, "LM", block), 2) << "the first group alone";
  EXPECT_EQ(rowsOf(lm, "LMQ", block), 2);
  EXPECT_EQ(rowsOf(rb, "KR2", block), 0);
}

TEST_F(MonitorTableTest, TablesAreSoundModelsThroughoutTheirLife) {
  rb.setLidarType("Ornika210");
  rb.setMonitorViewEnabled(true);
  rb.setFaultmessageViewEnabled(true);
  for (QAbstractTableModel *table : {rb.readMonitorModel(), rb.readFaultmessageModel()}) {
    EXPECT_EQ(table->roleNames(), (QHash<int, QByteArray>{{0, "display"}}));
    DisplayRole view;
    view.setSourceModel(table);
    const QAbstractItemModelTester tester(&view, QAbstractItemModelTester::FailureReportingMode::Fatal);
    for (const unsigned cells : {0U, 30U, 3U, 80U}) {
      BlockMaker block(cells);
      for (unsigned cell = 0; cell < cells; ++cell) block.cell(0, cell, 1).cell(1, cell, 1);
      send(block);
      std::vector<unsigned char> packets;
      for (unsigned i = 0; i < cells; ++i) {
        const auto byte = static_cast<unsigned char>(i);
        packets.insert(packets.end(), {1, 0, 0, byte, 0, 1});
      }
      source.statusPackets = packets.data();
      source.statusPacketCount = static_cast<int>(cells);
      parse();
      rb.readMonitorModel();
      rb.readFaultmessageModel();
      EXPECT_EQ(view.rowCount(), table->rowCount());
    }
    EXPECT_GT(view.rowCount(), 60);
  }
}

TEST_F(MonitorTableTest, RecordsOfAnotherSizeAreDropped) {
  rb.setFaultmessageViewEnabled(true);
  std::vector<unsigned char> packets(210, 1);
  source.statusPackets = packets.data();
  for (const int stride : {210, 6}) {
    source.statusPacketStride = stride;
    source.statusPacketCount = 1;
    parse();
    EXPECT_EQ(source.statusPacketCount, 0);
    EXPECT_EQ(rb.readFaultmessageModel()->rowCount(), stride == 6 ? 5 : 0);
  }
}

TEST_F(MonitorTableTest, IsExportedWithACommaBehindEachValue) {
  rb.setLidarType("VD2");
  rb.updateMonitor(motor(6004).letters(0, 19, "9f").letters(0, 20, "31").data());
  QAbstractTableModel *const table = rb.readMonitorModel();
  const QString path = QDir(processFolder()).filePath(QStringLiteral("monitor.csv"));
  const QByteArray expected = "ID,Name,Value,\n0,motor speed(rpm),600.40,\n20,FPGA_CFG_SHA,9f31,\n";
  bool written = false;
  ASSERT_TRUE(QMetaObject::invokeMethod(table, "exportMonitorInfo", Q_RETURN_ARG(bool, written), Q_ARG(QString, path)));
  EXPECT_TRUE(written);
  EXPECT_EQ(contents(path), expected);

  table->setProperty("columnNames", QStringList{QStringLiteral("Nr")});
  ASSERT_TRUE(QMetaObject::invokeMethod(table, "exportMonitorInfo", Q_RETURN_ARG(bool, written),
                                        Q_ARG(QUrl, QUrl::fromLocalFile(path))));
  EXPECT_TRUE(written);
  EXPECT_TRUE(contents(path).startsWith("Nr,\n0,motor")) << "the file is replaced";
  EXPECT_EQ(QDir(processFolder()).entryList({QStringLiteral("monitor.csv*")}).size(), 1) << "nothing lies beside it";
}

TEST_F(MonitorTableTest, AFailedExportSaysSoAndLeavesTheOldFile) {
  rb.setLidarType("VD2");
  rb.updateMonitor(motor(6004).data());
  auto *const table = qobject_cast<MonitorModel *>(rb.readMonitorModel());
  const LogLines lines;
  EXPECT_FALSE(table->exportMonitorInfo(QStringLiteral("no/such/folder/monitor.csv")));
  EXPECT_FALSE(table->exportMonitorInfo(processFolder()));
  EXPECT_FALSE(table->exportMonitorInfo(QUrl()));
  EXPECT_FALSE(table->exportMonitorInfo(QStringLiteral("/dev/full"))) << "a disk without room";
  EXPECT_TRUE(lines.messages().empty());

  const QString path = QDir(processFolder()).filePath(QStringLiteral("kept.csv"));
  ASSERT_TRUE(table->exportMonitorInfo(path));
  const QByteArray before = contents(path);
  {
    const FileLimit full(static_cast<rlim_t>(before.size() + 8));
    BlockMaker block;
    for (unsigned cell = 0; cell < 12; ++cell) block.cell(0, cell, 1);
    rb.updateMonitor(block.data());
    EXPECT_FALSE(table->exportMonitorInfo(path));
  }
  EXPECT_EQ(contents(path), before);
  EXPECT_TRUE(table->exportMonitorInfo(path));
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
