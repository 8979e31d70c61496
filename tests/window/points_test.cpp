// Colours, filters, selection and the table of points in the real window: values first, then the pixels that follow.
#include <QMouseEvent>
#include <QRegularExpression>
#include <QSignalSpy>
#include <algorithm>
#include <cmath>

#include "app/render/color_ramp.h"
#include "app/render/picking.h"
#include "tests/window/window_fixture.h"

namespace tarvo::skarnvisor::test {
namespace {

using app::VertexPoint;

float distanceOf(const VertexPoint &point) {
  return std::sqrt(point.x * point.x + point.y * point.y + point.z * point.z);
}

class WindowPoints : public WindowTest {
 protected:
  void SetUp() override {
    start();
    for (const char *panel : {"filter", "channels"}) viewer().preferences().setValue(QString("panels/") + panel, true);
    viewer().preferences().setValue("panels/colors", false);
    start();
    open();
  }

  /// Share of the sampled points whose pixel has the colour that their colour word stands for.
  double coloursDrawn() {
    const QImage image = picture();
    const app::ViewColors &colors = viewer().scene().main;
    const QMatrix4x4 matrix = canvas().camera().projectionMatrix(static_cast<float>(image.width()) / image.height()) *
                              canvas().camera().viewMatrix();
    int sampled = 0;
    int right = 0;
    viewer().cloud().forEachShown(37, [&](const VertexPoint &point) {
      const QPointF at = canvas().project({point.x, point.y, point.z});
      // The legend and the tool bars lie on the edges.
      if (!QRectF(150, 60, image.width() - 400, image.height() - 120).contains(at)) return;
      const auto front = app::pointUnder(viewer().cloud(), matrix, image.size(), at, 3);
      if (!front || std::abs(distanceOf(*front) - distanceOf(point)) > 1e-4F) return;
      const float value = app::halfToFloat(static_cast<std::uint16_t>(point.word));
      const QRgb wanted = colors.ramp.at((value - colors.range.low) / (colors.range.high - colors.range.low));
      const QRgb seen = image.pixel(at.toPoint());
      ++sampled;
      right += std::abs(qRed(wanted) - qRed(seen)) + std::abs(qGreen(wanted) - qGreen(seen)) +
                           std::abs(qBlue(wanted) - qBlue(seen)) <
                       24
                   ? 1
                   : 0;
    });
    EXPECT_GT(sampled, 20);
    return sampled > 0 ? static_cast<double>(right) / sampled : 0;
  }
};

TEST_F(WindowPoints, EveryPointIsDrawnInTheColourOfItsAttributeAlsoAfterAChangeOfMode) {
  EXPECT_GT(coloursDrawn(), 0.9);
  const VertexPoint before = [this] {
    VertexPoint first;
    viewer().cloud().forEachShown(1000, [&](const VertexPoint &point) { first = point; });
    return first;
  }();
  ASSERT_NO_FATAL_FAILURE(choose("colorBox", "distance"));
  ASSERT_TRUE(eventually([&] {
    VertexPoint now;
    viewer().cloud().forEachShown(1000, [&](const VertexPoint &point) { now = point; });
    return now.word != before.word;
  }));
  EXPECT_EQ(viewer().colors()->legendTitle(), "distance, m");
  // The picture follows the colours by a turn.
  EXPECT_TRUE(eventually([this] { return coloursDrawn() > 0.9; }));
}

TEST_F(WindowPoints, AGrabShowsTheSceneAsItIsWhereverItIsDrawnAndTheVerticesAreLetGo) {
  const auto backgroundIs = [this](const QColor &color) { return picture().pixelColor(2, 2) == color; };
  for (const bool withWindow : {false, true}) {
    if (withWindow) canvas().drawWithWindow();
    for (const QColor &color : {QColor(200, 40, 40), QColor(16, 20, 24)}) {
      viewer().setCanvasColors(color, Qt::gray);
      EXPECT_TRUE(backgroundIs(color)) << "with the window: " << withWindow;
    }
    EXPECT_TRUE(eventually([this] { return coloursDrawn() > 0.9; }));
    EXPECT_TRUE(eventually([this] { return viewer().scene().canvases[0].bytes.isEmpty(); }));
  }
  window()->hide();
  viewer().setCanvasColors(QColor(40, 40, 200), Qt::gray);
  window()->show();
  EXPECT_TRUE(eventually([&] { return backgroundIs(QColor(40, 40, 200)); }));
}

TEST_F(WindowPoints, ALockedRangeBelongsToItsColourMode) {
  app::ColorScale &scale = *viewer().colors();
  scale.setLow(10);
  scale.setHigh(60);
  EXPECT_TRUE(scale.isLocked());
  const int intensity = scale.mode();
  scale.setMode(static_cast<int>(viewer().colorTitles().indexOf("z")));
  EXPECT_FALSE(scale.isLocked());
  scale.setMode(intensity);
  EXPECT_NEAR(scale.low(), 10, 1e-3);
  EXPECT_NEAR(scale.high(), 60, 1e-3);
  scale.fit();
  EXPECT_FALSE(scale.isLocked());
  EXPECT_TRUE(eventually([&] { return std::abs(scale.high() - 60) > 1; }));
}

TEST_F(WindowPoints, AFilterTypedIntoThePanelHidesWhatLiesOutside) {
  const int near = count([](const VertexPoint &point) { return distanceOf(point) <= 12; });
  ASSERT_LT(near, viewer().pointsShown());
  ASSERT_NO_FATAL_FAILURE(type("distanceFilterFlag-high", "12"));
  // Millimetres of the vertices against the distance as it was measured.
  EXPECT_TRUE(eventually([&] { return std::abs(viewer().pointsShown() - near) <= 5; }))
      << viewer().pointsShown() << " shown, " << near << " near";
  // Closing the panel and opening it again leaves the filter as it was set.
  ASSERT_NO_FATAL_FAILURE(click("section-filter"));
  ASSERT_NO_FATAL_FAILURE(click("section-filter"));
  ASSERT_TRUE(eventually([this] { return item("distanceFilterFlag-high") != nullptr; }));
  EXPECT_EQ(textOf("distanceFilterFlag-high").toDouble(), 12);
  ASSERT_NO_FATAL_FAILURE(click("filterOn"));
  EXPECT_TRUE(eventually([&] { return viewer().pointsShown() > near + 5; }));
}

TEST_F(WindowPoints, ChannelsGoAndComeBackWithThePanelsButtons) {
  const int all = viewer().pointsShown();
  ASSERT_NO_FATAL_FAILURE(click("section-filter"));
  ASSERT_NO_FATAL_FAILURE(click("noChannels"));
  // With the first one on again, nothing but its points is left.
  ASSERT_NO_FATAL_FAILURE(click("channel-1"));
  EXPECT_TRUE(eventually([&] { return viewer().pointsShown() > 0 && viewer().pointsShown() <= all / 20; }))
      << viewer().pointsShown() << " of " << all;
  ASSERT_NO_FATAL_FAILURE(click("allChannels"));
  EXPECT_TRUE(eventually([&] { return viewer().pointsShown() == all; }));
}

TEST_F(WindowPoints, TwoViewsShowOneFrameInTwoColours) {
  ASSERT_NO_FATAL_FAILURE(click("section-colors"));
  ASSERT_NO_FATAL_FAILURE(click("splitCheck"));
  ASSERT_NO_FATAL_FAILURE(choose("sideColorBox", "azimuth"));
  EXPECT_TRUE(eventually([this] {
    const QImage image = picture();
    int differing = 0;
    for (int y = 60; y < image.height() - 200; y += 3) {
      for (int x = 20; x < image.width() / 2 - 20; x += 3)
        differing += image.pixel(x, y) != image.pixel(x + image.width() / 2, y) ? 1 : 0;
    }
    return differing > 200;
  }));
  ASSERT_NO_FATAL_FAILURE(click("splitCheck"));
  EXPECT_FALSE(viewer().isSplitView());
}

TEST_F(WindowPoints, ABandSelectsWhatItHoldsAndTheTableWritesItToAFile) {
  const QRectF band(QPointF(canvas().width() * 0.3, canvas().height() * 0.3),
                    QPointF(canvas().width() * 0.7, canvas().height() * 0.7));
  const int inside = count([&](const VertexPoint &point) {
    return band.contains(canvas().project({point.x, point.y, point.z}));
  });
  ASSERT_GT(inside, 50);
  press(Qt::Key_S);
  drag(band.topLeft(), band.bottomRight());
  // Points on the very edge may fall to either side.
  const auto near = [](int a, int b) { return std::abs(a - b) <= 2 + b / 200; };
  ASSERT_TRUE(eventually([&] { return near(viewer().pointsSelected(), inside); }))
      << viewer().pointsSelected() << " selected, " << inside << " inside";
  const int selected = viewer().pointsSelected();
  ASSERT_NO_FATAL_FAILURE(click("listSelected"));
  auto *table = viewer().buffer()->property("spreadSheetModel").value<QAbstractTableModel *>();
  ASSERT_NE(table, nullptr);
  ASSERT_TRUE(eventually([&] { return table->rowCount() == selected; })) << table->rowCount();
  EXPECT_TRUE(eventually([&] {
    return textOf("rowCountText").startsWith(QLocale(QLocale::English).toString(selected));
  })) << textOf("rowCountText").toStdString();
  const auto decimals = [table] {
    const auto column = static_cast<int>(table->property("columnNames").toStringList().indexOf("x(m)"));
    return table->index(0, column).data().toString().section('.', 1).size();
  };
  for (const int wanted : {6, 3}) {
    ASSERT_NO_FATAL_FAILURE(click("decimals"));
    EXPECT_TRUE(eventually([&] { return decimals() == wanted && table->rowCount() == selected; })) << decimals();
  }
  if (table->metaObject()->indexOfMethod("exportPointsInformation(QString)") >= 0) {
    // Another suffix than the table's own leaves it a table.
    const QString sourceName = QFileInfo(viewer().source()).completeBaseName();
    for (const QString name : {"Auswahl für später.csv", "Auswahl.txt"}) {
      ASSERT_NO_FATAL_FAILURE(click("exportTable"));
      ASSERT_NO_FATAL_FAILURE(answerDialog(QDir::current().filePath(name), sourceName + ".csv"));
      ASSERT_TRUE(eventually([&] { return QFile::exists(name); })) << viewer().error().toStdString();
      QFile file(name);
      ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << viewer().error().toStdString();
      const QByteArray text = file.readAll();
      EXPECT_TRUE(text.startsWith("Ch,")) << text.left(40).toStdString();
      EXPECT_EQ(text.count('\n'), selected + 1);
    }
    EXPECT_TRUE(eventually([this] { return viewer().notice().contains(QRegularExpression("[Ss]aved")); }));
  }
  press(Qt::Key_F10);
  press(Qt::Key_Escape);
  press(Qt::Key_Escape);
  EXPECT_TRUE(eventually([this] { return viewer().pointsSelected() == 0; }));
}

TEST_F(WindowPoints, ChannelsAreShownByTheirNumbers) {
  ASSERT_NO_FATAL_FAILURE(click("section-filter"));
  const auto shown = [this] { return textOf("channelCount").section(' ', 0, 0).toInt(); };
  struct Case {
    const char *typed;
    int channels;
    const char *text;
  };
  // The text that is none leaves the channels as they are.
  for (const Case &each :
       {Case{"1-16, 20", 17, "1-16, 20"}, Case{"9-3,30 - 99", 10, "3-9, 30-32"}, Case{"4-", 10, "4-"}}) {
    ASSERT_NO_FATAL_FAILURE(type("channelRanges", each.typed));
    EXPECT_TRUE(eventually([&] { return shown() == each.channels; })) << each.typed << ": " << shown();
    EXPECT_EQ(textOf("channelRanges"), each.text);
  }
  press(Qt::Key_Escape);
  // Off by the table, and the text follows.
  ASSERT_NO_FATAL_FAILURE(click("channel-5"));
  EXPECT_TRUE(eventually([this] { return textOf("channelRanges") == "3-4, 6-9, 30-32"; }))
      << textOf("channelRanges").toStdString();
}

TEST_F(WindowPoints, AHeadOfTheTableSortsByAClickAndMovesByADrag) {
  QMetaObject::invokeMethod(window(), "showTable", Q_ARG(QVariant, true));
  ASSERT_NO_FATAL_FAILURE(click("allPoints"));
  auto *const table = viewer().buffer()->property("spreadSheetModel").value<QAbstractTableModel *>();
  ASSERT_NE(table, nullptr);
  ASSERT_TRUE(eventually([&] { return table->rowCount() == viewer().pointsShown(); })) << table->rowCount();
  const auto titles = [table] { return table->property("columnNames").toStringList(); };
  const auto firstDistance = [&] {
    return table->index(0, static_cast<int>(titles().indexOf("Dist(m)"))).data().toDouble();
  };
  const double visited = firstDistance();
  double nearest = 1e9;
  double farthest = 0;
  viewer().cloud().forEachShown(1, [&](const VertexPoint &point) {
    nearest = std::min(nearest, static_cast<double>(distanceOf(point)));
    farthest = std::max(farthest, static_cast<double>(distanceOf(point)));
  });
  for (const double wanted : {nearest, farthest, visited}) {
    ASSERT_NO_FATAL_FAILURE(click("head-Dist(m)"));
    EXPECT_TRUE(eventually([&] { return std::abs(firstDistance() - wanted) < 0.003; }))
        << firstDistance() << " instead of " << wanted;
  }

  const QStringList before = titles();
  ASSERT_GT(before.size(), 4);
  const auto middleOf = [this](const QString &title) {
    QQuickItem *const head = item("head-" + title);
    return head->mapToScene({head->width() / 2, head->height() / 2}).toPoint();
  };
  const QPoint from = middleOf(before[0]);
  const QPoint to = middleOf(before[2]);
  QTest::mousePress(window(), Qt::LeftButton, {}, from);
  QTest::mouseMove(window(), (from + to) / 2);
  QTest::mouseMove(window(), to);
  QTest::mouseRelease(window(), Qt::LeftButton, {}, to);
  EXPECT_EQ(titles().mid(0, 4), QStringList({before[1], before[2], before[0], before[3]}));
  EXPECT_EQ(item("head-" + before[0])->x(), item("head-" + before[2])->x() + item("head-" + before[2])->width());
  QMetaObject::invokeMethod(window(), "showTable", Q_ARG(QVariant, false));
}

TEST_F(WindowPoints, AColumnThatIsMovedStaysTheOneThatIsSortedBy) {
  press(Qt::Key_F10);
  auto *const panel = window()->findChild<QObject *>("spreadsheet");
  auto *const table = viewer().buffer()->property("spreadSheetModel").value<QObject *>();
  ASSERT_TRUE(panel != nullptr && table != nullptr);
  const auto orders = [table] {
    QVector<int> all(4, 0);
    for (int column = 0; column < all.size(); ++column)
      QMetaObject::invokeMethod(table, "getSort", Q_RETURN_ARG(int, all[column]), Q_ARG(int, column));
    return all;
  };
  const auto move = [panel](int from, int to) {
    QMetaObject::invokeMethod(panel, "move", Q_ARG(QVariant, from), Q_ARG(QVariant, to));
  };
  QMetaObject::invokeMethod(table, "setSort", Q_ARG(int, 1), Q_ARG(int, -1));
  move(1, 3);
  EXPECT_EQ(orders(), QVector<int>({0, 0, 0, -1}));
  move(0, 3);
  EXPECT_EQ(orders(), QVector<int>({0, 0, -1, 0}));
  move(3, 1);
  EXPECT_EQ(orders(), QVector<int>({0, 0, 0, -1}));
  // A refresh, as there is one each second while playing, leaves the heads alone: one may be under way.
  QSignalSpy headsAnew(panel, SIGNAL(namesChanged()));
  QSignalSpy refreshed(panel, SIGNAL(pointsChanged()));
  QMetaObject::invokeMethod(viewer().buffer(), "refreshSelectionDisplay");
  EXPECT_TRUE(eventually([&] { return !refreshed.isEmpty(); }));
  EXPECT_TRUE(headsAnew.isEmpty());
  press(Qt::Key_F10);
}

TEST_F(WindowPoints, TheTableMayBeClosedAndOpenedWhileEachFrameIsExported) {
  const auto tableFilled = [this] { return viewer().buffer()->property("spreadSheetEnabled").toBool(); };
  const auto call = [this](const char *function, bool shown) {
    QMetaObject::invokeMethod(window(), function, Q_ARG(QVariant, shown));
  };
  for (const bool shownAtEnd : {false, true}) {
    call("showTable", !shownAtEnd);
    QMetaObject::invokeMethod(window(), "startFrameExport", Q_ARG(QVariant, QVariant::fromValue(viewer().track())),
                              Q_ARG(QVariant, 1), Q_ARG(QVariant, QUrl::fromLocalFile(QDir::currentPath())));
    call("showTable", shownAtEnd);
    EXPECT_TRUE(settled() && tableFilled());
    // The frame that is shown is the first.
    EXPECT_TRUE(eventually([] { return !QDir().entryList({"points_info_*.csv"}).isEmpty(); }));
    viewer().setPlayByFrame(true);  // is no other capture, with which the panels begin anew
    EXPECT_TRUE(window()->property("exporting").toBool());
    QMetaObject::invokeMethod(window(), "endFrameExport");
    EXPECT_TRUE(settled());
    EXPECT_EQ(tableFilled(), shownAtEnd);
  }
  call("showTable", false);
}

TEST_F(WindowPoints, TwoClicksMeasureADistance) {
  QVector<VertexPoint> ends;
  viewer().cloud().forEachShown(211, [&](const VertexPoint &point) {
    const QRectF middle(150, 80, canvas().width() - 400, canvas().height() - 200);
    if (ends.size() < 2 && middle.contains(canvas().project({point.x, point.y, point.z}))) ends << point;
  });
  ASSERT_EQ(ends.size(), 2);
  press(Qt::Key_R);
  QVector<QVector3D> picked;
  QObject::connect(&canvas(), &app::CloudCanvas::pointClicked, [&](const QVector3D &place) { picked << place; });
  for (const VertexPoint &end : ends) {
    const QPointF at = canvas().mapToScene(canvas().project({end.x, end.y, end.z}));
    QTest::mouseClick(window(), Qt::LeftButton, {}, at.toPoint());
  }
  ASSERT_TRUE(eventually([&] { return picked.size() == 2; }));
  const double metres = static_cast<double>((picked[1] - picked[0]).length());
  EXPECT_TRUE(textOf("rulerText").startsWith(QString::number(metres, 'f', 3))) << textOf("rulerText").toStdString();
}

TEST_F(WindowPoints, TheMouseMovesTheEyeAndADoubleClickTurnsAroundThePointUnderIt) {
  const QPointF middle(canvas().width() / 2, canvas().height() / 2);
  const auto at = [this](QPointF place) { return canvas().mapToScene(place).toPoint(); };
  const auto dragWith = [&](Qt::MouseButton button, Qt::KeyboardModifiers keys) {
    QTest::mousePress(window(), button, keys, at(middle));
    QMouseEvent move(QEvent::MouseMove, at(middle + QPointF(40, 25)), Qt::NoButton, button, keys);
    QCoreApplication::sendEvent(window(), &move);
    QTest::mouseRelease(window(), button, keys, at(middle + QPointF(40, 25)));
  };
  const app::OrbitCamera first = canvas().camera();
  dragWith(Qt::LeftButton, Qt::NoModifier);
  EXPECT_EQ(canvas().camera().target(), first.target());
  EXPECT_NE(canvas().camera().azimuthDeg(), first.azimuthDeg());
  for (const auto &[button, keys] : {std::pair{Qt::RightButton, Qt::KeyboardModifiers()},
                                     {Qt::MiddleButton, Qt::KeyboardModifiers()},
                                     {Qt::LeftButton, Qt::KeyboardModifiers(Qt::ShiftModifier)}}) {
    const app::OrbitCamera before = canvas().camera();
    dragWith(button, keys);
    EXPECT_NE(canvas().camera().target(), before.target()) << button;
    EXPECT_EQ(canvas().camera().azimuthDeg(), before.azimuthDeg()) << button;
  }
  press(Qt::Key_P);
  press(Qt::Key_Home);
  EXPECT_FALSE(canvas().isOrthographic());
  EXPECT_EQ(canvas().camera().eye(), first.eye());

  QVector<QVector3D> picked;
  QObject::connect(&canvas(), &app::CloudCanvas::pointClicked, [&](const QVector3D &place) { picked << place; });
  std::optional<VertexPoint> aim;
  viewer().cloud().forEachShown(211, [&](const VertexPoint &point) {
    const QPointF place = canvas().project({point.x, point.y, point.z}) - middle;
    if (!aim && std::abs(place.x()) < 200 && std::abs(place.y()) < 150 && place.manhattanLength() > 80) aim = point;
  });
  ASSERT_TRUE(aim);
  const QPointF place = canvas().project({aim->x, aim->y, aim->z});
  QTest::mouseClick(window(), Qt::LeftButton, {}, at(place));
  ASSERT_TRUE(eventually([&] { return picked.size() == 1; }));
  QTest::mousePress(window(), Qt::LeftButton, {}, at(place));
  QMouseEvent second(QEvent::MouseButtonDblClick, at(place), Qt::LeftButton, Qt::LeftButton, {});
  QCoreApplication::sendEvent(window(), &second);
  EXPECT_TRUE(eventually([&] { return canvas().camera().target() == picked[0]; }));
  canvas().finishPicture();  // the point is in the middle now, and another one under the cursor
  QTest::mouseRelease(window(), Qt::LeftButton, {}, at(place));
  EXPECT_TRUE(settled());
  EXPECT_EQ(picked.size(), 1);
}

TEST_F(WindowPoints, SubPixelChannelsOfAPointFileAreHiddenByTheKindOfTheirFinding) {
  EXPECT_EQ(item("hideSubpixels"), nullptr) << "not of a lidar";
  QFile file("rings.pcd");
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(
      "VERSION .7\nFIELDS x y z ring\nSIZE 4 4 4 2\nTYPE F F F U\nCOUNT 1 1 1 1\nWIDTH 3\nHEIGHT 1\n"
      "VIEWPOINT 0 0 0 1 0 0 0\nPOINTS 3\nDATA ascii\n1 2 3 1\n2 3 4 2\n3 4 5 65\n");
  file.close();
  viewer().open(file.fileName());
  ASSERT_TRUE(eventually([this] { return viewer().pointsShown() == 3; }));
  ASSERT_NO_FATAL_FAILURE(click("section-filter"));
  ASSERT_NO_FATAL_FAILURE(click("hideSubpixels"));
  ASSERT_NO_FATAL_FAILURE(click("subpixelsByFrame"));
  EXPECT_TRUE(eventually([this] { return viewer().pointsShown() == 2; })) << "above channel 64";
  ASSERT_NO_FATAL_FAILURE(click("hideSubpixels"));
  EXPECT_TRUE(eventually([this] { return viewer().pointsShown() == 3; }));
  EXPECT_EQ(item("subpixelsByFrame"), nullptr);
}

TEST_F(WindowPoints, WhatIsTypedForOneSourceIsNotEnteredIntoTheNext) {
  ASSERT_NO_FATAL_FAILURE(open());
  for (const char *field : {"stackDepth", "distanceFilterFlag-low"}) {
    SCOPED_TRACE(field);
    ASSERT_NO_FATAL_FAILURE(click(field));
    const QString before = textOf(field);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_5);
    ASSERT_EQ(textOf(field), "5");
    // The same kind again, whose field keeps the keyboard, then one without it.
    ASSERT_NO_FATAL_FAILURE(open());
    EXPECT_EQ(textOf(field), before);
    press(Qt::Key_Tab);
    ASSERT_NO_FATAL_FAILURE(click(field));
    press(Qt::Key_5);
    const int shown = viewer().pointsShown();
    viewer().close();
    ASSERT_NO_FATAL_FAILURE(open());
    EXPECT_EQ(viewer().buffer()->property("frameNumber").toInt(), 1);
    EXPECT_EQ(viewer().pointsShown(), shown);
    EXPECT_EQ(textOf(field), before);
  }
}

TEST_F(WindowPoints, AStackShowsItsFramesAtOnceAndOneFrameAgainAfterwards) {
  ASSERT_NO_FATAL_FAILURE(open());
  const int one = viewer().pointsShown();
  ASSERT_NO_FATAL_FAILURE(type("stackDepth", "20"));
  ASSERT_TRUE(eventually([this] { return viewer().buffer()->property("frameNumber").toInt() == 20; }))
      << viewer().error().toStdString();
  // Paused, the frames before the cursor fill it, of which there are few at the begin.
  EXPECT_TRUE(eventually([&] { return viewer().pointsShown() > 4 * one; })) << viewer().pointsShown() << " of " << one;
  EXPECT_LT(viewer().pointsShown(), 6 * one);
  timeline().seekFrame(25);
  EXPECT_TRUE(eventually([&] { return viewer().pointsShown() > 19 * one; })) << viewer().pointsShown() << " of " << one;
  EXPECT_EQ(viewer().scene().canvases.size(), 4U);
  // Frames from elsewhere leave it where there are too few to replace them.
  timeline().seekFrame(1);
  EXPECT_TRUE(eventually([&] { return viewer().pointsShown() < 6 * one && viewer().pointsShown() > 4 * one; }))
      << viewer().pointsShown() << " of " << one;
  EXPECT_FALSE(timeline().isPlaying());
  clickText("Loop");
  press(Qt::Key_Space);
  EXPECT_TRUE(eventually([&] { return viewer().pointsShown() > 8 * one; })) << viewer().pointsShown() << " of " << one;
  press(Qt::Key_Space);
  ASSERT_NO_FATAL_FAILURE(type("stackDepth", "1"));
  EXPECT_TRUE(eventually([&] { return viewer().scene().canvases.size() == 1 && viewer().pointsShown() < 2 * one; }));
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
