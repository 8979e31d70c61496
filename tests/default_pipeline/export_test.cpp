// What is written of a frame: PCD files, the point table, the export of each frame that is played.
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QSignalSpy>

#include <iomanip>
#include <limits>
#include <random>
#include <sstream>
#include <thread>

#include "default/files/settings_file.h"
#include "default/pipeline/pcd_export.h"
#include "tests/default_pipeline/parser_fixture.h"
#include "tests/support/files.h"
#include "tests/support/test_environment.h"

namespace tarvo::skarnvisor::test {
namespace {

enum PcdIndex { ring, x, y, z, intensity, timestamp };

QByteArray header(const char *fields, int count) {
  const QByteArray number = QByteArray::number(count);
  return QByteArray("# .PCD v.7 - Point Cloud Data file format\nVERSION .7\n") + fields + "WIDTH " + number +
         "\nHEIGHT 1\nVIEWPOINT 0 0 0 1 0 0 0\nPOINTS " + number + "\nDATA ascii\n";
}

constexpr const char *defaultFields = "FIELDS ring x y z intensity\nSIZE 2 4 4 4 2\nTYPE U F F F U\nCOUNT 1 1 1 1 1\n";

class Export : public ParserTest {
 protected:
  ~Export() override { QFile::remove(settingsFile()); }

  QByteArray captured() {
    const QString path = processFolder() + "/captured.pcd";
    QFile::remove(path);
    EXPECT_TRUE(rb.capture2PCD(path));
    return contents(path);
  }
  void enableOnly(const std::vector<int> &fields) {
    const int count = rb.getPcdFieldListString().size();
    for (int i = 0; i < count; ++i)
      rb.setPcdFieldEnabled(i, std::find(fields.begin(), fields.end(), i) != fields.end());
  }
  /// Points of all kinds of numbers; every fifth hidden, and the first ten thousand.
  static std::vector<SDKPointInfo> manyPoints(int count) {
    std::mt19937 random(3);
    std::uniform_real_distribution<float> metres(-200.0F, 200.0F);
    std::vector<SDKPointInfo> points;
    for (int i = 0; i < count; ++i) {
      SDKPointInfo p = point(metres(random), metres(random) * 1e-4F, metres(random) * 1e4F,
                             i < 10'000 || i % 5 == 0 ? 0 : static_cast<std::uint16_t>(i % 300));
      p.timestamp = 1.7e9 + i * 1e-5;
      p.timeNs = static_cast<std::uint32_t>(i) * 999U;
      p.confidence = static_cast<std::uint16_t>(i * 7);
      p.azimuthCalib = i % 77 == 0 ? -0.0F : metres(random);
      p.elevation = i % 1001 == 0 ? std::numeric_limits<float>::quiet_NaN() : -metres(random);
      points.push_back(p);
    }
    return points;
  }
};

TEST_F(Export, ACaptureHoldsTheShownPointsInTheDefaultFields) {
  auto first = point(1.5F, -2.25F, 0.1F, 7);
  first.intensity = 300;
  give({first, point(9.0F, 9.0F, 9.0F, 0), point(1234567.0F, 1e-5F, 0.333333333F)});
  parse();
  const LogLines lines;
  EXPECT_EQ(captured(), header(defaultFields, 2) + "7 1.5 -2.25 0.1 300\n1 1.23457e+06 1e-05 0.333333 64\n");
  EXPECT_EQ(lines.messages(), Names{"pcd file is saved to " + (processFolder() + "/captured.pcd").toStdString()});
}

TEST_F(Export, SelectedPointsNoPointsAndNoFields) {
  give({point(0.5F, 0.0F, 0.0F), point(5.0F, 0.0F, 0.0F)});
  parse();
  rb.setSelectEnabled(true);
  EXPECT_EQ(captured(), header(defaultFields, 0)) << "nothing is selected";
  rb.setSelectionMatrix(QMatrix4x4());
  EXPECT_EQ(captured(), header(defaultFields, 1) + "1 0.5 0 0 64\n");
  rb.setSelectEnabled(false);
  enableOnly({});
  EXPECT_EQ(captured(), header("FIELDS\nSIZE\nTYPE\nCOUNT\n", 2) + "\n\n");
}

TEST_F(Export, ManyPointsReadAsIfOneStreamHadWrittenThem) {
  const auto points = manyPoints(200'000);
  give(points);
  parse();
  for (const bool withTime : {false, true}) {
    enableOnly({ring, x, y, z, withTime ? timestamp : ring, timestamp + 2, timestamp + 3});
    std::ostringstream expected;
    int count = 0;
    for (const SDKPointInfo &p : points) {
      if (p.channel == 0) continue;
      ++count;
      expected << p.channel << ' ' << p.x << ' ' << p.y << ' ' << p.z << ' ';
      if (withTime) expected << std::fixed << std::setprecision(6) << p.timestamp << ' ';
      expected << p.confidence << ' ' << p.azimuthCalib << '\n';
    }
    const QByteArray file = captured();
    EXPECT_TRUE(file.contains("POINTS " + QByteArray::number(count) + '\n'));
    EXPECT_TRUE(file.mid(file.indexOf("DATA ascii\n") + 11) == QByteArray::fromStdString(expected.str())) << withTime;
  }
}

TEST_F(Export, TheTableFileHoldsTheCellsOfTheTable) {
  rb.addColumnAttribute("Area", 0);
  give(manyPoints(20'000));
  parse();
  rb.spreadSheetModel().setAllDisplayed(true);
  const QString path = processFolder() + "/table.csv";
  for (int decimals = 0; decimals < 2; ++decimals) {
    rb.detailDataUpdata();
    const SpreadSheetModel &table = rb.spreadSheetModel();
    ASSERT_EQ(table.rowCount(), 8000);
    QByteArray expected = table.columnNames().join(',').toLatin1() + ",\n";
    for (int row = 0; row < table.rowCount(); ++row) {
      for (int column = 0; column < table.columnCount(); ++column)
        expected += table.index(row, column).data().toString().toLatin1() + ',';
      expected += '\n';
    }
    ASSERT_TRUE(rb.spreadSheetModel().exportPointsInformation(path));
    EXPECT_TRUE(contents(path) == expected);
  }
}

TEST_F(Export, AStackIsWrittenCanvasBehindCanvas) {
  FramePicture picture;
  CanvasRing canvases;
  canvases.canvasCount = 2;
  canvases.canvasPointCapacity = 3;
  picture.frameStore.shape(2, 3);
  for (std::size_t i = 0; i < 6; ++i) picture.frameStore[i] = point(static_cast<float>(i), 0.0F, 0.0F);
  for (const std::size_t canvas : {0U, 1U}) {
    picture.canvases[canvas].assign(3, Vertex{0, 0, 0});
    canvases.canvasFill[canvas] = 2;
  }
  picture.canvases[0][0] = hiddenVertex;
  PcdContent content{rb.pcdFields(), MarkTest{false}, false};
  for (int i = 0; i < content.fields.size(); ++i) content.fields[i].enabled = i == x;
  const QString path = processFolder() + "/stack.pcd";
  WriteProgress progress;
  EXPECT_TRUE(writePcd(picture, canvases, content, path, {.points = 1}, progress).written());
  EXPECT_TRUE(contents(path).endsWith("POINTS 3\nDATA ascii\n1\n3\n4\n"));
  EXPECT_EQ(progress.done, 3);
}

TEST_F(Export, TheDialogsFileIsRemembered) {
  give({point(1.0F, 0.0F, 0.0F)});
  parse();
  const auto remembered = [] { return QSettings(settingsFile(), QSettings::IniFormat).value("LastSavePcdFilePath"); };
  const QString chosen = processFolder() + "/chosen.pcd";
  QStringList preselected;
  QString answer;
  rb.setFileQuestion([&](const QString &file) {
    preselected.append(file);
    return answer;
  });
  EXPECT_FALSE(rb.capture2PCD());
  EXPECT_FALSE(remembered().isValid());
  answer = chosen;
  EXPECT_TRUE(rb.capture2PCD());
  EXPECT_TRUE(contents(chosen).startsWith("# .PCD"));
  captured();
  answer.clear();
  EXPECT_FALSE(rb.capture2PCD());
  EXPECT_EQ(remembered().toString(), chosen);
  EXPECT_EQ(preselected, QStringList({QString(), QString(), chosen}));
}

TEST_F(Export, AFailureIsToldOnceAndLeavesWhatWasThere) {
  give({point(1.0F, 0.0F, 0.0F)});
  parse();
  const LogLines lines;
  EXPECT_FALSE(rb.capture2PCD("/dev/full"));
  EXPECT_FALSE(rb.capture2PCD("/no such folder/a.pcd"));
  EXPECT_EQ(lines.messages(), (Names{"pcd file: /dev/full write failed: No space left on device",
                                     "pcd file: /no such folder/a.pcd open failed"}));
}

TEST_F(Export, EachFrameThatIsPlayedIsWritten) {
  const QString folder = processFolder() + "/frames";
  QDir(folder).removeRecursively();
  QDir().mkpath(folder);
  const auto play = [&](double seconds) {
    source.frameTimestamp = seconds;
    give({point(static_cast<float>(seconds), 0.0F, 0.0F), point(0.0F, 0.0F, 0.0F, 0)});
    parse();
  };
  const auto files = [&] { return QDir(folder).entryList(QDir::Files, QDir::Name); };
  source.playState->playing = true;
  play(1.0);
  rb.setDetailExport(true, 1, QUrl::fromLocalFile(folder));
  play(2.0);
  play(3.5);
  EXPECT_EQ(files(), QStringList({"points_info_2.000000.csv", "points_info_3.500000.csv"}));
  EXPECT_EQ(contents(folder + "/points_info_3.500000.csv").count('\n'), 2) << "titles and the one visible point";
  rb.setDetailExport(true, 2, QUrl::fromLocalFile(folder));
  play(4.0);
  EXPECT_TRUE(contents(folder + "/points_info_4.000000.pcd").endsWith("DATA ascii\n1 4 0 0 64\n"));
  rb.setPlayByFrame(false);
  play(5.0);
  rb.setPlayByFrame(true);
  rb.setDetailExport(true, 2, QUrl::fromLocalFile("/no such folder"));
  log.take();
  play(6.0);
  EXPECT_EQ(log.take().back(), "someSignalReceived") << "the run goes on";
  rb.setDetailExport(false, 0, {});
  play(7.0);
  EXPECT_EQ(files().size(), 3);
}

TEST_F(Export, ALongExportCanBeWatchedAndStopped) {
  give(manyPoints(20'000));
  parse();
  auto &work = *qobject_cast<PointExport *>(rb.property("pointExport").value<QObject *>());
  const auto endOf = [&work](const auto &begin) {
    QSignalSpy ended(&work, &PointExport::finished);
    begin();
    EXPECT_TRUE(!ended.isEmpty() || ended.wait(20'000));
    EXPECT_FALSE(work.running());
    return ended.value(0);
  };
  const QString path = processFolder() + "/long.pcd";
  EXPECT_EQ(endOf([&] { EXPECT_TRUE(rb.startExport(path)); }), (QList<QVariant>{true, QString()}));
  EXPECT_EQ(work.progress(), 1.0);
  EXPECT_EQ(contents(path).count('\n'), 8011);
  const auto unwritable = endOf([&] { EXPECT_TRUE(rb.startExport("/no such folder/table.csv")); });
  EXPECT_TRUE(unwritable[1].toString().startsWith("open file error!"));

  const auto stopped = endOf([&] {
    EXPECT_TRUE(work.start([this, &path](WriteProgress &progress) {
      while (!progress.cancelled) std::this_thread::yield();
      return writePcd(rb.picture(), rb.ring(), {rb.pcdFields(), MarkTest{false}, false}, path, {}, progress);
    }));
    EXPECT_TRUE(work.running());
    EXPECT_FALSE(rb.startExport(path)) << "one at a time";
    QMetaObject::invokeMethod(&work, "cancel");
  });
  EXPECT_EQ(stopped, (QList<QVariant>{false, QString()}));
  EXPECT_EQ(contents(path).count('\n'), 8011) << "the file that was there";
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
