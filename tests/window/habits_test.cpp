// Keyboard, names for those who cannot see, the window's place, and what the pointer picks.
#include <QAccessible>
#include <QScopeGuard>
#include <QSet>
#include <QSignalSpy>

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

  bool isKept(int width) {
    return eventually([&] { return viewer().preferences().value("width", 0).toInt() == width; });
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
        Case{{100, 100, 3000, 2000}, {0, 0, 1384, 910}}})
    EXPECT_EQ(app::WindowPlace::onScreen(one.wanted, screens), one.placed) << one.wanted.x() << " " << one.wanted.y();

  const auto isAt = [this](QRect place) { return eventually([&] { return window()->geometry() == place; }); };
  window()->setGeometry(150, 40, 900, 640);
  EXPECT_TRUE(isKept(900));
  start();
  const QRect now = window()->geometry();
  EXPECT_TRUE(isAt({150, 40, 900, 640})) << now.x() << " " << now.y() << " " << now.width() << " " << now.height();
  window()->setGeometry(0, 0, 1360, 860);
  EXPECT_TRUE(isKept(1360));
}

TEST_F(WindowHabits, InASmallWindowNothingLiesOverAnother) {
  const auto place = [this](const char *name) {
    const QQuickItem *const found = item(name);
    return found ? found->mapRectToScene({0, 0, found->width(), found->height()}) : QRectF();
  };
  const auto overlaps = [&](const std::vector<const char *> &names) {
    QString lines;
    const QRectF view = place("canvas").adjusted(-0.5, -0.5, 0.5, 0.5);
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (place(names[i]).isEmpty()) lines += QStringLiteral("no %1\n").arg(names[i]);
      if (!view.contains(place(names[i]))) lines += QStringLiteral("%1 sticks out\n").arg(names[i]);
      for (std::size_t j = 0; j < i; ++j)
        if (place(names[i]).intersects(place(names[j])))
          lines += QStringLiteral("%1 over %2\n").arg(names[i], names[j]);
    }
    return lines.toStdString();
  };
  ASSERT_NO_FATAL_FAILURE(open());
  // The next window would begin with this one's place.
  const auto restored = qScopeGuard([this] {
    viewer().setSplitView(false);
    call("showTable", false);
    call("showDock", true);
    window()->setGeometry(0, 0, 1360, 860);
    EXPECT_TRUE(isKept(1360));
  });
  window()->setGeometry(0, 0, 720, 480);
  ASSERT_TRUE(isKept(720));
  viewer().setSplitView(true);
  press(Qt::Key_S);
  drag({10, 60}, {140, 200});
  ASSERT_TRUE(eventually([this] { return viewer().pointsSelected() > 0; }));
  window()->grabWindow();
  EXPECT_EQ(overlaps({"selectionBar", "legend", "sideLegend", "axes"}), "");
  press(Qt::Key_Escape);
  call("showDock", false);
  window()->grabWindow();
  for (double across = 0.1; across < 0.4 && item("pickedText") == nullptr; across += 0.01) {
    QTest::mouseClick(window(), Qt::LeftButton, {},
                      canvas().mapToScene({canvas().width() * across, canvas().height() * 0.7}).toPoint());
    ASSERT_TRUE(settled());
  }
  window()->grabWindow();
  EXPECT_EQ(overlaps({"selectionBar", "legend", "sideLegend", "pickedText"}), "");
  call("showTable", true);
  window()->grabWindow();
  ASSERT_TRUE(eventually([this] { return canvas().height() < 200; }));
  EXPECT_EQ(overlaps({"selectionBar", "legend", "sideLegend", "axes"}), "") << "with the table";
}

// The keys of a list are its own while it is open, however it was opened.
TEST_F(WindowHabits, AListOpenedWithTheMouseTakesKeysAndGivesThemBack) {
  ASSERT_NO_FATAL_FAILURE(open());
  const auto mode = [this] { return viewer().colors()->property("mode").toInt(); };
  const int before = mode();
  const int frame = timeline().frame();
  ASSERT_NO_FATAL_FAILURE(click("colorBox"));
  press(Qt::Key_Down);
  press(Qt::Key_Return);
  EXPECT_TRUE(eventually([&] { return mode() == before + 1; }));
  EXPECT_TRUE(eventually([this] { return window()->activeFocusItem() == item("canvas"); }));
  press(Qt::Key_Right);
  EXPECT_TRUE(eventually([&] { return timeline().frame() == frame + 1; })) << "the window has its keys again";
  ASSERT_NO_FATAL_FAILURE(click("colorBox"));
  press(Qt::Key_Up);
  press(Qt::Key_Escape);
  EXPECT_TRUE(eventually([this] { return window()->activeFocusItem() == item("canvas"); }));
  EXPECT_EQ(mode(), before + 1);
}

TEST_F(WindowHabits, ASelectionIsCutTurnedRoundAndTakenBackAlsoOnAStackAndWhilePlaying) {
  const auto shows = [this](int points) { return eventually([&] { return viewer().pointsShown() == points; }); };
  for (const int depth : {1, 20}) {
    SCOPED_TRACE(depth);
    ASSERT_NO_FATAL_FAILURE(open());
    const int one = viewer().pointsShown();
    ASSERT_NO_FATAL_FAILURE(type("stackDepth", QString::number(depth)));
    ASSERT_TRUE(eventually([&] { return viewer().buffer()->property("frameNumber").toInt() == depth; }));
    timeline().setLoop(true);
    timeline().setPlaying(true);
    // Some points lie now inside a range, now outside.
    ASSERT_TRUE(eventually([&] { return viewer().pointsShown() > 0.9 * depth * one; })) << viewer().pointsShown();
    const double width = canvas().width();
    const double height = canvas().height();
    press(Qt::Key_S);
    drag({width * 0.3, height * 0.4}, {width * 0.6, height * 0.7});
    const auto selects = [this](int points) { return eventually([&] { return viewer().pointsSelected() > points; }); };
    ASSERT_TRUE(selects(depth * one / 20));
    const int all = viewer().pointsShown();
    ASSERT_NO_FATAL_FAILURE(click("areaCut"));
    EXPECT_TRUE(eventually([&] { return viewer().pointsShown() < 0.97 * all; })) << viewer().pointsShown();
    ASSERT_NO_FATAL_FAILURE(click("reverseCut"));
    EXPECT_TRUE(eventually([&] { return viewer().pointsShown() < 0.7 * all; })) << viewer().pointsShown();
    ASSERT_NO_FATAL_FAILURE(click("clearCuts"));
    EXPECT_TRUE(eventually([&] { return viewer().pointsShown() > 0.97 * all; })) << viewer().pointsShown();

    timeline().setPlaying(false);
    ASSERT_TRUE(eventually([this] { return !viewer().isBusy(); }));
    ASSERT_TRUE(settled() && settled());  // what the last run announced, and what was read upon it
    const int still = viewer().pointsShown();
    const int cut = viewer().pointsSelected();
    ASSERT_NO_FATAL_FAILURE(click("areaCut"));
    ASSERT_TRUE(shows(still - cut)) << viewer().pointsShown();
    ASSERT_NO_FATAL_FAILURE(click("reverseCut"));
    EXPECT_TRUE(shows(cut)) << viewer().pointsShown();
    ASSERT_NO_FATAL_FAILURE(click("reverseCut"));
    ASSERT_TRUE(shows(still - cut));
    // The undo takes back the cut, and leaves the selection that stands now.
    drag({width * 0.1, height * 0.4}, {width * 0.2, height * 0.6});
    ASSERT_TRUE(selects(0));
    const int selected = viewer().pointsSelected();
    ASSERT_NO_FATAL_FAILURE(click("undoCut"));
    EXPECT_TRUE(shows(still)) << viewer().pointsShown() << " of " << still;
    EXPECT_EQ(viewer().pointsSelected(), selected);
    EXPECT_EQ(item("clearCuts"), nullptr) << "nothing is cut any more";
    ASSERT_NO_FATAL_FAILURE(click("clearSelection"));
    EXPECT_TRUE(eventually([this] { return viewer().pointsSelected() == 0; }));
    EXPECT_EQ(viewer().pointsShown(), still);
    press(Qt::Key_S);
  }
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
    ASSERT_TRUE(settled());
  }
  ASSERT_FALSE(picked.isNull());
  const auto row = [this] { return item("pointTable")->property("currentRow").toInt(); };
  ASSERT_TRUE(eventually([&] { return row() >= 0; }));
  const QStringList names = table->property("columnNames").toStringList();
  const int axes[] = {names.indexOf("x(m)"), names.indexOf("y(m)"), names.indexOf("z(m)")};
  for (int axis = 0; axis < 3; ++axis)
    EXPECT_NEAR(table->data(table->index(row(), axes[axis])).toDouble(), static_cast<double>(picked[axis]), 0.002);
  // Of the selected points alone it is the first row as soon as there is one.
  ASSERT_NO_FATAL_FAILURE(click("allPoints"));
  QMetaObject::invokeMethod(window(), "clearSelection");
  ASSERT_TRUE(eventually([&] { return table->rowCount() == 0 && row() < 0; }));
  QTest::mouseClick(window(), Qt::LeftButton, {}, canvas().mapToScene(canvas().project(picked)).toPoint());
  EXPECT_TRUE(eventually([&] { return row() == 0; }));
  call("showTable", false);
}

TEST_F(WindowHabits, EscapeTakesBackWhatIsTypedAndClosesWhatIsOpenWithOnePress) {
  ASSERT_NO_FATAL_FAILURE(open());
  ASSERT_NO_FATAL_FAILURE(click("stackDepth"));
  press(Qt::Key_7);
  ASSERT_EQ(textOf("stackDepth"), "7");
  press(Qt::Key_Escape);
  EXPECT_EQ(textOf("stackDepth"), "1");
  EXPECT_TRUE(canvas().hasActiveFocus());

  press(Qt::Key_H, Qt::AltModifier);
  ASSERT_TRUE(eventually([this] { return saying("Manual") != nullptr; }));
  press(Qt::Key_S);
  EXPECT_FALSE(item("selectTool")->property("checked").toBool()) << "a letter for the menu";
  press(Qt::Key_Escape);
  EXPECT_TRUE(eventually([this] { return saying("Manual") == nullptr; }));

  auto *const help = window()->findChild<QObject *>("help");
  for (const int key : {Qt::Key_F1, Qt::Key_Question}) {
    press(key);
    ASSERT_TRUE(eventually([&] { return help->property("opened").toBool(); })) << key;
    press(key);
    ASSERT_TRUE(eventually([&] { return !help->property("visible").toBool(); })) << key;
  }
}

TEST_F(WindowHabits, WhatGoesOutOfSightGivesTheKeyboardBack) {
  ASSERT_NO_FATAL_FAILURE(open());
  item("splitCheck")->forceActiveFocus(Qt::TabFocusReason);
  ASSERT_FALSE(canvas().hasActiveFocus());
  press(Qt::Key_F9);
  EXPECT_TRUE(eventually([this] { return canvas().hasActiveFocus(); }));
  press(Qt::Key_F9);
  ASSERT_NO_FATAL_FAILURE(click("stackDepth"));
  viewer().close();
  EXPECT_TRUE(eventually([this] { return !viewer().isReady() && canvas().hasActiveFocus(); }));
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
