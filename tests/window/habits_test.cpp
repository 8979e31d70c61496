// Keyboard, names for those who cannot see, the window's place, and what the pointer picks.
#include <QAccessible>
#include <QSet>

#include "app/window/window_place.h"
#include "tests/window/window_fixture.h"

namespace tarvo::skarnvisor::test {
namespace {

class WindowHabits : public WindowTest {
 protected:
  void SetUp() override {
    QAccessible::setActive(true);
    start();
  }
  void TearDown() override {
    WindowTest::TearDown();
    QAccessible::setActive(false);
  }

  void call(const char *function, const QVariant &argument) {
    QMetaObject::invokeMethod(window(), function, Q_ARG(QVariant, argument));
  }

  /// What a user works with: the visible controls, but for the menus, which have keys of their own. A table is one: the
  /// arrows go through it.
  static void controlsBelow(QQuickItem *from, QVector<QQuickItem *> &found) {
    if (!from->isVisible() || from->inherits("QQuickMenuBar")) return;
    if (QByteArray(from->metaObject()->className()).contains("Table_QML")) {
      found << from;
      return;
    }
    const char *kinds[] = {"QQuickAbstractButton", "QQuickComboBox", "QQuickSlider", "QQuickSpinBox",
                           "QQuickTextInput"};
    for (const char *kind : kinds) {
      if (!from->inherits(kind) || !from->isEnabled()) continue;
      found << from;
      return;
    }
    const QList<QQuickItem *> children = from->childItems();
    for (QQuickItem *child : children) controlsBelow(child, found);
  }

  static QString describe(const QQuickItem *control) {
    return QStringLiteral("%1 \"%2\" %3")
        .arg(control->metaObject()->className(), control->property("text").toString(), control->objectName());
  }

  /// Faults of the controls that are in sight now, one a line.
  QString faults(QQuickItem *from) {
    QVector<QQuickItem *> controls;
    controlsBelow(from, controls);
    EXPECT_FALSE(controls.isEmpty());
    QSet<const QQuickItem *> reached;
    for (int steps = 0; steps < 3 * controls.size() + 50; ++steps) {
      press(Qt::Key_Tab);
      // A control with an editor within lets that one have the keyboard.
      for (const QQuickItem *item = window()->activeFocusItem(); item != nullptr; item = item->parentItem())
        reached << item;
    }
    QString lines;
    for (QQuickItem *control : controls) {
      QAccessibleInterface *const access = QAccessible::queryAccessibleInterface(control);
      if (access == nullptr || access->text(QAccessible::Name).trimmed().isEmpty())
        lines += describe(control) + " has no name\n";
      if (!reached.contains(control)) lines += describe(control) + " is not reached with Tab\n";
    }
    return lines;
  }
};

TEST_F(WindowHabits, EveryControlHasANameAndIsReachedWithTheTabKey) {
  EXPECT_EQ(faults(window()->contentItem()).toStdString(), "") << "nothing open";
  for (const char *panel : {"colors", "filter", "echoes", "channels", "monitor", "faults", "motion", "calibration",
                            "export", "tools", "modes", "zones", "log"})
    viewer().preferences().setValue(QString("panels/") + panel, true);
  start();
  ASSERT_NO_FATAL_FAILURE(open());
  viewer().setSplitView(true);
  press(Qt::Key_S);
  drag({100, 100}, {300, 300});
  ASSERT_NO_FATAL_FAILURE(click("areaCut"));
  call("showTable", true);
  ASSERT_NO_FATAL_FAILURE(click("allPoints"));
  ASSERT_TRUE(eventually([this] { return item("exportTable")->isEnabled() && item("undoCut") != nullptr; }));
  EXPECT_EQ(faults(window()->contentItem()).toStdString(), "") << "every panel open";
  viewer().setSplitView(false);
  ASSERT_NO_FATAL_FAILURE(click("allPoints"));
  call("showTable", false);
  for (const char *name : {"liveDialog", "cutDialog", "about", "manual"}) {
    auto *const dialog = window()->findChild<QObject *>(name);
    ASSERT_NE(dialog, nullptr) << name;
    QMetaObject::invokeMethod(dialog, "open");
    ASSERT_TRUE(eventually([&] { return dialog->property("opened").toBool(); })) << name;
    auto *const content = dialog->property("contentItem").value<QQuickItem *>();
    EXPECT_EQ(faults(content->parentItem()).toStdString(), "") << name;
    QMetaObject::invokeMethod(dialog, "close");
    EXPECT_TRUE(eventually([&] { return !dialog->property("visible").toBool(); })) << name;
  }
  for (const char *panel : {"filter", "echoes", "channels", "monitor", "faults", "motion", "calibration", "export",
                            "tools", "modes", "zones", "log"})
    viewer().preferences().setValue(QString("panels/") + panel, false);
}

TEST_F(WindowHabits, TheWindowComesBackWhereItWasOnTheScreensThatAreThere) {
  struct Case {
    QRect wanted;
    QRect placed;
  };
  const QVector<QRect> screens{{0, 0, 1400, 950}, {1400, 100, 1000, 800}};
  for (const Case &one :
       {Case{{50, 60, 800, 600}, {50, 60, 800, 600}}, Case{{1500, 150, 800, 600}, {1500, 150, 800, 600}},
        Case{{1300, 150, 800, 600}, {1400, 150, 800, 600}}, Case{{5000, -3000, 800, 600}, {600, 0, 800, 600}},
        Case{{100, 100, 3000, 2000}, {0, 0, 1400, 950}}})
    EXPECT_EQ(app::WindowPlace::onScreen(one.wanted, screens), one.placed) << one.wanted.x() << " " << one.wanted.y();

  const auto isKept = [this](int width) {
    return eventually([&] { return viewer().preferences().value("width", 0).toInt() == width; });
  };
  const auto isAt = [this](QRect place) { return eventually([&] { return window()->geometry() == place; }); };
  window()->setGeometry(150, 40, 900, 640);
  EXPECT_TRUE(isKept(900));
  start();
  const QRect now = window()->geometry();
  EXPECT_TRUE(isAt({150, 40, 900, 640})) << now.x() << " " << now.y() << " " << now.width() << " " << now.height();
  window()->setGeometry(0, 0, 1360, 860);
  EXPECT_TRUE(isKept(1360));
}

TEST_F(WindowHabits, AnUndoneCutBringsBackItsPointsWhateverIsSelectedSince) {
  ASSERT_NO_FATAL_FAILURE(open());
  const int all = viewer().pointsShown();
  const double width = canvas().width();
  const double height = canvas().height();
  press(Qt::Key_S);
  drag({width * 0.3, height * 0.4}, {width * 0.6, height * 0.7});
  ASSERT_TRUE(eventually([this] { return viewer().pointsSelected() > 0; }));
  const int cut = viewer().pointsSelected();
  ASSERT_NO_FATAL_FAILURE(click("areaCut"));
  ASSERT_TRUE(eventually([&] { return viewer().pointsShown() == all - cut; })) << viewer().pointsShown();
  ASSERT_NO_FATAL_FAILURE(click("reverseCut"));
  EXPECT_TRUE(eventually([&] { return viewer().pointsShown() == cut; })) << viewer().pointsShown();
  ASSERT_NO_FATAL_FAILURE(click("reverseCut"));
  ASSERT_TRUE(eventually([&] { return viewer().pointsShown() == all - cut; }));
  drag({width * 0.1, height * 0.4}, {width * 0.2, height * 0.6});
  ASSERT_TRUE(eventually([this] { return viewer().pointsSelected() > 0; }));
  ASSERT_NO_FATAL_FAILURE(click("undoCut"));
  EXPECT_TRUE(eventually([&] { return viewer().pointsShown() == all; })) << viewer().pointsShown() << " of " << all;
}

TEST_F(WindowHabits, AClickedPointIsMarkedInTheTable) {
  ASSERT_NO_FATAL_FAILURE(open());
  call("showTable", true);
  ASSERT_NO_FATAL_FAILURE(click("allPoints"));
  auto *const table = viewer().buffer()->property("spreadSheetModel").value<QAbstractTableModel *>();
  ASSERT_TRUE(eventually([&] { return table->rowCount() == viewer().pointsShown(); })) << table->rowCount();
  QVector3D picked;
  QObject::connect(&canvas(), &app::CloudCanvas::pointClicked, [&](const QVector3D &place) { picked = place; });
  for (double down = 0.4; down < 0.9 && picked.isNull(); down += 0.02) {
    const QPointF at = canvas().mapToScene({canvas().width() * 0.5, canvas().height() * down});
    QTest::mouseClick(window(), Qt::LeftButton, {}, at.toPoint());
  }
  ASSERT_FALSE(picked.isNull());
  const auto row = [this] { return item("pointTable")->property("currentRow").toInt(); };
  ASSERT_TRUE(eventually([&] { return row() >= 0; }));
  const QStringList names = table->property("columnNames").toStringList();
  const int axes[] = {names.indexOf("x(m)"), names.indexOf("y(m)"), names.indexOf("z(m)")};
  for (int axis = 0; axis < 3; ++axis)
    EXPECT_NEAR(table->data(table->index(row(), axes[axis])).toDouble(), static_cast<double>(picked[axis]), 0.002);
  ASSERT_NO_FATAL_FAILURE(click("allPoints"));
  call("showTable", false);
}

TEST_F(WindowHabits, ARecentFileThatIsGoneLeavesTheListWithAWord) {
  QFile gone("gone.pcap");
  ASSERT_TRUE(gone.open(QIODevice::WriteOnly));
  gone.close();
  const QString path = QFileInfo(gone).absoluteFilePath();
  viewer().preferences().addRecent(path);
  ASSERT_TRUE(gone.remove());
  call("openRecent", path);
  EXPECT_TRUE(eventually([this] { return textOf("statusLabel").contains("not there any more"); }));
  EXPECT_FALSE(viewer().preferences().recent().contains(path));
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
