// The panels that read and write files, and the log.
#include <QJSValue>

#include "contracts/host/log.h"
#include "tests/window/window_fixture.h"

SKARN_LOG_SOURCE("tests/window");

namespace tarvo::skarnvisor::test {
namespace {

class WindowPanels : public WindowTest {
 protected:
  void SetUp() override {
    start();
    for (const char *panel : {"colors", "filter", "channels", "log"}) open(panel, false);
    for (const char *panel : {"calibration", "export"}) open(panel, true);
    start();
  }

  void TearDown() override {
    for (const char *panel : {"calibration", "export", "log"}) open(panel, false);
    WindowTest::TearDown();
  }

  void open(const char *panel, bool on) { viewer().preferences().setValue(QString("panels/") + panel, on); }

  /// Presses a button that asks for a file, and gives it this one in place of the dialog.
  void choose(const QString &button, const QString &path) {
    ASSERT_NO_FATAL_FAILURE(click(button));
    auto *const chooser = window()->findChild<QObject *>("chooser");
    ASSERT_NE(chooser, nullptr);
    ASSERT_TRUE(eventually([&] { return chooser->property("visible").toBool(); }));
    QMetaObject::invokeMethod(chooser, "close");
    chooser->property("then").value<QJSValue>().call(
        {QJSValue(QUrl::fromLocalFile(QDir::current().absoluteFilePath(path)).toString())});
  }

  static void write(const QString &name, const QByteArray &text) {
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
  }
};

TEST_F(WindowPanels, ABrokenCalibrationFileIsToldWithItsFaultAndAGoodOneTakesTheMessageAway) {
  ASSERT_NO_FATAL_FAILURE(WindowTest::open());
  ASSERT_TRUE(eventually([this] { return textOf("inUse-CorrectionsFile").startsWith("default_"); }));
  QDir().mkdir("folder.csv");
  write("leer.csv", "");
  write("Spalten.csv", "one,two\n1,2\n");
  const struct {
    QString file, told;
  } cases[]{{"missing.csv", "No such file"},
            {"folder.csv", "folder.csv"},
            {"leer.csv", "No corrections in"},
            {"Spalten.csv", "line 1"}};
  for (const auto &[file, told] : cases) {
    ASSERT_NO_FATAL_FAILURE(choose("load-CorrectionsFile", file));
    EXPECT_TRUE(settled());
    EXPECT_TRUE(textOf("statusLabel").contains(told)) << textOf("statusLabel").toStdString();
    EXPECT_TRUE(textOf("statusLabel").contains(file) && textOf("statusLabel").contains("choose another file"));
    EXPECT_TRUE(textOf("inUse-CorrectionsFile").startsWith("default_"));
  }
  ASSERT_NO_FATAL_FAILURE(choose("save-CorrectionsFile", "nirgends/gut.csv"));
  EXPECT_TRUE(settled());
  EXPECT_TRUE(viewer().error().contains("is not there")) << viewer().error().toStdString();
  ASSERT_NO_FATAL_FAILURE(choose("save-CorrectionsFile", "gut.csv"));
  ASSERT_NO_FATAL_FAILURE(choose("load-CorrectionsFile", "gut.csv"));
  EXPECT_TRUE(settled());
  EXPECT_EQ(viewer().error(), QString());
  EXPECT_TRUE(eventually([this] { return textOf("inUse-CorrectionsFile") == "gut.csv"; }));
}

TEST_F(WindowPanels, AFolderOfPointFilesIsConvertedAndAFolderThatIsNotThereIsTold) {
  QDir().mkpath("Punkte");
  QDir().mkpath("gewandelt");
  for (const QByteArray name : {"1", "2"})
    write("Punkte/" + name + ".pcd",
          "VERSION .7\nFIELDS x y z intensity\nSIZE 4 4 4 4\nTYPE F F F F\nCOUNT 1 1 1 1\nWIDTH 2\nHEIGHT 1\n"
          "POINTS 2\nDATA ascii\n1 2 3 7\n4 5 " +
              name + " 9\n");
  viewer().open("Punkte");
  ASSERT_TRUE(eventually([this] { return viewer().pointsShown() == 2; })) << viewer().error().toStdString();
  item("convertTo")->setProperty("currentIndex", 2);
  ASSERT_NO_FATAL_FAILURE(choose("convert", "nirgends"));
  EXPECT_TRUE(eventually([this] { return textOf("statusLabel").contains("nirgends"); }));
  ASSERT_TRUE(eventually([this] { return !viewer().jobs().isRunning(); }));
  ASSERT_NO_FATAL_FAILURE(choose("convert", "gewandelt"));
  ASSERT_TRUE(eventually([this] { return viewer().notice().contains("2 files saved"); }))
      << viewer().error().toStdString();
  EXPECT_EQ(viewer().error(), QString());
  EXPECT_EQ(QDir("gewandelt").entryList({"*.csv"}), QStringList({"1.csv", "2.csv"}));
  ASSERT_NO_FATAL_FAILURE(choose("saveFrame", "gewandelt/Bild.pcd"));
  EXPECT_TRUE(eventually([] { return QFile::exists("gewandelt/Bild.pcd"); })) << viewer().error().toStdString();
}

TEST_F(WindowPanels, SavingEachFrameEndsWithAMessageWhenItsFolderGoes) {
  ASSERT_NO_FATAL_FAILURE(WindowTest::open());
  QDir().mkpath("Tabellen");
  ASSERT_NO_FATAL_FAILURE(choose("framesAsTables", "Tabellen"));
  ASSERT_TRUE(settled());
  timeline().stepFrames(1);
  ASSERT_TRUE(eventually([] { return !QDir("Tabellen").isEmpty(); }));
  EXPECT_TRUE(root("exporting").toBool());
  QDir("Tabellen").removeRecursively();
  timeline().stepFrames(1);
  EXPECT_TRUE(eventually([this] { return !root("exporting").toBool(); }));
  EXPECT_TRUE(viewer().error().contains("is not there")) << viewer().error().toStdString();
}

TEST_F(WindowPanels, AnErrorOpensTheLogOnceAndLeavesTheKeyboardWhereItIs) {
  ASSERT_EQ(item("logList"), nullptr);
  const auto fail = [] { SKARN_LOG(LogLevel::Error, "something that is wrong"); };
  QQuickItem *const keyboard = window()->activeFocusItem();
  fail();
  ASSERT_TRUE(eventually([this] { return item("logList") != nullptr; }));
  EXPECT_EQ(window()->activeFocusItem(), keyboard);
  ASSERT_NO_FATAL_FAILURE(click("section-log"));
  ASSERT_EQ(item("logList"), nullptr);
  fail();
  ASSERT_TRUE(eventually([this] { return m_main->log().errorCount() == 2; }));
  EXPECT_EQ(item("logList"), nullptr);
  EXPECT_EQ(textOf("logErrors"), "2 errors");
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
