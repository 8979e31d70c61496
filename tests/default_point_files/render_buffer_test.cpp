// What QML does with a frame: colours, selection, tables, capture, saving.
#include <gmock/gmock.h>

#include <QAbstractItemModelTester>
#include <QMatrix4x4>
#include <QSettings>
#include <atomic>
#include <thread>

#include "default/files/settings_file.h"
#include "tests/default_point_files/pipeline_fixture.h"
#include "tests/support/files.h"

namespace tarvo::skarnvisor {
namespace {

using namespace test;
using testing::HasSubstr;

/// Holds what lies within 5 m of the origin along each axis: |w| = 5 beside |x|, |y|, |z|.
QMatrix4x4 boxOf5m() {
  QMatrix4x4 matrix;
  matrix(3, 3) = 5.0F;
  return matrix;
}

std::string readAll(const QString &path) { return contents(path).toStdString(); }

class PcdRenderBuffer : public testing::Test {
 protected:
  void show() { pipeline.showFile(path); }

  PointPipeline pipeline;
  DefaultPcdFrameRenderBuffer &buffer = pipeline.buffer;
  std::string path = binFile("frame.bin", {binRecord(1, 1, 1, 64, 10, 257), binRecord(9, 0, 0, 128, 20, 5),
                                           binRecord(2, 2, 2, 192, 30, 1025)});
};

TEST_F(PcdRenderBuffer, ColoursAreTheNormalisedAttributes) {
  QSignalSpy rerun(&buffer, &DefaultPcdFrameRenderBuffer::renderStateChanged);
  const std::pair<int, float> expected[] = {{0, 5.0F / 257.0F}, {1, 0.0F},  {2, 45.0F / 140.0F},
                                            {3, 0.5F},          {4, 0.03F}, {5, 309.0F / 600.0F},
                                            {6, 0.5F},          {7, 0.5F},  {8, 20.0F / 256.0F}};
  for (const auto &[mode, value] : expected) {
    buffer.setColorMode(mode);
    show();
    EXPECT_NEAR(pipeline.mainColor(1), value, 0.0006F) << mode;
  }
  EXPECT_EQ(rerun.count(), 9);
  const std::uint32_t word = pipeline.vertices()[1].color;
  EXPECT_NEAR(floatFromHalf(static_cast<std::uint16_t>(word >> 16)), 0.03F, 0.0002F) << "split window: distance";
  buffer.setColorMode(0);
  buffer.updateMask(255);
  show();
  EXPECT_NEAR(pipeline.mainColor(0), 1.0F / 257.0F, 0.0001F) << "257 & 255";
}

TEST_F(PcdRenderBuffer, SelectionMarksListsAndForgets) {
  show();
  auto *const table = qobject_cast<SpreadSheetModel *>(buffer.readSpreadSheetModel());
  const QAbstractItemModelTester tester(table);
  buffer.setSelectionMatrix(boxOf5m());
  EXPECT_EQ(table->rowCount(), 0) << "not selecting";
  QSignalSpy rerun(&buffer, &DefaultPcdFrameRenderBuffer::renderStateChanged);
  QSignalSpy tables(&buffer, &DefaultPcdFrameRenderBuffer::spreadSheetModelChanged);
  QSignalSpy changed(&buffer, &DefaultPcdFrameRenderBuffer::vertexChanged);
  buffer.setSelectEnabled(true);
  EXPECT_EQ(rerun.count() * 100 + tables.count() * 10 + changed.count(), 111);
  EXPECT_EQ(pipeline.vertices()[0].color, highlightMark);
  EXPECT_EQ(pipeline.point(0).selected, 1);
  EXPECT_EQ(pipeline.point(1).selected, 0);
  EXPECT_EQ(table->rowCount(), 1) << "the hidden point inside is not listed";
  EXPECT_EQ(buffer.readSpreadSheetModel()->index(0, 0).data(), 257);

  show();
  EXPECT_EQ(pipeline.vertices()[0].color, highlightMark) << "a new frame is marked while it is placed";

  buffer.setSelectionMatrix(nothingSelected());
  EXPECT_FLOAT_EQ(pipeline.mainColor(0), 0.25F) << "outside again: its colour comes back";
  EXPECT_EQ(pipeline.point(0).selected, 0);
  EXPECT_EQ(table->rowCount(), 0);

  table->setAllDisplayed(true);
  buffer.setSelectionMatrix(boxOf5m());
  EXPECT_EQ(table->rowCount(), 2) << "all shown points";
  buffer.setSelectEnabled(false);
  EXPECT_EQ(table->rowCount(), 2);
  EXPECT_EQ(pipeline.point(1).selected, 1);
}

TEST_F(PcdRenderBuffer, ThePointTable) {
  auto *const table = qobject_cast<SpreadSheetModel *>(buffer.readSpreadSheetModel());
  EXPECT_EQ(table->columnNames(), (QStringList{"Ch", "Dist(m)", "Rfl", "Azi(deg)", "Ele(deg)", "t(us)", "x(m)", "y(m)",
                                               "z(m)", "confidence"}));
  table->setAllDisplayed(true);
  QSignalSpy tables(&buffer, &DefaultPcdFrameRenderBuffer::spreadSheetModelChanged);
  show();
  EXPECT_EQ(tables.count(), 0) << "the table is closed";
  buffer.setSpreadSheetEnabled(true);
  show();
  EXPECT_EQ(tables.count(), 1);
  const auto row = [&](int index) {
    QStringList cells;
    for (int column = 0; column < table->columnCount(); ++column)
      cells.append(table->data(table->index(index, column)).toString());
    return cells.join(' ');
  };
  EXPECT_EQ(row(1), "5 9.000 128 90.000 0.000 0 9.000 0.000 0.000 20");
  buffer.detailDataUpdata();
  EXPECT_EQ(row(1), "5 9.000000 128 90.000000 0.000000 0 9.000000 0.000000 0.000000 20");
  ASSERT_TRUE(table->exportPointsInformation("table.csv"));
  EXPECT_EQ(readAll("table.csv"), (table->columnNames().join(',') + ",\n" + row(0).replace(' ', ',') + ",\n" +
                                   row(1).replace(' ', ',') + ",\n")
                                      .toStdString());
  buffer.detailDataUpdata();
  EXPECT_EQ(row(1), "5 9.000 128 90.000 0.000 0 9.000 0.000 0.000 20");
  EXPECT_EQ(table->data(table->index(2, 0)), QVariant()) << "the hidden point has no row";

  pipeline.playState->playing = true;
  tables.clear();
  for (int i = 0; i < 5; ++i) show();
  EXPECT_LE(tables.count(), 1) << "once a second while playing";
  pipeline.clip.setDetailExport(true, 1);
  tables.clear();
  for (int i = 0; i < 5; ++i) show();
  EXPECT_EQ(tables.count(), 5) << "every frame of an export";
}

TEST_F(PcdRenderBuffer, ATableWrittenWhilePlayingHoldsOneFrame) {
  constexpr int points = 20000;
  std::array<std::string, 2> files;
  for (std::uint16_t frame = 0; frame < 2; ++frame)
    files[frame] = binFile(frame == 0 ? "even.bin" : "odd.bin",
                           std::vector<std::string>(points, binRecord(1, 2, 3, frame == 0 ? 7 : 8, 0, 1)));
  auto *const table = qobject_cast<SpreadSheetModel *>(buffer.readSpreadSheetModel());
  table->setAllDisplayed(true);
  buffer.setSpreadSheetEnabled(true);
  pipeline.showFile(files[0]);
  ASSERT_EQ(table->rowCount(), points);
  std::atomic<bool> written{false};
  std::thread writer([&] {
    for (int i = 0; i < 10; ++i) {
      table->exportPointsInformation("playing.csv");
      const std::string text = readAll("playing.csv");
      const auto rows = [&](const char *cells) { return QByteArray::fromStdString(text).count(cells); };
      EXPECT_EQ(std::max(rows(",7,"), rows(",8,")), points) << rows(",7,") << " of one frame, " << rows(",8,");
    }
    written = true;
  });
  for (std::size_t frame = 1; !written; ++frame) pipeline.showFile(files[frame % 2]);
  writer.join();
}

TEST_F(PcdRenderBuffer, TheRowsFollowTheSortOfTheTable) {
  pipeline.showFile(binFile("sort.bin", {binRecord(1, 0, 0, 7, 1, 30), binRecord(9, 0, 0, 8, 2, 5),
                                         binRecord(4, 0, 0, 7, 3, 70), binRecord(5, 0, 0, 9, 4, 1025)}));
  auto *const table = qobject_cast<SpreadSheetModel *>(buffer.readSpreadSheetModel());
  table->setAllDisplayed(true);
  const auto channels = [&](int column, int order) {
    table->setSort(column, order);
    buffer.setSelectionMatrix(nothingSelected());  // lists anew
    QStringList cells;
    const int channel = table->columnNames().indexOf("Ch");
    for (int row = 0; row < table->rowCount(); ++row) cells.append(table->index(row, channel).data().toString());
    return cells.join(' ');
  };
  EXPECT_EQ(channels(0, 0), "30 5 70");
  EXPECT_EQ(channels(0, 1), "5 30 70");
  EXPECT_EQ(channels(1, -1), "5 70 30") << "the farthest first";
  EXPECT_EQ(channels(2, 1), "30 70 5") << "equal values in the order of the file";
  table->swap(0, 9);
  EXPECT_EQ(channels(0, -1), "70 5 30") << "the confidence took the first place";
  EXPECT_EQ(channels(99, 1), "30 5 70");
}

TEST_F(PcdRenderBuffer, AnExportRestoresWhatItForced) {
  buffer.setPlayByFrame(false);
  pipeline.clip.setDetailExport(true, 2, QUrl::fromLocalFile("/somewhere"));
  EXPECT_TRUE(buffer.spreadSheetEnabled() && buffer.playByFrame());
  show();
  EXPECT_EQ(buffer.readSpreadSheetModel()->rowCount(), 2) << "all shown points are listed";
  pipeline.clip.setDetailExport(false);
  EXPECT_FALSE(buffer.spreadSheetEnabled() || buffer.playByFrame());
}

TEST_F(PcdRenderBuffer, TheChannelTable) {
  QAbstractTableModel *const table = buffer.readChannelModel();
  EXPECT_EQ(table->rowCount(), 1024);
  EXPECT_EQ(buffer.property("channelModel").value<QObject *>(), table) << "as a program without the class reads it";
  QSignalSpy channels(&buffer, &DefaultPcdFrameRenderBuffer::channelModelChanged);
  buffer.setDisplayedFlag(4, false, false);
  EXPECT_EQ(channels.count(), 0);
  buffer.setDisplayedFlag(5, false);
  EXPECT_EQ(channels.count(), 1);
  EXPECT_EQ(table->index(4, 0).data(), false);
  EXPECT_EQ(table->index(3, 0).data(), true);
}

TEST_F(PcdRenderBuffer, ACaptureHoldsTheShownOrTheSelectedPoints) {
  show();
  const QString target = QDir::current().filePath("capture.pcd");
  QString preselected = "unasked";
  buffer.setFileQuestion([&](const QString &last) {
    preselected = last;
    return QString();
  });
  EXPECT_FALSE(buffer.capture2PCD());
  EXPECT_EQ(preselected, "");
  EXPECT_FALSE(QSettings(settingsFile(), QSettings::IniFormat).contains("LastSavePcdFilePath"));

  const auto capture = [&](const QString &file) {
    buffer.setFileQuestion([&](const QString &last) {
      preselected = last;
      return file;
    });
    testing::internal::CaptureStdout();
    const bool good = buffer.capture2PCD();
    std::fflush(stdout);
    return std::make_pair(good, testing::internal::GetCapturedStdout());
  };
  EXPECT_EQ(capture(target), std::make_pair(true, "pcd file is saved to " + target.toStdString() + "\n"));
  const std::string header =
      "# .PCD v.7 - Point Cloud Data file format\nVERSION .7\nFIELDS x y z intensity\nSIZE 4 4 4 4\nTYPE F F F F\n"
      "COUNT 1 1 1 1\nWIDTH 2\nHEIGHT 1\nVIEWPOINT 0 0 0 1 0 0 0\nPOINTS 2\nDATA ascii\n";
  EXPECT_EQ(readAll(target), header + "1 1 1 64\n9 0 0 128\n");
  buffer.setSelectionMatrix(boxOf5m());
  buffer.setSelectEnabled(true);
  EXPECT_TRUE(capture(target).first);
  EXPECT_EQ(preselected, target);
  EXPECT_THAT(readAll(target), HasSubstr("POINTS 1\nDATA ascii\n1 1 1 64\n"));
  EXPECT_EQ(capture("no/such/folder/a.pcd"),
            std::make_pair(false, std::string("pcd file: no/such/folder/a.pcd open failed\n")));

  const auto exported = [&](const QString &file, bool cancel) {
    auto *const job = qobject_cast<PointExport *>(buffer.pointExport());
    QSignalSpy finished(job, &PointExport::finished);
    EXPECT_TRUE(buffer.startExport(file));
    EXPECT_FALSE(buffer.startExport(file)) << "one at a time";
    if (cancel) job->cancel();
    return finished.wait(20'000) && finished.first().first().toBool();
  };
  const std::string before = readAll(target);
  buffer.setSelectEnabled(false);
  const bool late = exported(target, true);
  EXPECT_TRUE(late || readAll(target) == before);
  EXPECT_TRUE(exported(target, false));
  EXPECT_THAT(readAll(target), HasSubstr("POINTS 2\nDATA ascii\n"));
}

TEST(SaveToData, WritesEveryFileOfTheTrackButBin) {
  const QString folder = freshFolder("save-from");
  const QString target = freshFolder("save-to");
  writeInto(folder, "1.0.pcd", pcdText("x ring intensity", "4 2 4", "F U F", "2", "ascii", "1 0 7.9\n2 4 300\n"));
  writeInto(folder, "2.5.ply",
            "ply\nformat ascii 1.0\nelement vertex 1\nproperty float x\nproperty float y\nproperty float z\n"
            "property float intensity\nproperty float confidence\nend_header\n1 2 3 4 5\n");
  writeInto(folder, "3.0.bin", bytesOf(std::uint32_t{3}) + std::string(54, '\0'));
  PointPipeline pipeline(folder);
  testing::internal::CaptureStdout();
  EXPECT_TRUE(pipeline.buffer.saveToData(QUrl::fromLocalFile(target)));
  std::fflush(stdout);
  const std::string printed = testing::internal::GetCapturedStdout();
  for (const char *name : {"1.0.pcd", "2.5.ply", "3.0.bin"})
    EXPECT_THAT(printed, HasSubstr("parser " + folder.toStdString() + "/" + name + " to data and save to " +
                                   target.toStdString() + "\n"));
  EXPECT_EQ(QDir(target).entryList(QDir::Files), (QStringList{"1.000000.bin", "2.500000.bin"}));
  EXPECT_EQ(readAll(target + "/1.000000.bin"),
            bytesOf(std::uint32_t{2}) + binRecord(1, 0, 0, 7, 0, 1) + binRecord(2, 0, 0, 300, 0, 5));
  EXPECT_EQ(readAll(target + "/2.500000.bin"), bytesOf(std::uint32_t{1}) + binRecord(1, 2, 3, 4, 5, 1));
  EXPECT_EQ(pipeline.buffer.primitiveCount(), 3);

  writeInto(folder, "2.5.ply", "ply\nend_header\n");
  testing::internal::CaptureStdout();
  EXPECT_FALSE(pipeline.buffer.saveToData(QUrl::fromLocalFile(target))) << "one file could not be read";
  testing::internal::GetCapturedStdout();
  EXPECT_FALSE(DefaultPcdFrameRenderBuffer().saveToData(QUrl::fromLocalFile(target))) << "no track";
}

TEST(ConvertFile, RoundTripsThroughEveryFormat) {
  DefaultPcdFrameRenderBuffer buffer;
  const QString source = QString::fromStdString(
      binFile("c.bin", {binRecord(0.1F, -2.5F, 1e-3F, 65535, 7, 1), binRecord(NAN, 3, 4, 5, 6, 12)}));
  const QString pcd = QDir::current().filePath("c.pcd");
  const QString back = QDir::current().filePath("c-back.bin");
  EXPECT_EQ(buffer.convertFile(source, pcd), QString());
  EXPECT_EQ(buffer.convertFile(pcd, back), QString());
  EXPECT_EQ(readAll(back).substr(0, 22), readAll(source).substr(0, 22));
  const QString csv = QDir::current().filePath("c.csv");
  EXPECT_EQ(buffer.convertFile(pcd, csv), QString());
  EXPECT_THAT(readAll(csv), testing::StartsWith("x,y,z,intensity,confidence,ring,distance,azimuth,elevation\n"
                                                "0.1,-2.5,0.001,65535,7,1,"));
  EXPECT_THAT(buffer.convertFile("gone.pcd", csv).toStdString(), HasSubstr("gone.pcd"));
  EXPECT_THAT(buffer.convertFile("gone.txt", csv).toStdString(), HasSubstr("lower case"));
  EXPECT_THAT(buffer.convertFile(source, "x.ply").toStdString(), HasSubstr(".csv"));
  EXPECT_THAT(buffer.convertFile(source, "no/such/folder/x.bin").toStdString(), HasSubstr("cannot be written"));
}

}  // namespace
}  // namespace tarvo::skarnvisor
